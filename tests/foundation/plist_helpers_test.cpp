// Typed puts and gets on property-list dictionaries and arrays, UTF-16 copies with their
// capacity rules, and property-list files with their messages.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "foundation/plist_helpers.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using namespace QCFUtils;
using test::ScratchDir;
using test::writeFile;

const uint8_t kTwoBytes[] = {1, 2};

TEST(PlistHelpers, PutsStoreThirtyTwoBitNumbers) {
  Dictionary dict;
  EXPECT_TRUE(PutULongIntoDict(dict, "max", 0xFFFFFFFFu));
  EXPECT_TRUE(PutULongIntoDict(dict, "high", 0x80000000u));
  EXPECT_TRUE(PutLongIntoDict(dict, "long", -7));
  EXPECT_TRUE(PutShortIntoDict(dict, "short", -300));
  EXPECT_TRUE(PutCharIntoDict(dict, "char", -5));
  EXPECT_TRUE(PutBoolIntoDict(dict, "flag", false));
  const struct {
    const char* key;
    int64_t stored;
  } rows[] = {{"max", -1}, {"high", -2147483648LL}, {"long", -7}, {"short", -300}, {"char", -5}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.key);
    ASSERT_TRUE(dict.at(row.key).is(PlistValue::Type::Integer));
    EXPECT_EQ(dict.at(row.key).asInteger(), row.stored);
  }
  EXPECT_EQ(dict.at("flag"), PlistValue::boolean(false));
  PutLongIntoDict(dict, "long", 9);
  EXPECT_EQ(dict.at("long").asInteger(), 9) << "a put replaces the key";
}

TEST(PlistHelpers, StringPutsDecodeOrRefuse) {
  Dictionary dict;
  EXPECT_TRUE(PutNullTermCharPtrIntoDict(dict, "roman", "Caf\x8E", TextEncoding::MacRoman));
  EXPECT_EQ(dict.at("roman").asString(), "Caf\xC3\xA9");
  EXPECT_FALSE(PutUTF8NullTermCharPtrIntoDict(dict, "bad", "\xC3\x28"));
  EXPECT_FALSE(PutUTF8NullTermCharPtrIntoDict(dict, "null", nullptr));
  EXPECT_EQ(dict.count("bad") + dict.count("null"), 0u);

  Array array;
  EXPECT_TRUE(AppendUTF8NullTermCharPtrOntoArray(array, "Bold"));
  EXPECT_FALSE(AppendUTF8NullTermCharPtrOntoArray(array, "\xFF"));
  EXPECT_TRUE(AppendULongOntoArray(array, 0xFFFFFFFEu));
  EXPECT_TRUE(AppendLongOntoArray(array, 3));
  EXPECT_TRUE(AppendShortOntoArray(array, 4));
  EXPECT_TRUE(AppendBoolOntoArray(array, true));
  EXPECT_EQ(array, (Array{PlistValue::string("Bold"), PlistValue::integer(-2), PlistValue::integer(3),
                          PlistValue::integer(4), PlistValue::boolean(true)}));
}

