#include "faces/font_data.h"

#include <gtest/gtest.h>

#include "analysis/checksums.h"
#include "builders/sfnt_builder.h"
#include "builders/pfm_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;

TEST(FontData, DecidesTheKindFromExtensionThenFirstBytes) {
  const Bytes trueType = test::SfntBuilder(0x00010000).table("head", 8).build();
  const Bytes otto = test::patchU32(trueType, 0, 0x4F54544F), ttcf = test::patchU32(trueType, 0, 0x74746366);
  const struct { const char* name; Bytes bytes; const char* kind; } rows[] = {
      {"a.ttf", otto, "TrueType"}, {"a.otf", otto, "OpenType - PS"}, {"a.otf", trueType, "OpenType - TT"},
      {"a.OTF", Bytes{0x4F, 0x54}, "OpenType - TT"}, {"a.ps", trueType, "PostScript"}, {"a.dfont", trueType, "TrueType"},
      {"a.ttc", trueType, "TrueType Collection"}, {"a.mmm", trueType, "PostScript - MM"}, {"a.pfb", otto, ""},
      {"noext-ttcf", ttcf, "TrueType"}, {"noext-otto", otto, "OpenType - PS"}, {"noext-truetype", trueType, ""},
      {"noext-pfm", test::pfmFile(117, 117, "COPYRIGHT 2020 Sample"), "PostScript"},
      {"noext-pfm-size-wrong", test::pfmFile(200, 201, "Copyright"), ""},
      {"noext-pfm-116-bytes", test::pfmFile(116, 116, "Copyright"), ""},
      // A real metrics file stores its size little-endian, so the big-endian test refuses it.
      {"noext-real-pfm", test::bytesOf(test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfm"))), ""},
  };
  test::ScratchDir dir;
  for (const auto& row : rows) {
    test::writeFile(dir.file(row.name), std::string(row.bytes.begin(), row.bytes.end()));
    TFontData fd;
    initializeAndConstructFontInfo(fd, nullptr, dir.file(row.name));
    UxString kind;
    getMetaData_FontType(fd, nullptr, 0, &kind);
    EXPECT_EQ(kind, row.kind) << row.name;
    freeFontInfo(fd);
  }
}

// "status|printer file|kind|platform" and, with `everything`, "|<the 7 names>|kerning checksum".
std::string collect(const std::string& path, bool everything, const FileForks* forks = nullptr) {
  UxString s[10];
  uint32_t kerning = 0;
  const FaceOutcome outcome = CollectMetaData(nullptr, path, nullptr, 0, &s[0], &s[1], &s[2], &s[3], &s[4], &s[5],
                                              &s[6], &s[7], &s[8], &s[9], &kerning, forks);
  std::string all = outcome == FaceOutcome::Read ? "read" : outcome == FaceOutcome::NoNames ? "no names" : "other";
  for (int i = 0; i < (everything ? 10 : 3); ++i) all += "|" + s[i];
  return everything ? all + "|" + std::to_string(kerning) : all;
}

// Kinds, names and table checksums from fontTools (stored checkSum where the kern/GPOS length is
// no multiple of four, else the word sum by Python struct); file CRCs from Python's zlib.crc32.
TEST(FontData, CollectsMetadataAndChecksumsOfRealFonts) {
  const std::string dejaVu = "DejaVu fonts team|DejaVu Sans|Version 2.37|DejaVuSans|DejaVu Sans Book|DejaVu Sans|DejaVu Sans";
  const std::string nimbus = "(URW)++,Copyright 2014 by (URW)++ Design & Development|Nimbus Sans|Version 1.00|"
                             "NimbusSans-Regular|Nimbus Sans Regular|Nimbus Sans|";
  const struct { std::string path, kind, names; uint32_t kerning, crc; } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"), "TrueType", dejaVu, 0xFA0DFAA2, 0x6CEF5D8F},
      {test::fontPath("sfnt/DejaVuSans-DSIG.ttf"), "OpenType - TT", dejaVu, 0xFA0DFAA2, 0x6044FE9C},
      {test::fontPath("sfnt/DejaVuSans-GPOS.ttf"), "OpenType - TT", dejaVu, 0x1F2A260E, 0x94A13172},  // Windows names
      {test::fontPath("sfnt/NimbusSans-Regular.otf"), "OpenType - PS", "Copyright " + nimbus + "Nimbus Sans", 0xE20DF8BA,
       0x7400DF99},
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "OpenType - TT", dejaVu, 0x0C99083B, 0xD74C30B5},
      {"/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf", "OpenType - PS", nimbus + "NimbusSans-Regular",
       0x6830EF48, 0x2D33C23B},
  };
  for (const auto& row : rows) {
    if (test::readFile(row.path).empty()) continue;  // a Debian font that is not installed
    EXPECT_EQ(collect(row.path, true), "read||" + row.kind + "|crossplatform|" + row.names + "|" + std::to_string(row.kerning));
    uint32_t crc = 0, dataFork = 0;
    EXPECT_TRUE(CChecksum::CalculateFileChecksum(row.path, &crc, &dataFork)) << row.path;
    EXPECT_EQ(std::make_pair(crc, dataFork), std::make_pair(row.crc, row.crc)) << row.path;
  }
  // The path only names the font; the bytes come from the forks the caller already mapped.
  std::optional<FileForks> forks = openForks(rows[3].path);
  ASSERT_TRUE(forks);
  EXPECT_EQ(collect("/nonexistent/NimbusSans-Regular.otf", true, &*forks), collect(rows[3].path, true));
}

TEST(FontData, CollectStatuses) {
  test::ScratchDir dir;
  const Bytes noNames = test::SfntBuilder().table("head", 8).table("glyf", 8).build();
  test::writeFile(dir.file("faces.ttc"), test::readFile(test::fontPath("sfnt/DejaVuSans-3faces.ttc")));
  test::writeFile(dir.file("font.ps"), test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfa")));
  test::writeFile(dir.file("nonames.ttf"), std::string(noNames.begin(), noNames.end()));
  // A collection named so loads no data; PostScript without a printer file is read as an sfnt, which fails.
  const struct { const char* file; const char* status; } rows[] = {
      {"missing.ttf", "no names||TrueType|mac"}, {"nonames.ttf", "no names||TrueType|mac"},
      {"faces.ttc", "no names||TrueType Collection|mac"}, {"font.ps", "no names||PostScript|mac"}};
  for (const auto& row : rows) EXPECT_EQ(collect(dir.file(row.file), false), row.status) << row.file;
}

}  // namespace
}  // namespace typeprint
