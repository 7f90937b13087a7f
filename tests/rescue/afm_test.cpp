#include <gtest/gtest.h>

#include <string>

#include "builders/byte_edits.h"
#include "builders/fond_builder.h"
#include "rescue/afm_writer.h"

namespace typeprint::rescue {
namespace {

using test::Bytes;
using test::FondBuilder;

ByteSpan span(const std::string& s) { return {reinterpret_cast<const uint8_t*>(s.data()), s.size()}; }

TEST(FondMetrics, ReadsKerningPerStyleAndRefusesDamagedTables) {
  const Bytes fond = FondBuilder().entry(0, 0, 128).kerning(0, 3).kerning(1, 1).build();
  const size_t kern = FondBuilder().entry(0, 0, 128).kerning(0, 3).kerning(1, 1).layout().kernTable;
  std::optional<FondMetrics> metrics = readFondMetrics(fond);
  ASSERT_TRUE(metrics);
  ASSERT_TRUE(metrics->kerningFor(0) && metrics->kerningFor(1));
  EXPECT_EQ(metrics->kerningFor(0)->pairs.size(), 3u);
  EXPECT_EQ(metrics->kerningFor(0)->pairs[2].second, 3);
  EXPECT_EQ(metrics->kerningFor(0)->pairs[2].value, 2);
  EXPECT_FALSE(metrics->kerningFor(2));

  const struct {
    const char* what;
    Bytes bytes;
  } damaged[] = {
      {"shorter than the header", test::truncated(fond, 51)},
      {"kerning table past the end", test::patchU32(fond, 20, 0xFFFFFF00)},
      {"more pairs than bytes", test::patchU16(fond, kern + 4, 0x7FFF)},
      {"negative pair count", test::patchU16(fond, kern + 4, 0xFFFF)},
      {"more entries than bytes", test::patchU16(fond, kern, 0x0005)},
      {"width table past the end", test::patchU32(fond, 16, uint32_t(fond.size()))},
      {"width table over a reversed code range", test::patchU16(test::patchU32(fond, 16, uint32_t(kern)), 4, 0x0010)},
  };
  for (const auto& row : damaged) {
    SCOPED_TRACE(row.what);
    EXPECT_FALSE(readFondMetrics(row.bytes));
  }
}

TEST(FondMetrics, ConvertsFractionsOfTheEmToThousandths) {
  const struct {
    int16_t fraction;
    int thousandths;
  } rows[] = {{4096, 1000}, {2048, 500}, {-300, -73}, {-205, -50}, {2, 0}, {3, 1}, {-32768, -8000}};
  for (const auto& row : rows) EXPECT_EQ(fixedToThousandths(row.fraction), row.thousandths) << row.fraction;
}

TEST(Type1FontInfo, ReadsTheHeaderValues) {
  const std::string header =
      "%!PS-AdobeFont-1.0: Sample-Bold 1.0\n/FontName /Sample-Bold def\n/FontBBox [-10 -200 900.5 700] readonly def\n"
      "/FontInfo 9 dict dup begin\n /Notice (Copyright \\050c\\051 \\(x\\) a\\\nb (nested)) readonly def\n"
      " /FullName (Sample Bold) def\n /FamilyNameX (wrong) def\n /FamilyName (Sample) def\n /ItalicAngle -12.5 def\n"
      " /isFixedPitch true def\n /UnderlinePosition -100 def\nend readonly def\n"
      "/Encoding 256 array\n0 1 255 {1 index exch /.notdef put} for\ndup 65 /Alpha put\ndup 300 /tooHigh put\n"
      "dup 66 /Beta put\nreadonly def\ncurrentfile eexec\n";
  const Type1FontInfo info = readType1FontInfo(span(header));
  EXPECT_EQ(info.fontName, "Sample-Bold");
  EXPECT_EQ(info.familyName, "Sample");
  EXPECT_EQ(info.notice, "Copyright (c) (x) ab (nested)");
  EXPECT_DOUBLE_EQ(info.italicAngle, -12.5);
  EXPECT_TRUE(info.isFixedPitch);
  ASSERT_TRUE(info.fontBBox);
  EXPECT_DOUBLE_EQ((*info.fontBBox)[2], 900.5);
  EXPECT_FALSE(info.underlineThickness);
  EXPECT_FALSE(info.standardEncoding);
  EXPECT_EQ(info.encoding, (std::map<uint8_t, std::string>{{65, "Alpha"}, {66, "Beta"}}));
}

TEST(AfmWriter, NamesCodesThroughTheEncodingAndKeepsOnlyPairsOfPresentGlyphs) {
  Type1FontInfo info;
  info.fontName = "Sample";
  FondMetrics family;
  family.firstChar = 65;
  family.lastChar = 87;
  family.widths.push_back({0, std::vector<int16_t>(23, 2048)});
  family.kerning.push_back({0, {{65, 86, -300}, {65, 87, -100}, {86, 65, 41}}});  // A V, A W (no glyph), V A
  const std::map<std::string, GlyphMetrics> glyphs = {
      {"A", {600, true, 10, 0, 590, 700}}, {"V", {600, true, 5, 0, 595, 700}}, {"ring", {300, true, 1, 2, 3, 4}}};
  const AfmFont font = buildAfmFont(info, glyphs, family, 0);
  EXPECT_EQ(font.droppedPairs, 1u);
  const std::string afm = writeAfm(font);
  for (const char* line : {"C 65 ; WX 500 ; N A ; B 10 0 590 700 ;\n", "C 86 ; WX 500 ; N V ; B 5 0 595 700 ;\n",
                           "C -1 ; WX 300 ; N ring ; B 1 2 3 4 ;\n", "StartCharMetrics 3\n", "StartKernPairs 2\n",
                           "KPX A V -73\n", "KPX V A 10\n", "EncodingScheme MacRomanEncoding\n"})
    EXPECT_NE(afm.find(line), std::string::npos) << line;
  EXPECT_EQ(buildAfmFont(info, glyphs, family, 1).kerning.size(), 0u);
}

}  // namespace
}  // namespace typeprint::rescue
