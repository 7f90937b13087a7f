#include "analysis/font_data.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"
#include "builders/type1_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;

TEST(FontData, ExtensionTypes) {
  const struct {
    const char* path;
    short type;
  } rows[] = {
      {"font.ttf", 0},     {"Font.TTF", 0},      {"f.otf", 1},          {"f.ps", 2},         {"f.dfont", 3},
      {"f.ttc", 4},        {"f.fot", 5},         {"f.fnt", 6},          {"f.fon", 7},        {"f.pfm", 8},
      {"f.pfb", 9},        {"f.MMM", 10},        {"f.inf", 11},         {"font.abcdef", 12}, {"font.abcde", 12},
      {"font", 12},        {"", 12},             {"/dir.abc/font", 12}, {"/dir.ps/x", 12},   {".ttf", 0},
      {"a.b.ttf", 0},      {"font.", 12},        {"font.ttf ", 12},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(fontTypeFromExtension(row.path), row.type);
  }
  EXPECT_EQ(fontTypeFromExtension(nullptr), 12);
}

struct Kind {
  uint16_t fontKind;
  UxString text;
};

Kind kindOf(const std::string& path) {
  TFontData fd;
  initializeAndConstructFontInfo(fd, nullptr, path);
  UxString text;
  getMetaData_FontType(fd, nullptr, 0, &text);
  Kind k{fd.fontKind, text};
  freeFontInfo(fd);
  return k;
}

std::string asString(const Bytes& b) { return std::string(b.begin(), b.end()); }

TEST(FontData, DecidesTheKindFromExtensionThenFirstBytes) {
  const Bytes trueType = test::SfntBuilder(0x00010000).table("head", 8).build();
  const Bytes otto = test::patchU32(trueType, 0, 0x4F54544F);
  const Bytes ttcf = test::patchU32(trueType, 0, 0x74746366);
  const Bytes pfm = test::pfmFile(200, 200, "Copyright 2020 Sample Foundry");
  const struct {
    const char* name;
    Bytes bytes;
    uint16_t kind;
    const char* text;
  } rows[] = {
      {"a.ttf", otto, kFontKindTrueType, "TrueType"},
      {"a.otf", otto, kFontKindOpenTypePS, "OpenType - PS"},
      {"a.otf", trueType, kFontKindOpenTypeTT, "OpenType - TT"},
      {"a.OTF", Bytes{0x4F, 0x54}, kFontKindOpenTypeTT, "OpenType - TT"},
      {"a.ps", trueType, kFontKindPostScript, "PostScript"},
      {"a.pfm", trueType, kFontKindPostScript, "PostScript"},
      {"a.dfont", trueType, kFontKindTrueType, "TrueType"},
      {"a.ttc", trueType, kFontKindCollection, "TrueType Collection"},
      {"a.mmm", trueType, kFontKindPostScriptMM, "PostScript - MM"},
      {"a.pfb", otto, kFontKindUnknown, ""},
      {"a.inf", otto, kFontKindUnknown, ""},
      {"noext-ttcf", ttcf, kFontKindTrueType, "TrueType"},
      {"noext-otto", otto, kFontKindOpenTypePS, "OpenType - PS"},
      {"noext-truetype", trueType, kFontKindUnknown, ""},
      {"noext-short", Bytes{0x4F, 0x54, 0x54}, kFontKindUnknown, ""},
      {"noext-pfm", pfm, kFontKindPostScript, "PostScript"},
      {"noext-pfm-size-wrong", test::pfmFile(200, 201, "Copyright"), kFontKindUnknown, ""},
      {"noext-pfm-no-copyright", test::pfmFile(200, 200, "(c) 2020 Sample"), kFontKindUnknown, ""},
      {"noext-pfm-copyright-past-60", test::pfmFile(200, 200, std::string(55, ' ') + "Copyright"), kFontKindUnknown, ""},
      {"noext-pfm-116-bytes", test::pfmFile(116, 116, "Copyright"), kFontKindUnknown, ""},
      {"noext-pfm-117-bytes", test::pfmFile(117, 117, "COPYRIGHT"), kFontKindPostScript, "PostScript"},
  };
  test::ScratchDir dir;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    test::writeFile(dir.file(row.name), asString(row.bytes));
    Kind k = kindOf(dir.file(row.name));
    EXPECT_EQ(k.fontKind, row.kind);
    EXPECT_EQ(k.text, row.text);
  }
  // A real metrics file stores its size little-endian, so the big-endian test refuses it.
  test::writeFile(dir.file("realpfm"), test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfm")));
  EXPECT_EQ(kindOf(dir.file("realpfm")).fontKind, kFontKindUnknown);
  EXPECT_EQ(kindOf(dir.file("missing")).fontKind, kFontKindUnknown);
}

TEST(FontData, CutsLongPaths) {
  TFontData fd;
  std::string path(2000, 'p');
  initializeAndConstructFontInfo(fd, nullptr, path);
  EXPECT_EQ(std::string(fd.path), path.substr(0, 1023));
  EXPECT_EQ(fd.pathString, path);
  EXPECT_FALSE(fd.forks);
  freeFontInfo(fd);
}

