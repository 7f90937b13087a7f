#include "analysis/name_table.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::asciiBytes;
using test::Bytes;
using test::fontWithNames;
using test::NameRecordSpec;
using test::utf16be;

struct Names {
  bool ok = false;
  UxString foundry, family, version, postScript, styled, full, windowsFull;
};

Names readNames(const SfntBytes& font) {
  Names n;
  n.ok = getMetaDataFromNamesTable(font, nullptr, nullptr, 0, &n.foundry, &n.family, &n.version, &n.postScript,
                                   &n.styled, &n.full, &n.windowsFull);
  return n;
}

Names readNames(const Bytes& font) { return readNames(SfntBytes(ByteSpan(font))); }

NameRecordSpec mac(uint16_t nameID, const std::string& text) { return {1, 0, 0, nameID, asciiBytes(text)}; }
NameRecordSpec winUS(uint16_t nameID, const std::u16string& text) { return {3, 1, 0x409, nameID, utf16be(text)}; }
NameRecordSpec winOther(uint16_t nameID, const std::u16string& text) { return {3, 1, 0x407, nameID, utf16be(text)}; }

TEST(NameTable, DoubleByteRule) {
  const struct {
    short platform, encoding, language;
    bool doubleByte;
  } rows[] = {
      {0, 0, 0, false}, {0, 1, 0, true},   {0, 4, 0, true},   {0, 5, 0, false},  {1, 0, 0, false},
      {1, 1, 0, false}, {1, 0, 11, true},  {2, 1, 0, false},  {3, 0, 0, false},  {3, 1, 0x409, true},
      {3, 10, 0, true}, {3, 11, 0, false}, {4, 0, 0, true},   {5, 1, 0, false},  {-1, 1, 0, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.platform << "/" << row.encoding << "/" << row.language);
    EXPECT_EQ(IsDoubleBytePlatform(row.platform, row.encoding, row.language), row.doubleByte);
  }
}

