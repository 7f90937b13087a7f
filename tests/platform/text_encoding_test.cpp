// Byte encodings to and from UTF-8 through ICU, and Unicode lower case.
#include <gtest/gtest.h>

#include <string>

#include "platform/linux/text_encoding.h"

namespace typeprint {
namespace {

ByteSpan span(const std::string& s) { return ByteSpan(reinterpret_cast<const uint8_t*>(s.data()), s.size()); }

// Expected mappings come from the published tables (Apple ROMAN.TXT, JIS X 0208 via Shift-JIS).
TEST(TextEncoding, DecodesAndEncodesEachEncoding) {
  const struct {
    const char* what;
    TextEncoding encoding;
    std::string bytes, utf8;
  } rows[] = {
      {"Mac Roman accents", TextEncoding::MacRoman, "\x8E\x9A\xA5", "\xC3\xA9\xC3\xB6\xE2\x80\xA2"},
      {"Mac Roman ligature", TextEncoding::MacRoman, "\xDE", "\xEF\xAC\x81"},
      {"Shift-JIS kanji", TextEncoding::MacJapanese, "\x93\xFA\x96\x7B", "\xE6\x97\xA5\xE6\x9C\xAC"},
      {"Shift-JIS half-width kana", TextEncoding::MacJapanese, "\xB1", "\xEF\xBD\xB1"},
      {"UTF-16BE pair", TextEncoding::UTF16BE, std::string("\xD8\x3D\xDE\x00", 4), "\xF0\x9F\x98\x80"},
      {"ASCII", TextEncoding::ASCII, "Times", "Times"},
      {"empty", TextEncoding::MacRoman, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(decodeToUTF8(span(row.bytes), row.encoding), std::optional<std::string>(row.utf8));
    EXPECT_EQ(encodeFromUTF8(row.utf8, row.encoding), std::optional<std::string>(row.bytes));
  }
}

TEST(TextEncoding, InvalidInputFails) {
  const struct {
    const char* what;
    TextEncoding encoding;
    std::string bytes;
  } rows[] = {
      {"UTF-8 stray continuation", TextEncoding::UTF8, "\x80"},
      {"UTF-8 overlong", TextEncoding::UTF8, "\xC0\xAF"},
      {"UTF-8 cut sequence", TextEncoding::UTF8, "a\xE2\x82"},
      {"Shift-JIS lone lead byte", TextEncoding::MacJapanese, "\x82"},
      {"Shift-JIS bad trail byte", TextEncoding::MacJapanese, "\x82\x20"},
      {"UTF-16BE odd length", TextEncoding::UTF16BE, std::string("\x00\x41\x00", 3)},
      {"UTF-16BE lone surrogate", TextEncoding::UTF16BE, std::string("\xD8\x00\x00\x41", 4)},
      {"ASCII high byte", TextEncoding::ASCII, "\xE9"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(decodeToUTF8(span(row.bytes), row.encoding), std::nullopt);
  }
  EXPECT_EQ(encodeFromUTF8("\xE2\x98\x83", TextEncoding::MacRoman), std::nullopt) << "unmappable";
  EXPECT_EQ(encodeFromUTF8("\xFF", TextEncoding::MacRoman), std::nullopt) << "not UTF-8";
  EXPECT_EQ(utf16ToUTF8(std::u16string{0xDC00}), std::nullopt);
}

TEST(TextEncoding, LowerCase) {
  EXPECT_EQ(toLowerUnicode("\xC3\x80\xC3\x89 ABC"), "\xC3\xA0\xC3\xA9 abc");
  EXPECT_EQ(toLowerUnicode("I"), "i") << "no Turkish rule";
  EXPECT_EQ(toLowerUnicode("A\xFF"), "A\xFF") << "invalid UTF-8 comes back unchanged";
}

}  // namespace
}  // namespace typeprint