struct Collected {
  long status = 0;
  UxString printer, kind, platform, foundry, family, version, postScript, styled, full, windowsFull;
  uint32_t kerning = 0x5EED;
};

Collected collect(const std::string& path, const FileForks* forks = nullptr) {
  Collected c;
  c.status = CollectMetaData(nullptr, path, nullptr, 0, &c.printer, &c.kind, &c.platform, &c.foundry, &c.family,
                             &c.version, &c.postScript, &c.styled, &c.full, &c.windowsFull, &c.kerning, forks);
  return c;
}

// Names and table facts from fontTools; see tests/fonts/sfnt/README.md.
TEST(FontData, CollectsMetadataOfRealFonts) {
  const struct {
    std::string path;
    const char* kind;
    const char* postScript;
    const char* styled;
    uint32_t kerning;
  } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"), "TrueType", "DejaVuSans", "DejaVu Sans Book", 0xFA0DFAA2},
      {test::fontPath("sfnt/DejaVuSans-DSIG.ttf"), "OpenType - TT", "DejaVuSans", "DejaVu Sans Book", 0xFA0DFAA2},
      {test::fontPath("sfnt/DejaVuSans-GPOS.ttf"), "OpenType - TT", "DejaVuSans", "DejaVu Sans Book", 0x1F2A260E},
      {test::fontPath("sfnt/NimbusSans-Regular.otf"), "OpenType - PS", "NimbusSans-Regular", "Nimbus Sans Regular",
       0xE20DF8BA},
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "OpenType - TT", "DejaVuSans", "DejaVu Sans Book",
       0x0C99083B},
      {"/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf", "OpenType - PS", "NimbusSans-Regular",
       "Nimbus Sans Regular", 0x6830EF48},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    if (test::readFile(row.path).empty()) {
      std::cerr << "skipped, not installed: " << row.path << "\n";
      continue;
    }
    Collected c = collect(row.path);
    EXPECT_EQ(c.status, 0);
    EXPECT_EQ(c.kind, row.kind);
    EXPECT_EQ(c.platform, "crossplatform");
    EXPECT_EQ(c.postScript, row.postScript);
    EXPECT_EQ(c.styled, row.styled);
    EXPECT_EQ(c.kerning, row.kerning);
    EXPECT_EQ(c.printer, "");
  }
}

TEST(FontData, CollectStatuses) {
  test::ScratchDir dir;
  const std::string ttc = test::readFile(test::fontPath("sfnt/DejaVuSans-3faces.ttc"));
  test::writeFile(dir.file("faces.ttc"), ttc);
  test::writeFile(dir.file("faces"), ttc);
  test::writeFile(dir.file("font.ps"), test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfa")));
  test::writeFile(dir.file("font.pfb"), test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfb")));
  test::writeFile(dir.file("empty.ttf"), "");
  test::writeFile(dir.file("nonames.ttf"), asString(test::SfntBuilder().table("head", 8).table("glyf", 8).build()));
  const struct {
    const char* what;
    std::string path;
    long status;
    const char* kind;
    const char* platform;
  } rows[] = {
      {"missing file", dir.file("missing.ttf"), 3, "TrueType", "mac"},
      {"empty file", dir.file("empty.ttf"), 3, "TrueType", "mac"},
      {"sfnt without names", dir.file("nonames.ttf"), 3, "TrueType", "mac"},
      {"collection by extension: no data is loaded", dir.file("faces.ttc"), 3, "TrueType Collection", "mac"},
      {"collection without extension reads as TrueType", dir.file("faces"), 3, "TrueType", "mac"},
      {"PostScript without a printer file falls back to sfnt reading", dir.file("font.ps"), 3, "PostScript", "mac"},
      {"pfb is of unknown kind", dir.file("font.pfb"), 3, "", "mac"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Collected c = collect(row.path);
    EXPECT_EQ(c.status, row.status);
    EXPECT_EQ(c.kind, row.kind);
    EXPECT_EQ(c.platform, row.platform);
    EXPECT_EQ(c.postScript, "");
  }
  // Every output may be null.
  EXPECT_EQ(CollectMetaData(nullptr, test::fontPath("sfnt/DejaVuSans-kern.ttf"), nullptr, 0, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
}

TEST(FontData, CollectReadsForksTheCallerMapped) {
  std::optional<FileForks> forks = openForks(test::fontPath("sfnt/NimbusSans-Regular.otf"));
  ASSERT_TRUE(forks);
  // The path only names the font; the bytes come from the forks already mapped.
  Collected c = collect("/nonexistent/NimbusSans-Regular.otf", &*forks);
  EXPECT_EQ(c.status, 0);
  EXPECT_EQ(c.kind, "OpenType - PS");
  EXPECT_EQ(c.postScript, "NimbusSans-Regular");
  EXPECT_EQ(c.foundry, "Copyright (URW)++,Copyright 2014 by (URW)++ Design & Development");
  EXPECT_EQ(c.version, "Version 1.00");
  EXPECT_EQ(c.windowsFull, "Nimbus Sans");
}

}  // namespace
}  // namespace typeprint
