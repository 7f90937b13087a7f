#include "analysis/name_table.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"

namespace typeprint {
namespace {

using test::bytesOf;
using test::Bytes;
using test::NameRecordSpec;
using test::utf16be;

// "foundry|family|version|PostScript|styled|full|Windows full", or "-"; real fonts: font_data_test.cpp.
std::string readNames(const Bytes& font) {
  UxString n[7];
  bool ok = getMetaDataFromNamesTable(ByteSpan(font), &n[0], &n[1], &n[2], &n[3], &n[4], &n[5],
                                      &n[6]);
  return ok ? n[0] + "|" + n[1] + "|" + n[2] + "|" + n[3] + "|" + n[4] + "|" + n[5] + "|" + n[6] : "-";
}
std::string readNames(const std::vector<NameRecordSpec>& records) { return readNames(test::fontWithNames(records)); }
std::string family(const std::string& name) { return "|" + name + "|||" + name + " Regular||"; }

NameRecordSpec mac(uint16_t nameID, const std::string& text) { return {1, 0, 0, nameID, bytesOf(text)}; }
NameRecordSpec winUS(uint16_t nameID, const std::u16string& text) { return {3, 1, 0x409, nameID, utf16be(text)}; }

TEST(NameTable, ChoosesDecodesAndDerivesNames) {
  const NameRecordSpec iso{2, 0, 0, 1, bytesOf("Iso")}, win{3, 1, 0x407, 1, utf16be(u"Win")};
  const struct { const char* what; std::vector<NameRecordSpec> records; std::string names; } rows[] = {
      {"first of any", {iso, {0, 0, 0, 1, bytesOf("Uni")}}, family("Iso")},
      {"Windows US beats Windows", {win, winUS(1, u"US")}, family("US")},
      {"Mac English after Windows US replaces it", {winUS(1, u"US"), mac(1, "Mac"), winUS(1, u"Later")}, family("Mac")},
      {"UTF-16, non-ASCII", {winUS(1, u"Caf\u00e9")}, family("Caf\xC3\xA9")},
      {"Mac Roman read as UTF-8; invalid: dropped", {mac(1, "Caf\xC3\xA9"), mac(4, "Caf\x8E")}, family("Caf\xC3\xA9")},
      {"symbol encoding starting with zero is UTF-16", {{3, 0, 0x409, 1, utf16be(u"Sym")}}, family("Sym")},
      {"symbol encoding starting non-zero is UTF-8", {{3, 0, 0x409, 1, Bytes{0x41, 0x42}}}, family("AB")},
      {"odd-length UTF-16 falls back to UTF-8", {{3, 1, 0x409, 1, Bytes{0x41, 0x42, 0x43}}}, family("ABC")},
      {"unpaired surrogate, then invalid UTF-8", {{3, 1, 0x409, 1, Bytes{0xD8, 0x00, 0x00, 0x41}}}, "-"},
      {"control bytes filtered; spaces trimmed, tabs kept", {mac(1, " A\x01" "B\tC\x7F \t ")}, family("AB\tC\x7F \t")},
      {"preferred names win", {mac(1, "A C"), mac(2, "Bold"), mac(16, "A"), mac(17, "Bold C")}, "|A|||A Bold C||"},
      {"manufacturer beats copyright", {mac(0, "(c) Someone"), mac(8, "Maker")}, "Maker||||||"},
      {"PostScript name fills full names", {mac(6, "S-B"), mac(5, "1.0")}, "||1.0|S-B|S-B|S-B|S-B"},
      {"Windows full name from Windows records; a PostScript name must be ASCII, else the cleaned full name",
       {winUS(6, u"\u00e9-B"), mac(4, "Mac (B) [x]/{y}"), winUS(4, u"Win")}, "|||MacBxy|Mac (B) [x]/{y}|Mac (B) [x]/{y}|Win"},
      {"skipped name IDs give nothing", {mac(3, "Unique"), mac(7, "Mark"), mac(18, "Compat")}, "-"},
      {"a single-byte name ends at its first zero byte", {mac(1, std::string("h\0a\0r", 5))}, family("h")},
  };
  for (const auto& row : rows) EXPECT_EQ(readNames(row.records), row.names) << row.what;
  // Names are cut at 1,023 bytes; an odd 1,023 bytes of UTF-16 fail, and UTF-8 keeps the letters of 511 units.
  EXPECT_EQ(readNames({mac(1, std::string(1500, 'a'))}).substr(0, 1025), "|" + std::string(1023, 'a') + "|");
  EXPECT_EQ(readNames({winUS(1, std::u16string(600, u'a'))}).substr(0, 513), "|" + std::string(511, 'a') + "|");
}

TEST(NameTable, IgnoresDamagedTablesAndRecords) {
  const Bytes font = test::fontWithNames({mac(1, "Sample")});
  auto entry = FindSpecifiedTable(ByteSpan(font), "name");
  ASSERT_TRUE(entry);
  const size_t table = entry->offset, record = table + 6, nameEntry = entry->entryOffset;
  const struct { const char* what; Bytes bytes; std::string names; } rows[] = {
      {"no name table", test::SfntBuilder().table("cmap", 8).build(), "-"},
      {"table runs past the end", test::patchU32(font, nameEntry + 12, 0xFFFF), "-"},
      {"count negative", test::patchU16(font, table + 2, 0xFFFF), "-"},
      {"string before the table", test::patchU16(test::patchU16(font, table + 4, 0), record + 10, 0xFFF0), "-"},
      {"string past the end of the font", test::patchU16(font, record + 10, 0x7000), "-"},
      {"negative length", test::patchU16(font, record + 8, 0x8000), "-"},
      {"record cut by the end of the font", test::truncated(font, record + 11), "-"},
      {"records bounded by the font, not the table", test::patchU32(font, nameEntry + 12, 6), family("Sample")},
  };
  for (const auto& row : rows) EXPECT_EQ(readNames(row.bytes), row.names) << row.what;
}

}  // namespace
}  // namespace typeprint
