// UxString: comparisons, Pascal strings, editing, wide strings, encodings and string lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "foundation/ux_string.h"

namespace typeprint {
namespace {

TEST(UxString, ComparisonsIgnoreCaseAndStopAtNul) {
  const struct { std::string a, b; int order; } rows[] = {
      {"Bold", "BOLD", 0}, {"abc", "abd", -1}, {"b", "A", 1}, {std::string("a\0b", 3), "A", 0}, {"", "a", -1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.a + " vs " + row.b);
    UxString a(row.a);
    int order = a.CompareNoCase(row.b);
    EXPECT_EQ((order > 0) - (order < 0), row.order);
    EXPECT_EQ(a == row.b, row.order == 0);
    EXPECT_EQ(a < row.b, row.order < 0);
  }
}

TEST(UxString, PascalStringsCutAt255Bytes) {
  for (size_t length : {size_t(1), size_t(255), size_t(256)}) {
    SCOPED_TRACE(length);
    std::string text;
    for (size_t i = 0; i < length; ++i) text += char('a' + i % 26);
    const size_t kept = std::min<size_t>(length, 255);
    unsigned char out[257];
    std::memset(out, 0xCC, sizeof out);
    UxString s(text);
    s.GetPascalString(out);
    EXPECT_EQ(out[0], kept);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out + 1), out[0]), text.substr(0, kept));
    EXPECT_EQ(out[1 + kept], 0xCC) << "nothing is written past the string, no terminator either";
  }
}

TEST(UxString, Editing) {
  UxString trimmed("Arial\n \t ");
  EXPECT_TRUE(trimmed.TrimWhitespaceFromEnd());
  EXPECT_EQ(std::string(trimmed), "Arial\n") << "only blanks and tabs are trimmed";
  const struct { const char *text, *from, *to, *result; unsigned long count; } replaces[] = {
      {"aba", "a", "aa", "aabaa", 2}, {"aaaa", "aa", "a", "aa", 2}};
  for (const auto& row : replaces) {
    SCOPED_TRACE(std::string(row.text) + ": " + row.from + " -> " + row.to);
    UxString s(row.text);
    EXPECT_EQ(ReplaceAll(&s, row.from, row.to), row.count);
    EXPECT_EQ(std::string(s), row.result);
  }
}

TEST(UxString, WideConversions) {
  const std::wstring units = {0xE9, 0x20AC, 0xD83D, 0xDE00};  // é € 😀 in UTF-16
  UxString text("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(UTF8ToWide(text), units) << "surrogate pairs stay two units";
  EXPECT_EQ(std::string(WideToUTF8(units)), std::string(text));

  std::string out = "unchanged";
  EXPECT_EQ(WideToUTF8(std::wstring{0xD800}, &out), 0u) << "a lone surrogate cannot be encoded";
  EXPECT_EQ(UTF16ToWide(std::u16string{u'a', 0, u'b'}), L"a") << "copying stops at a zero unit";
}

TEST(UxString, EncodingsAndStringLists) {
  const struct { const char* what; std::string bytes; TextEncoding encoding; bool ok; const char* text; } rows[] = {
      {"Mac Roman e-acute", "Caf\x8E", TextEncoding::MacRoman, true, "Caf\xC3\xA9"},
      {"Shift-JIS hiragana a", "\x82\xA0", TextEncoding::MacJapanese, true, "\xE3\x81\x82"},
      {"UTF-16BE", std::string("\x00\x41\x30\x42", 4), TextEncoding::UTF16BE, true, "A\xE3\x81\x82"},
      {"invalid UTF-8", "\xC3\x28", TextEncoding::UTF8, false, "before"},
      {"odd UTF-16BE", std::string("\x00", 1), TextEncoding::UTF16BE, false, "before"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString s("before");
    EXPECT_EQ(s.Set(ByteSpan(reinterpret_cast<const uint8_t*>(row.bytes.data()), row.bytes.size()), row.encoding),
              row.ok);
    EXPECT_EQ(std::string(s), row.text);
  }

  UxString cafe("Caf\xC3\xA9");
  EXPECT_EQ(cafe.GetEncoded(TextEncoding::MacRoman), std::optional<std::string>("Caf\x8E"));
  EXPECT_EQ(UxString("\xE2\x98\x83").GetEncoded(TextEncoding::MacRoman), std::nullopt) << "no snowman in Mac Roman";
  EXPECT_FALSE(UxString::LoadResource(2, 1).empty());
  EXPECT_TRUE(UxString::LoadResource(2, 0).empty()) << "indexes count from 1";
  EXPECT_TRUE(UxString::LoadResource(99, 1).empty());
}

}  // namespace
}  // namespace typeprint