TEST(PlistHelpers, NumberGettersReportExactness) {
  Dictionary dict = {
      {"int", PlistValue::integer(70000)}, {"small", PlistValue::integer(-5)},    {"big", PlistValue::integer(1LL << 40)},
      {"half", PlistValue::real(0.5)},     {"tenth", PlistValue::real(0.1)},      {"twoHalf", PlistValue::real(2.5)},
      {"text", PlistValue::string("12")},  {"flag", PlistValue::boolean(true)},
  };
  const struct {
    const char* what;
    bool (*get)(const Dictionary&, double&);
    bool exact;
    double value;
  } rows[] = {
      {"long of 70000", [](const Dictionary& d, double& v) { int32_t o = 0; bool r = GetLongFromDict(d, "int", o); v = o; return r; }, true, 70000},
      {"short of 70000", [](const Dictionary& d, double& v) { int16_t o = 0; bool r = GetShortFromDict(d, "int", o); v = o; return r; }, false, 32767},
      {"char of -5", [](const Dictionary& d, double& v) { int8_t o = 0; bool r = GetCharFromDict(d, "small", o); v = o; return r; }, true, -5},
      {"long of 2^40", [](const Dictionary& d, double& v) { int32_t o = 0; bool r = GetLongFromDict(d, "big", o); v = o; return r; }, false, 2147483647},
      {"long long of 2^40", [](const Dictionary& d, double& v) { int64_t o = 0; bool r = GetLongLongFromDict(d, "big", o); v = double(o); return r; }, true, 1099511627776.0},
      {"double of an integer", [](const Dictionary& d, double& v) { return GetDoubleFromDict(d, "int", v); }, true, 70000},
      {"long of 2.5", [](const Dictionary& d, double& v) { int32_t o = 0; bool r = GetLongFromDict(d, "twoHalf", o); v = o; return r; }, false, 2},
      {"float of 0.5", [](const Dictionary& d, double& v) { float o = 0; bool r = GetFloatFromDict(d, "half", o); v = o; return r; }, true, 0.5},
      {"float of 0.1", [](const Dictionary& d, double& v) { float o = 0; bool r = GetFloatFromDict(d, "tenth", o); v = double(0.1f) == o ? 0.1 : -1; return r; }, false, 0.1},
      {"long of a string", [](const Dictionary& d, double& v) { int32_t o = 0; bool r = GetLongFromDict(d, "text", o); v = o; return r; }, false, 0},
      {"long of a boolean", [](const Dictionary& d, double& v) { int32_t o = 0; bool r = GetLongFromDict(d, "flag", o); v = o; return r; }, false, 0},
      {"missing key", [](const Dictionary& d, double& v) { int32_t o = 0; bool r = GetLongFromDict(d, "none", o); v = o; return r; }, false, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    double value = -99;
    EXPECT_EQ(row.get(dict, value), row.exact);
    EXPECT_EQ(value, row.value);
  }
  bool flag = false;
  EXPECT_TRUE(GetBoolFromDict(dict, "flag", flag));
  EXPECT_TRUE(flag);
  EXPECT_FALSE(GetBoolFromDict(dict, "int", flag));
  int32_t out = 0;
  EXPECT_FALSE(GetLongFromCFValue(nullptr, out));
}

TEST(PlistHelpers, TypedLookupsTreatOtherTypesAsAbsent) {
  Dictionary dict = {{"list", PlistValue::array({PlistValue::integer(1)})}, {"name", PlistValue::string("Times")}};
  const PlistValue* out = &dict.at("name");
  EXPECT_FALSE(GetCFTypeFromDict(dict, "list", PlistValue::Type::Dictionary, out));
  EXPECT_EQ(out, &dict.at("name")) << "left alone on a miss";
  EXPECT_TRUE(GetCFTypeFromDict(dict, "list", PlistValue::Type::Array, out));
  EXPECT_EQ(out, &dict.at("list"));
  ASSERT_NE(GetCFArrayFromDict(dict, "list"), nullptr);
  EXPECT_EQ(GetCFArrayFromDict(dict, "name"), nullptr);
  ASSERT_NE(QCFGetCFStringFromDictionary(dict, "name"), nullptr);
  EXPECT_EQ(*QCFGetCFStringFromDictionary(dict, "name"), "Times");
  EXPECT_EQ(GetCFStringFromDict(dict, "list"), nullptr);
  EXPECT_EQ(GetCFNumberFromDict(dict, "name"), nullptr);
  EXPECT_EQ(GetCFBooleanFromDict(dict, "none"), nullptr);
}

TEST(PlistHelpers, UniStringCapacityRules) {
  Dictionary dict = {{"five", PlistValue::string("Hello")},
                     {"pair", PlistValue::string("\xC3\xA9\xF0\x9F\x98\x80")},
                     {"empty", PlistValue::string("")},
                     {"number", PlistValue::integer(5)}};
  const struct {
    const char* key;
    int32_t capacity;
    bool terminate;
    int32_t result;
    std::u16string buffer;  // the first 7 units afterwards; '#' marks untouched units
  } rows[] = {
      {"five", 5, false, 5, u"Hello##"},  {"five", 5, true, 5, u"Hello##"},
      {"five", 4, true, -5, u"#######"},  {"five", 6, false, 5, u"Hello##"},
      {"five", 6, true, 5, std::u16string(u"Hello\0#", 7)},
      {"pair", 3, false, 3, u"\u00e9\xD83D\xDE00####"},
      {"empty", 4, true, 0, u"#######"},  {"number", 9, true, 0, u"#######"},
      {"none", 9, true, 0, u"#######"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.key) + " in " + std::to_string(row.capacity) + (row.terminate ? " terminated" : ""));
    std::u16string buffer(7, u'#');
    uint16_t* units = reinterpret_cast<uint16_t*>(&buffer[0]);
    int32_t n = row.terminate ? QCFGetUniStringNullTermFromDictionary(dict, row.key, units, row.capacity)
                              : QCFGetUniStringFromDictionary(dict, row.key, units, row.capacity);
    EXPECT_EQ(n, row.result);
    EXPECT_EQ(buffer, row.buffer);
  }
  uint16_t* copy = nullptr;
  ASSERT_TRUE(GetStringFromCFValue(&dict.at("pair"), copy));
  EXPECT_EQ(std::u16string(reinterpret_cast<char16_t*>(copy)), u"\u00e9\xD83D\xDE00");
  std::free(copy);
  EXPECT_FALSE(GetStringFromCFValue(&dict.at("number"), copy));
}

