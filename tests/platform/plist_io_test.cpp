// Property lists from the XML and binary files Python's plistlib made of one value (make_plists.py).
// Printing and reading back is tested in foundation/plist_helpers_test.cpp.
#include "platform/linux/plist_io.h"

#include <gtest/gtest.h>

#include "support/test_paths.h"

namespace typeprint {
namespace {

ByteSpan span(const std::string& s) { return ByteSpan(reinterpret_cast<const uint8_t*>(s.data()), s.size()); }

TEST(PlistIO, ReadsXmlAndBinaryFilesAndRejectsWhatIsNoPropertyList) {
  const std::string binary = test::readFile(test::fontPath("plist/sample.binary.plist"));
  std::optional<PlistValue> value = parsePropertyList(span(binary));
  ASSERT_TRUE(value);
  EXPECT_EQ(parsePropertyList(span(test::readFile(test::fontPath("plist/sample.xml.plist")))), value);
  EXPECT_EQ(*value->find("Unicode"), PlistValue::string("\xC3\x9Cn\xC3\xAF" "c\xC3\xB8" "d\xC3\xA9 \xE2\x98\x83"));
  EXPECT_EQ(*value->find("When"), PlistValue::date(86400));
  EXPECT_EQ(*value->find("List"), PlistValue::array({PlistValue::string("a"), PlistValue::integer(7), PlistValue::boolean(false)}));
  std::string deep;
  for (int i = 0; i < 100; ++i) deep = "<array>" + deep + "</array>";
  for (const std::string& bytes : {binary.substr(0, 40), "<plist version=\"1.0\">" + deep + "</plist>"})
    EXPECT_EQ(parsePropertyList(span(bytes)), std::nullopt) << bytes.substr(0, 60);
}

}  // namespace
}  // namespace typeprint