TEST(NameTable, PrefersMacEnglishThenWindowsUSThenWindowsThenFirst) {
  const struct {
    const char* what;
    std::vector<NameRecordSpec> records;
    const char* family;
  } rows[] = {
      {"first of any", {{2, 0, 0, 1, asciiBytes("Iso")}, {0, 0, 0, 1, asciiBytes("Uni")}}, "Iso"},
      {"Windows beats any", {{2, 0, 0, 1, asciiBytes("Iso")}, winOther(1, u"Win")}, "Win"},
      {"Windows US beats Windows", {winOther(1, u"Win"), winUS(1, u"US")}, "US"},
      {"two Windows US: the first wins", {winUS(1, u"First"), winUS(1, u"Second")}, "First"},
      {"Mac English after them replaces them", {winUS(1, u"First"), winUS(1, u"Second"), mac(1, "Mac")}, "Mac"},
      {"nothing beats Mac English", {mac(1, "Mac"), winUS(1, u"US"), mac(1, "Later")}, "Mac"},
      {"Mac other language counts as any", {{1, 0, 2, 1, asciiBytes("French")}, winOther(1, u"Win")}, "Win"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(readNames(fontWithNames(row.records)).family, row.family);
  }
}

TEST(NameTable, DecodesUTF16ThenUTF8) {
  const struct {
    const char* what;
    NameRecordSpec record;
    const char* family;  // nullptr: no name
  } rows[] = {
      {"Windows Unicode", {3, 1, 0x409, 1, utf16be(u"Sample")}, "Sample"},
      {"Windows Unicode, non-ASCII", {3, 1, 0x409, 1, utf16be(u"Caf\u00e9")}, "Caf\xC3\xA9"},
      {"Mac Roman bytes read as UTF-8", {1, 0, 0, 1, asciiBytes("Caf\xC3\xA9")}, "Caf\xC3\xA9"},
      {"Mac Roman byte invalid as UTF-8 is dropped", {1, 0, 0, 1, asciiBytes("Caf\x8E")}, nullptr},
      {"symbol encoding starting with zero is UTF-16", {3, 0, 0x409, 1, utf16be(u"Sym")}, "Sym"},
      {"symbol encoding starting non-zero is UTF-8", {3, 0, 0x409, 1, Bytes{0x41, 0x42}}, "AB"},
      {"odd-length UTF-16 falls back to UTF-8", {3, 1, 0x409, 1, Bytes{0x41, 0x42, 0x43}}, "ABC"},
      {"unpaired surrogate falls back to invalid UTF-8", {3, 1, 0x409, 1, Bytes{0xD8, 0x00, 0x00, 0x41}}, nullptr},
      {"empty string", {3, 1, 0x409, 1, Bytes{}}, nullptr},
      {"control bytes filtered", {1, 0, 0, 1, asciiBytes("A\x01" "B\tC\x7F")}, "AB\tC\x7F"},
      {"only control bytes", {1, 0, 0, 1, asciiBytes("\x01\x02")}, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names n = readNames(fontWithNames({row.record}));
    EXPECT_EQ(n.ok, row.family != nullptr);
    EXPECT_EQ(n.family, row.family ? row.family : "");
  }
}

TEST(NameTable, PostScriptNameMustBeASCII) {
  Names n = readNames(fontWithNames({winUS(6, u"Caf\u00e9-Bold"), winUS(4, u"Caf\u00e9 (Bold) [x]/{y}")}));
  EXPECT_TRUE(n.ok);
  EXPECT_EQ(n.postScript, "Caf\xC3\xA9" "Boldxy");  // the full name, cleaned
  n = readNames(fontWithNames({winUS(6, u"\u00e9")}));
  EXPECT_TRUE(n.ok);  // the record counted even though it was refused
  EXPECT_EQ(n.postScript, "");
}

TEST(NameTable, DerivesTheOutputs) {
  const struct {
    const char* what;
    std::vector<NameRecordSpec> records;
    Names expected;
  } rows[] = {
      {"family alone gets Regular",
       {mac(1, "Sample")},
       {true, "", "Sample", "", "", "Sample Regular", "", ""}},
      {"preferred names win",
       {mac(1, "Sample Pro Cond"), mac(2, "Bold"), mac(16, "Sample Pro"), mac(17, "Bold Cond")},
       {true, "", "Sample Pro", "", "", "Sample Pro Bold Cond", "", ""}},
      {"manufacturer beats copyright",
       {mac(0, "(c) Someone"), mac(8, "Maker")},
       {true, "Maker", "", "", "", "", "", ""}},
      {"copyright when no manufacturer", {mac(0, "(c) Someone")}, {true, "(c) Someone", "", "", "", "", "", ""}},
      {"PostScript name fills full names",
       {mac(6, "Sample-Bold"), mac(5, "Version 1.0")},
       {true, "", "", "Version 1.0", "Sample-Bold", "Sample-Bold", "Sample-Bold", "Sample-Bold"}},
      {"no family: styled name is the full name",
       {mac(4, "Sample Bold")},
       {true, "", "", "", "SampleBold", "Sample Bold", "Sample Bold", "Sample Bold"}},
      {"Windows full name only from Windows records",
       {mac(4, "Mac Full"), winUS(4, u"Win Full")},
       {true, "", "", "", "MacFull", "Mac Full", "Mac Full", "Win Full"}},
      {"spaces trimmed, tabs kept",
       {mac(1, "  Sample \t "), mac(2, "  ")},
       {true, "", "Sample \t", "", "", "Sample \t Regular", "", ""}},
      {"skipped name IDs give nothing", {mac(3, "Unique"), mac(7, "Mark"), mac(18, "Compat")}, {false}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names n = readNames(fontWithNames(row.records));
    EXPECT_EQ(n.ok, row.expected.ok);
    EXPECT_EQ(n.foundry, row.expected.foundry);
    EXPECT_EQ(n.family, row.expected.family);
    EXPECT_EQ(n.version, row.expected.version);
    EXPECT_EQ(n.postScript, row.expected.postScript);
    EXPECT_EQ(n.styled, row.expected.styled);
    EXPECT_EQ(n.full, row.expected.full);
    EXPECT_EQ(n.windowsFull, row.expected.windowsFull);
  }
}

TEST(NameTable, CutsNamesAt1023Bytes) {
  Names n = readNames(fontWithNames({mac(1, std::string(1500, 'a'))}));
  EXPECT_EQ(n.family, std::string(1023, 'a'));
  // 1,023 bytes of UTF-16 is an odd count: the last unit is cut in half, UTF-16 fails, and the
  // UTF-8 reading of "\0a\0a..." keeps only the letters once the zero bytes are filtered.
  n = readNames(fontWithNames({winUS(1, std::u16string(600, u'a'))}));
  EXPECT_EQ(n.family, std::string(511, 'a'));  // 511 whole units, then a lone zero byte
}


TEST(NameTable, IgnoresDamagedTablesAndRecords) {
  const Bytes font = fontWithNames({mac(1, "Sample")});
  auto entry = FindSpecifiedTable(ByteSpan(font), "name");
  ASSERT_TRUE(entry);
  const size_t table = entry->offset, record = table + 6, nameEntry = entry->entryOffset;
  const struct {
    const char* what;
    Bytes bytes;
  } rows[] = {
      {"no name table", test::SfntBuilder().table("cmap", 8).build()},
      {"table runs past the end", test::patchU32(font, nameEntry + 12, 0xFFFF)},
      {"table at offset 0", test::patchU32(font, nameEntry + 8, 0)},
      {"count 0", test::patchU16(font, table + 2, 0)},
      {"count negative", test::patchU16(font, table + 2, 0xFFFF)},
      {"string before the table", test::patchU16(test::patchU16(font, table + 4, 0), record + 10, 0xFFF0)},
      {"string past the end of the font", test::patchU16(font, record + 10, 0x7000)},
      {"negative length", test::patchU16(font, record + 8, 0x8000)},
      {"record cut by the end of the font", test::truncated(font, record + 11)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names n = readNames(row.bytes);
    EXPECT_FALSE(n.ok);
    EXPECT_EQ(n.family, "");
    EXPECT_EQ(n.styled, "");
  }
}

TEST(NameTable, RecordsAndStringsAreBoundedByTheFontNotTheTable) {
  Bytes font = fontWithNames({mac(1, "Sample")});
  auto entry = FindSpecifiedTable(ByteSpan(font), "name");
  // A name table whose declared length covers only its header still reads records that follow.
  font = test::patchU32(font, entry->entryOffset + 12, 6);
  EXPECT_EQ(readNames(font).family, "Sample");
}

TEST(NameTable, StripsPostScriptNames) {
  const struct {
    std::string in, out;
  } rows[] = {
      {"Sample Bold", "SampleBold"},
      {"(a)[b]{c}/d e", "abcde"},
      {"<a>%b\x01\xC3\xA9", "<a>%b\x01\xC3\xA9"},
      {"", ""},
      {"  ", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.in);
    std::string name = row.in;
    StripIllegalCharsInPostScriptName(name);
    EXPECT_EQ(name, row.out);
  }
}

TEST(NameTable, PostScriptNameAlone) {
  const Bytes font = fontWithNames({mac(4, "Full Name")});
  std::string name = "stale";
  getPostScriptNameFromNamesTable(ByteSpan(font), nullptr, nullptr, 0, name);
  EXPECT_EQ(name, "FullName");
  name = "stale";
  getPostScriptNameFromNamesTable(SfntBytes(), nullptr, nullptr, 0, name);
  EXPECT_EQ(name, "");
}

// Values read with fontTools from the committed files and the Debian packages.
TEST(NameTable, ReadsRealFonts) {
  const struct {
    std::string path;
    Names expected;
  } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"),
       {true, "DejaVu fonts team", "DejaVu Sans", "Version 2.37", "DejaVuSans", "DejaVu Sans Book", "DejaVu Sans",
        "DejaVu Sans"}},
      {test::fontPath("sfnt/DejaVuSans-GPOS.ttf"),
       {true, "DejaVu fonts team", "DejaVu Sans", "Version 2.37", "DejaVuSans", "DejaVu Sans Book", "DejaVu Sans",
        "DejaVu Sans"}},
      {test::fontPath("sfnt/NimbusSans-Regular.otf"),
       {true, "Copyright (URW)++,Copyright 2014 by (URW)++ Design & Development", "Nimbus Sans", "Version 1.00",
        "NimbusSans-Regular", "Nimbus Sans Regular", "Nimbus Sans", "Nimbus Sans"}},
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
       {true, "DejaVu fonts team", "DejaVu Sans", "Version 2.37", "DejaVuSans", "DejaVu Sans Book", "DejaVu Sans",
        "DejaVu Sans"}},
      {"/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf",
       {true, "(URW)++,Copyright 2014 by (URW)++ Design & Development", "Nimbus Sans", "Version 1.00",
        "NimbusSans-Regular", "Nimbus Sans Regular", "Nimbus Sans", "NimbusSans-Regular"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    std::string bytes = test::readFile(row.path);
    if (bytes.empty()) {
      std::cerr << "skipped, not installed: " << row.path << "\n";
      continue;
    }
    Names n = readNames(SfntBytes(ByteSpan(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())));
    EXPECT_TRUE(n.ok);
    EXPECT_EQ(n.foundry, row.expected.foundry);
    EXPECT_EQ(n.family, row.expected.family);
    EXPECT_EQ(n.version, row.expected.version);
    EXPECT_EQ(n.postScript, row.expected.postScript);
    EXPECT_EQ(n.styled, row.expected.styled);
    EXPECT_EQ(n.full, row.expected.full);
    EXPECT_EQ(n.windowsFull, row.expected.windowsFull);
  }
}

}  // namespace
}  // namespace typeprint
