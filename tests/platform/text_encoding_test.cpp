// Byte encodings to and from UTF-8 through ICU, and Unicode lower case.
#include "platform/linux/text_encoding.h"

#include <gtest/gtest.h>

namespace typeprint {
namespace {

ByteSpan span(const std::string& s) { return ByteSpan(reinterpret_cast<const uint8_t*>(s.data()), s.size()); }

// Expected mappings come from the published tables (Apple ROMAN.TXT, JIS X 0208 via Shift-JIS).
TEST(TextEncoding, DecodesAndEncodesEachEncoding) {
  const struct { TextEncoding encoding; std::string bytes, utf8; } rows[] = {
      {TextEncoding::MacRoman, "\x8E\x9A\xA5\xDE", "\xC3\xA9\xC3\xB6\xE2\x80\xA2\xEF\xAC\x81"},
      {TextEncoding::MacJapanese, "\x93\xFA\x96\x7B\xB1", "\xE6\x97\xA5\xE6\x9C\xAC\xEF\xBD\xB1"},
      {TextEncoding::UTF16BE, std::string("\xD8\x3D\xDE\x00", 4), "\xF0\x9F\x98\x80"},
      {TextEncoding::ASCII, "Times", "Times"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(decodeToUTF8(span(row.bytes), row.encoding), std::optional<std::string>(row.utf8)) << row.utf8;
    EXPECT_EQ(encodeFromUTF8(row.utf8, row.encoding), std::optional<std::string>(row.bytes)) << row.utf8;
  }
  const struct { TextEncoding encoding; std::string bytes; } invalid[] = {
      {TextEncoding::UTF8, "\xC0\xAF"},        {TextEncoding::UTF8, "a\xE2\x82"},
      {TextEncoding::MacJapanese, "\x82\x20"}, {TextEncoding::UTF16BE, std::string("\x00\x41\x00", 3)},
      {TextEncoding::UTF16BE, std::string("\xD8\x00\x00\x41", 4)}, {TextEncoding::ASCII, "\xE9"},
  };
  for (const auto& row : invalid) EXPECT_EQ(decodeToUTF8(span(row.bytes), row.encoding), std::nullopt) << row.bytes;
  EXPECT_EQ(encodeFromUTF8("\xE2\x98\x83", TextEncoding::MacRoman), std::nullopt) << "unmappable";
  EXPECT_EQ(utf16ToUTF8(std::u16string{0xDC00}), std::nullopt);
  EXPECT_EQ(toLowerUnicode("\xC3\x80\xC3\x89 ABCI"), "\xC3\xA0\xC3\xA9 abci");  // and no Turkish rule
  EXPECT_EQ(toLowerUnicode("A\xFF"), "A\xFF") << "invalid UTF-8 comes back unchanged";
}

}  // namespace
}  // namespace typeprint
