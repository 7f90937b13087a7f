// UxString: case-blind comparisons, Pascal strings, editing, numbers, wide strings and the
// legacy-encoding setters.
#include <gtest/gtest.h>

#include <cstring>
#include <locale>
#include <string>

#include "foundation/ux_string.h"

namespace typeprint {
namespace {

int sign(int v) { return (v > 0) - (v < 0); }

TEST(UxString, ComparisonsIgnoreCaseAndStopAtNul) {
  const struct {
    std::string a, b;
    int order;
  } rows[] = {
      {"Bold", "BOLD", 0},
      {"abc", "abd", -1},
      {"b", "A", 1},
      {std::string("a\0b", 3), "A", 0},
      {"", "", 0},
      {"", "a", -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.a + " vs " + row.b);
    UxString a(row.a);
    EXPECT_EQ(sign(a.CompareNoCase(row.b)), row.order);
    EXPECT_EQ(sign(UxString::CompareNoCase(row.a, row.b)), row.order);
    EXPECT_EQ(a == row.b, row.order == 0);
    EXPECT_EQ(a != UxString(row.b), row.order != 0);
    EXPECT_EQ(a < row.b, row.order < 0);
    EXPECT_EQ(a <= row.b, row.order <= 0);
    EXPECT_EQ(a > row.b, row.order > 0);
    EXPECT_EQ(a >= row.b, row.order >= 0);
  }
}

TEST(UxString, PascalStringsCutAt255Bytes) {
  const struct {
    size_t length;
    unsigned char lengthByte;
  } rows[] = {{0, 0}, {1, 1}, {255, 255}, {256, 255}, {300, 255}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    std::string text;
    for (size_t i = 0; i < row.length; ++i) text += char('a' + i % 26);
    unsigned char out[256];
    std::memset(out, 0xCC, sizeof out);
    UxString s(text);
    ASSERT_EQ(s.GetPascalString(out), out);
    EXPECT_EQ(out[0], row.lengthByte);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out + 1), out[0]), text.substr(0, row.lengthByte));
    if (row.lengthByte < 255) {
      EXPECT_EQ(out[1 + row.lengthByte], 0xCC) << "no terminator is written";
    }
    UxString back;
    back.setPStr(s.GetPascalString());
    EXPECT_EQ(std::string(back), text.substr(0, row.lengthByte));
  }
}

TEST(UxString, PascalBufferIsOwnedAndCopiedOnlyBetweenOwners) {
  UxString a("x");
  unsigned char* buffer = a.GetPascalString();
  EXPECT_EQ(a.GetPascalString(), buffer) << "the buffer is allocated once";

  UxString copy(a);
  EXPECT_NE(copy.GetPascalString(), buffer) << "a copy starts without the buffer";

  UxString withoutBuffer("yy");
  a = withoutBuffer;
  EXPECT_EQ(std::string(a), "yy");
  EXPECT_EQ(buffer[0], 1) << "a source without a buffer leaves the target's buffer alone";
  EXPECT_EQ(buffer[1], 'x');

  UxString withBuffer("zzz");
  withBuffer.GetPascalString();
  a = withBuffer;
  EXPECT_EQ(buffer[0], 3);
  EXPECT_EQ(buffer[1], 'z');
}

TEST(UxString, TrimWhitespaceFromEnd) {
  const struct {
    const char *in, *out;
    bool removed;
  } rows[] = {
      {"Arial \t ", "Arial", true}, {"Arial", "Arial", false}, {" \t", "", true},
      {"", "", false},              {"Arial\n", "Arial\n", false}, {"A \n ", "A \n", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.in);
    UxString s(row.in);
    EXPECT_EQ(s.TrimWhitespaceFromEnd(), row.removed);
    EXPECT_EQ(std::string(s), row.out);
  }
}

TEST(UxString, ReplaceAll) {
  const struct {
    const char *text, *from, *to, *result;
    unsigned long count;
  } rows[] = {
      {"aba", "a", "aa", "aabaa", 2}, {"xx", "x", "", "", 2},     {"abc", "z", "y", "abc", 0},
      {"", "a", "b", "", 0},          {"aaaa", "aa", "a", "aa", 2}, {"a.b.c", ".", "::", "a::b::c", 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.text) + ": " + row.from + " -> " + row.to);
    UxString s(row.text);
    EXPECT_EQ(ReplaceAll(&s, row.from, row.to), row.count);
    EXPECT_EQ(std::string(s), row.result);
  }
  UxString bytes("a.b.c");
  EXPECT_EQ(ReplaceAll(&bytes, '.', '_'), 2u);
  EXPECT_EQ(std::string(bytes), "a_b_c");
  UxString empty;
  EXPECT_EQ(ReplaceAll(&empty, '.', '_'), 0u);
}

