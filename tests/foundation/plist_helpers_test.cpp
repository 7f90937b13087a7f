// Typed property-list puts and gets, UTF-16 copies and their capacities, files and their messages.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/plist_helpers.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using namespace QCFUtils;
using test::ScratchDir;

template <typename T>
std::pair<bool, double> get(bool (*getter)(const Dictionary&, const std::string&, T&), const Dictionary& dict,
                            const char* key) {
  T out{};
  bool exact = getter(dict, key, out);
  return {exact, double(out)};
}

TEST(PlistHelpers, PutsStoreThirtyTwoBitNumbersAndDecodedText) {
  Dictionary dict;
  EXPECT_TRUE(PutULongIntoDict(dict, "max", 0xFFFFFFFFu));
  EXPECT_TRUE(PutNullTermCharPtrIntoDict(dict, "roman", "Caf\x8E", TextEncoding::MacRoman));
  EXPECT_FALSE(PutUTF8NullTermCharPtrIntoDict(dict, "bad", "\xC3\x28"));
  EXPECT_EQ(dict, (Dictionary{{"max", PlistValue::integer(-1)}, {"roman", PlistValue::string("Caf\xC3\xA9")}}));
  Array array;
  EXPECT_FALSE(AppendUTF8NullTermCharPtrOntoArray(array, "\xFF"));
  EXPECT_TRUE(array.empty());
}

TEST(PlistHelpers, NumberGettersClampAndReportExactness) {
  Dictionary dict = {{"int", PlistValue::integer(70000)}, {"big", PlistValue::integer(1LL << 40)},
                     {"twoHalf", PlistValue::real(2.5)},  {"tenth", PlistValue::real(0.1)},
                     {"text", PlistValue::string("12")}};
  using Got = std::pair<bool, double>;  // exact, value
  EXPECT_EQ(get(GetLongFromDict, dict, "int"), Got(true, 70000));
  EXPECT_EQ(get(GetShortFromDict, dict, "int"), Got(false, 32767));
  EXPECT_EQ(get(GetLongFromDict, dict, "big"), Got(false, 2147483647));
  EXPECT_EQ(get(GetLongFromDict, dict, "twoHalf"), Got(false, 2));
  EXPECT_EQ(get(GetFloatFromDict, dict, "tenth"), Got(false, double(0.1f)));
  EXPECT_EQ(get(GetLongFromDict, dict, "text"), Got(false, 0));
  EXPECT_EQ(GetCFArrayFromDict(dict, "text"), nullptr) << "a value of another type counts as absent";
}

TEST(PlistHelpers, UniStringCapacityRules) {
  Dictionary dict = {{"five", PlistValue::string("Hello")},
                     {"pair", PlistValue::string("\xC3\xA9\xF0\x9F\x98\x80")},
                     {"number", PlistValue::integer(5)}};
  // buffer: the first 7 units afterwards; '#' marks untouched units
  const struct { const char* key; int32_t capacity; bool terminate; int32_t result; std::u16string buffer; } rows[] = {
      {"five", 5, true, 5, u"Hello##"},
      {"five", 4, true, -5, u"#######"},
      {"five", 6, true, 5, std::u16string(u"Hello\0#", 7)},
      {"pair", 3, false, 3, u"\u00e9\xD83D\xDE00####"},
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
}

// The same list written by Python's plistlib as XML and as binary reads into the same value.
TEST(PlistHelpers, ReadsXMLAndBinaryFiles) {
  auto xml = QCFCreateCFPropertyListFromPath(test::fontPath("plist/sample.xml.plist"));
  auto binary = QCFCreateCFPropertyListFromPath(test::fontPath("plist/sample.binary.plist"));
  ASSERT_TRUE(xml && binary);
  EXPECT_EQ(*xml, *binary);
  const Dictionary& d = xml->asDictionary();
  EXPECT_EQ(*GetCFStringFromDict(d, "Unicode"), "\u00dcn\u00efc\u00f8d\u00e9 \u2603");
  EXPECT_EQ(get(GetLongFromDict, d, "Negative"), std::make_pair(true, -1.0));
  EXPECT_EQ(d.at("Bytes").asData(), (std::vector<uint8_t>{0x00, 0x01, 0xFE}));
  EXPECT_EQ(d.at("When").asDate(), 86400.0);  // seconds after 2001-01-01
  EXPECT_EQ(d.at("List").asArray().size(), 3u);
}

TEST(PlistHelpers, FilesRoundTripAndPrintTheirMessages) {
  ScratchDir dir;
  PlistValue list = PlistValue::dictionary({{"Name", PlistValue::string("Times")}, {"Count", PlistValue::integer(-1)}});
  EXPECT_TRUE(QCFWriteCFPropertyListToXMLFile(list, dir.file("out.plist")));
  EXPECT_EQ(QCFCreateCFPropertyListFromPath(dir.file("out.plist")), std::optional<PlistValue>(list));

  test::writeFile(dir.file("empty"), "");
  test::writeFile(dir.file("junk"), "not a property list");
  const uint8_t twoBytes[] = {1, 2};
  const struct { const char* what; std::function<bool()> act; const char* printed; } rows[] = {
      {"empty file", [&] { return bool(QCFCreateCFDataRefFromPath(dir.file("empty"))); },
       "QCFUtils::QCFCreateCFDataRefFromPath:  error getting file length & rewinding file "},
      {"not a property list", [&] { return bool(QCFCreateCFPropertyListFromPath(dir.file("junk"))); },
       "QCFUtils::QCFCreateCFPropertyListFromPath:  error returned."},
      {"unwritable path", [&] { return QCFWriteCFDataRefToXMLFile(ByteSpan(twoBytes, 2), dir.file("no/x")); },
       "*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Error opening file for writing.\n"},
      {"null data", [&] { return QCFWriteCFDataRefToXMLFile(ByteSpan(), dir.file("x")); },
       "*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Failed to create buffer from CFDataRef.\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(row.act());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), row.printed);
  }
}

}  // namespace
}  // namespace typeprint
