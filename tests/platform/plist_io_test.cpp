// Reading the XML and binary files plistlib made of one value; printing is tested with plist_helpers.
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
  EXPECT_EQ(*value->find("List"), PlistValue::array({PlistValue::string("a"), PlistValue::integer(7), PlistValue::boolean(false)}));
  EXPECT_EQ(parsePropertyList(span(binary.substr(0, 40))), std::nullopt);
}

}  // namespace
}  // namespace typeprint