// A locale that groups thousands, to show numbers ignore the global locale.
struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(UxString, ValueStringsAreDecimalWithoutGrouping) {
  std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Grouping));
  EXPECT_EQ(std::string(UxString(-12L)), "-12");
  EXPECT_EQ(std::string(UxString(4294967295UL)), "4294967295");
  EXPECT_EQ(std::string(UxString(1234567L)), "1234567");
  UxString s("old");
  s.MakeValueString(0L);
  EXPECT_EQ(std::string(s), "0");
  std::locale::global(previous);
}

TEST(UxString, StrncpyAlwaysTerminates) {
  char buffer[8];
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(strncpyNULLTerminate(buffer, "abcdef", 4), buffer);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(buffer[4], 'x');
  std::memset(buffer, 'x', sizeof buffer);
  strncpyNULLTerminate(buffer, "ab", 6);
  EXPECT_EQ(std::string(buffer, 7), std::string("ab\0\0\0\0x", 7)) << "a short source is padded";
}

TEST(UxString, WideConversions) {
  // é U+00E9, € U+20AC, 😀 U+1F600 = D83D DE00 in UTF-16.
  const std::wstring units = {0xE9, 0x20AC, 0xD83D, 0xDE00};
  UxString text("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(UTF8ToWide(text), units) << "surrogate pairs stay two units";
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(text)), units);
  EXPECT_EQ(std::string(WideToUTF8(units)), std::string(text));

  EXPECT_TRUE(UTF8ToWide(UxString("\xFF")).empty()) << "invalid UTF-8";
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(UxString("\xC3"))), std::wstring());

  std::string out = "unchanged";
  EXPECT_EQ(WideToUTF8(std::wstring{0xD800}, &out), 0u) << "a lone surrogate cannot be encoded";
  EXPECT_EQ(out, "unchanged");
  EXPECT_EQ(WideToUTF8(std::wstring{0x1F600}, &out), 3u) << "wide characters are cut to 16 bits";
  EXPECT_EQ(out, "\xEF\x98\x80");

  EXPECT_EQ(UTF16ToWide(std::u16string{u'a', 0, u'b'}), L"a") << "copying stops at a zero unit";
  EXPECT_TRUE(DecomposedToPrecomposed(L"e\u0301").empty());
  EXPECT_TRUE(PrecomposedToDecomposed(L"\u00e9").empty());
}

TEST(UxString, SetDecodesOrFailsLeavingTheText) {
  const struct {
    const char* what;
    std::string bytes;
    TextEncoding encoding;
    bool ok;
    const char* text;
  } rows[] = {
      {"Mac Roman e-acute", "Caf\x8E", TextEncoding::MacRoman, true, "Caf\xC3\xA9"},
      {"Shift-JIS hiragana a", "\x82\xA0", TextEncoding::MacJapanese, true, "\xE3\x81\x82"},
      {"UTF-16BE", std::string("\x00\x41\x30\x42", 4), TextEncoding::UTF16BE, true, "A\xE3\x81\x82"},
      {"invalid UTF-8", "\xC3\x28", TextEncoding::UTF8, false, "before"},
      {"cut Shift-JIS pair", "\x82", TextEncoding::MacJapanese, false, "before"},
      {"odd UTF-16BE", std::string("\x00", 1), TextEncoding::UTF16BE, false, "before"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString s("before");
    ByteSpan bytes(reinterpret_cast<const uint8_t*>(row.bytes.data()), row.bytes.size());
    EXPECT_EQ(s.Set(bytes, row.encoding), row.ok);
    EXPECT_EQ(std::string(s), row.text);
  }
  UxString s("before");
  EXPECT_FALSE(s.Set(static_cast<const char*>(nullptr), TextEncoding::UTF8));
  EXPECT_TRUE(s.empty());
}

TEST(UxString, EncodedAndUnicodeForms) {
  UxString cafe("Caf\xC3\xA9");
  EXPECT_EQ(cafe.GetEncoded(TextEncoding::MacRoman), std::optional<std::string>("Caf\x8E"));
  EXPECT_EQ(UxString("\xE2\x98\x83").GetEncoded(TextEncoding::MacRoman), std::nullopt) << "no snowman in Mac Roman";
  EXPECT_EQ(UxString("\xFF").GetEncoded(TextEncoding::UTF8), std::nullopt);
  EXPECT_EQ(UxString("Caf\x8E").GetUnicode(TextEncoding::MacRoman), std::optional<UxString>(cafe));
  EXPECT_EQ(UxString("\xC3\x28").GetUnicode(TextEncoding::Invalid), std::nullopt) << "system encoding is UTF-8";
}

TEST(UxString, StringListLookups) {
  EXPECT_FALSE(UxString(2, 1).empty());
  EXPECT_EQ(std::string(UxString::LoadResource(2, 1)), std::string(UxString(2, 1)));
  const struct {
    short list, index;
  } missing[] = {{2, 0}, {2, -1}, {2, 99}, {99, 1}};
  for (const auto& row : missing) {
    SCOPED_TRACE(std::to_string(row.list) + "/" + std::to_string(row.index));
    EXPECT_TRUE(UxString::LoadResource(row.list, row.index).empty());
  }
}

}  // namespace
}  // namespace typeprint
