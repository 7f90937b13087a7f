#include "analysis/font_data.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"
#include "builders/type1_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;

TEST(FontData, ExtensionTypes) {
  const struct { const char* path; short type; } rows[] = {
      {"Font.TTF", 0}, {"f.otf", 1},  {"f.ps", 2},   {"f.dfont", 3}, {"f.ttc", 4},     {"f.fot", 5},        {"f.fnt", 6},
      {"f.fon", 7},    {"f.pfm", 8},  {"f.pfb", 9},  {"f.MMM", 10},  {"f.inf", 11},    {".ttf", 0},         {"a.b.ttf", 0},
      {"font", 12},    {"font.", 12}, {"/d.ps/x", 12}, {"font.ttf ", 12}, {"font.abcdef", 12},
  };
  for (const auto& row : rows) EXPECT_EQ(fontTypeFromExtension(row.path), row.type) << row.path;
  EXPECT_EQ(fontTypeFromExtension(nullptr), 12);
}

TEST(FontData, DecidesTheKindFromExtensionThenFirstBytes) {
  const Bytes trueType = test::SfntBuilder(0x00010000).table("head", 8).build();
  const Bytes otto = test::patchU32(trueType, 0, 0x4F54544F), ttcf = test::patchU32(trueType, 0, 0x74746366);
  const struct { const char* name; Bytes bytes; const char* kind; } rows[] = {
      {"a.ttf", otto, "TrueType"},                {"a.otf", otto, "OpenType - PS"},
      {"a.otf", trueType, "OpenType - TT"},       {"a.OTF", Bytes{0x4F, 0x54}, "OpenType - TT"},
      {"a.ps", trueType, "PostScript"},           {"a.dfont", trueType, "TrueType"},
      {"a.ttc", trueType, "TrueType Collection"}, {"a.mmm", trueType, "PostScript - MM"},
      {"a.pfb", otto, ""},                        {"noext-ttcf", ttcf, "TrueType"},
      {"noext-otto", otto, "OpenType - PS"},      {"noext-truetype", trueType, ""},
      {"noext-short", Bytes{0x4F, 0x54, 0x54}, ""},
      {"noext-pfm", test::pfmFile(200, 200, "Copyright 2020 Sample Foundry"), "PostScript"},
      {"noext-pfm-size-wrong", test::pfmFile(200, 201, "Copyright"), ""},
      {"noext-pfm-copyright-past-60", test::pfmFile(200, 200, std::string(55, ' ') + "Copyright"), ""},
      {"noext-pfm-116-bytes", test::pfmFile(116, 116, "Copyright"), ""},
      {"noext-pfm-117-bytes", test::pfmFile(117, 117, "COPYRIGHT"), "PostScript"},
      // A real metrics file stores its size little-endian, so the big-endian test refuses it.
      {"noext-real-pfm", test::asciiBytes(test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfm"))), ""},
  };
  test::ScratchDir dir;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    test::writeFile(dir.file(row.name), std::string(row.bytes.begin(), row.bytes.end()));
    TFontData fd;
    initializeAndConstructFontInfo(fd, nullptr, dir.file(row.name));
    UxString kind;
    getMetaData_FontType(fd, nullptr, 0, &kind);
    EXPECT_EQ(kind, row.kind);
    EXPECT_EQ(fd.fontKind == kFontKindUnknown, *row.kind == 0);
    freeFontInfo(fd);
  }
  TFontData fd;
  const std::string longPath(2000, 'p');
  initializeAndConstructFontInfo(fd, nullptr, longPath);
  EXPECT_EQ(std::string(fd.path), longPath.substr(0, 1023));
  EXPECT_EQ(fd.pathString, longPath);
  freeFontInfo(fd);
}

struct Collected {
  long status = 0;
  UxString printer, kind, platform, foundry, family, version, postScript, styled, full, windowsFull;
  uint32_t kerning = 0;
};

Collected collect(const std::string& path, const FileForks* forks = nullptr) {
  Collected c;
  c.status = CollectMetaData(nullptr, path, nullptr, 0, &c.printer, &c.kind, &c.platform, &c.foundry, &c.family,
                             &c.version, &c.postScript, &c.styled, &c.full, &c.windowsFull, &c.kerning, forks);
  return c;
}

// Kinds and names from fontTools (sfntVersion, DSIG/GPOS/kern present, name ID 6).
TEST(FontData, CollectsMetadataOfRealFonts) {
  const struct { std::string path; const char* kind; const char* postScript; } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"), "TrueType", "DejaVuSans"},
      {test::fontPath("sfnt/DejaVuSans-DSIG.ttf"), "OpenType - TT", "DejaVuSans"},
      {test::fontPath("sfnt/DejaVuSans-GPOS.ttf"), "OpenType - TT", "DejaVuSans"},
      {test::fontPath("sfnt/NimbusSans-Regular.otf"), "OpenType - PS", "NimbusSans-Regular"},
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "OpenType - TT", "DejaVuSans"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    if (test::readFile(row.path).empty()) continue;  // a Debian font that is not installed
    Collected c = collect(row.path);
    EXPECT_EQ(c.status, 0);
    EXPECT_EQ(c.kind, row.kind);
    EXPECT_EQ(c.platform, "crossplatform");
    EXPECT_EQ(c.postScript, row.postScript);
  }
  // The path only names the font; the bytes come from the forks the caller already mapped.
  std::optional<FileForks> forks = openForks(test::fontPath("sfnt/NimbusSans-Regular.otf"));
  ASSERT_TRUE(forks);
  Collected c = collect("/nonexistent/NimbusSans-Regular.otf", &*forks);
  EXPECT_EQ(c.status, 0);
  EXPECT_EQ(c.windowsFull, "Nimbus Sans");
  EXPECT_EQ(c.kerning, 0xE20DF8BAu);
}

TEST(FontData, CollectStatuses) {
  test::ScratchDir dir;
  const std::string ttc = test::readFile(test::fontPath("sfnt/DejaVuSans-3faces.ttc"));
  const Bytes noNames = test::SfntBuilder().table("head", 8).table("glyf", 8).build();
  test::writeFile(dir.file("faces.ttc"), ttc);
  test::writeFile(dir.file("faces"), ttc);
  test::writeFile(dir.file("font.ps"), test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfa")));
  test::writeFile(dir.file("font.pfb"), test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfb")));
  test::writeFile(dir.file("empty.ttf"), "");
  test::writeFile(dir.file("nonames.ttf"), std::string(noNames.begin(), noNames.end()));
  const struct { const char* what; const char* file; const char* kind; } rows[] = {
      {"missing file", "missing.ttf", "TrueType"},
      {"empty file", "empty.ttf", "TrueType"},
      {"sfnt without names", "nonames.ttf", "TrueType"},
      {"collection by extension: no data is loaded", "faces.ttc", "TrueType Collection"},
      {"collection without extension reads as TrueType", "faces", "TrueType"},
      {"PostScript without a printer file falls back to sfnt reading", "font.ps", "PostScript"},
      {"pfb is of unknown kind", "font.pfb", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Collected c = collect(dir.file(row.file));
    EXPECT_EQ(c.status, 3);
    EXPECT_EQ(c.kind, row.kind);
    EXPECT_EQ(c.platform, "mac");
    EXPECT_EQ(c.postScript, "");
  }
  EXPECT_EQ(CollectMetaData(nullptr, test::fontPath("sfnt/DejaVuSans-kern.ttf"), nullptr, 0, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
}

}  // namespace
}  // namespace typeprint
