// Property lists read from XML and binary files made by Python's plistlib, and printed as XML.
#include "platform/linux/plist_io.h"

#include <gtest/gtest.h>

#include "support/test_paths.h"

namespace typeprint {
namespace {

ByteSpan span(const std::string& s) { return ByteSpan(reinterpret_cast<const uint8_t*>(s.data()), s.size()); }

TEST(PlistIO, ReadsXmlAndBinaryFilesAndPrintsXmlThatReadsBack) {
  const PlistValue expected = PlistValue::dictionary({  // the value make_plists.py writes
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
  for (const char* name : {"plist/sample.xml.plist", "plist/sample.binary.plist"})
    EXPECT_EQ(parsePropertyList(span(test::readFile(test::fontPath(name)))), std::optional<PlistValue>(expected)) << name;
  std::optional<std::string> xml = printXMLPropertyList(expected);
  ASSERT_TRUE(xml);
  EXPECT_NE(xml->find("<integer>-1</integer>"), std::string::npos);
  EXPECT_EQ(parsePropertyList(span(*xml)), std::optional<PlistValue>(expected));
}

TEST(PlistIO, RejectsWhatIsNoPropertyList) {
  std::string deep;
  for (int i = 0; i < 100; ++i) deep = "<array>" + deep + "</array>";
  for (const std::string& bytes : {std::string(), std::string("not a property list"),
                                   std::string("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>"),
                                   test::readFile(test::fontPath("plist/sample.binary.plist")).substr(0, 40),
                                   "<plist version=\"1.0\">" + deep + "</plist>"})
    EXPECT_EQ(parsePropertyList(span(bytes)), std::nullopt) << bytes.substr(0, 60);
}

}  // namespace
}  // namespace typeprint