TEST(PlistHelpers, FilesRoundTripAndPrintTheirMessages) {
  ScratchDir dir;
  PlistValue list = PlistValue::dictionary({{"Name", PlistValue::string("Garamond")}, {"Count", PlistValue::integer(-1)}});
  testing::internal::CaptureStdout();
  EXPECT_TRUE(QCFWriteCFPropertyListToXMLFile(list, dir.file("out.plist")));
  EXPECT_EQ(QCFCreateCFPropertyListFromPath(dir.file("out.plist")), std::optional<PlistValue>(list));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

  writeFile(dir.file("empty"), "");
  writeFile(dir.file("junk"), "not a property list");
  const struct {
    const char* what;
    bool (*act)(const ScratchDir&);
    const char* printed;
  } rows[] = {
      {"empty file", [](const ScratchDir& d) { return bool(QCFCreateCFDataRefFromPath(d.file("empty"))); },
       "QCFUtils::QCFCreateCFDataRefFromPath:  error getting file length & rewinding file "},
      {"missing file", [](const ScratchDir& d) { return bool(QCFCreateCFPropertyListFromPath(d.file("none"))); }, ""},
      {"empty path", [](const ScratchDir&) { return bool(QCFCreateCFPropertyListFromPath("")); }, ""},
      {"not a property list", [](const ScratchDir& d) { return bool(QCFCreateCFPropertyListFromPath(d.file("junk"))); },
       "QCFUtils::QCFCreateCFPropertyListFromPath:  error returned."},
      {"unwritable path", [](const ScratchDir& d) { return QCFWriteCFDataRefToXMLFile(ByteSpan(kTwoBytes, 2), d.file("no/x")); },
       "*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Error opening file for writing.\n"},
      {"null data", [](const ScratchDir& d) { return QCFWriteCFDataRefToXMLFile(ByteSpan(), d.file("x")); },
       "*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Failed to create buffer from CFDataRef.\n"},
      {"empty write path", [](const ScratchDir&) { return QCFWriteCFPropertyListToXMLFile(PlistValue(), ""); }, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(row.act(dir));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), row.printed);
  }
}

}  // namespace
}  // namespace typeprint
