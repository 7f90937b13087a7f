// Property lists read from XML and binary files made by Python's plistlib, and printed as XML.
#include <gtest/gtest.h>

#include <string>

#include "platform/linux/plist_io.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

ByteSpan span(const std::string& s) { return ByteSpan(reinterpret_cast<const uint8_t*>(s.data()), s.size()); }

// The value make_plists.py writes.
PlistValue expectedSample() {
  return PlistValue::dictionary({
      {"Name", PlistValue::string("Garamond")},
      {"Unicode", PlistValue::string("\xC3\x9Cn\xC3\xAF" "c\xC3\xB8" "d\xC3\xA9 \xE2\x98\x83")},
      {"Count", PlistValue::integer(42)},
      {"Negative", PlistValue::integer(-1)},
      {"Ratio", PlistValue::real(0.5)},
      {"Flag", PlistValue::boolean(true)},
      {"Bytes", PlistValue::data({0x00, 0x01, 0xFE})},
      {"When", PlistValue::date(86400)},
      {"List", PlistValue::array({PlistValue::string("a"), PlistValue::integer(7), PlistValue::boolean(false)})},
      {"Nested", PlistValue::dictionary({{"Inner", PlistValue::string("x")}})},
  });
}

TEST(PlistIO, ReadsXmlAndBinaryFiles) {
  for (const char* name : {"plist/sample.xml.plist", "plist/sample.binary.plist"}) {
    SCOPED_TRACE(name);
    std::optional<PlistValue> value = parsePropertyList(span(test::readFile(test::fontPath(name))));
    ASSERT_TRUE(value);
    EXPECT_EQ(*value, expectedSample());
  }
}

TEST(PlistIO, PrintedXmlReadsBackTheSame) {
  std::optional<std::string> xml = printXMLPropertyList(expectedSample());
  ASSERT_TRUE(xml);
  EXPECT_NE(xml->find("<integer>-1</integer>"), std::string::npos);
  EXPECT_EQ(parsePropertyList(span(*xml)), std::optional<PlistValue>(expectedSample()));
}

TEST(PlistIO, RejectsWhatIsNoPropertyList) {
  std::string deep;
  for (int i = 0; i < 100; ++i) deep += "<array>";
  for (int i = 0; i < 100; ++i) deep += "</array>";
  const struct {
    const char* what;
    std::string bytes;
  } rows[] = {
      {"empty", ""},
      {"text", "not a property list"},
      {"cut XML", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>"},
      {"cut binary", test::readFile(test::fontPath("plist/sample.binary.plist")).substr(0, 40)},
      {"nested too deep", "<plist version=\"1.0\">" + deep + "</plist>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(parsePropertyList(span(row.bytes)), std::nullopt);
  }
}

}  // namespace
}  // namespace typeprint
