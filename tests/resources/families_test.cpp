// Families and styles: the faces of every fixture family, the per-family queries over synthetic
// families with missing entries, the styles over all families, the family name's encoding and
// the outline-kind predicates.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/families.h"
#include "resources/printer_files.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::FondBuilder;
using test::ResourceForkBuilder;

struct HandleDisposer {
  void operator()(char** h) const { DisposeHandle(h); }
};
using OwnedHandle = std::unique_ptr<char*, HandleDisposer>;
OwnedHandle handleOf(const Bytes& bytes) { return OwnedHandle(NewHandleFromBytes(bytes)); }

Bytes withHeader(const char* first4, size_t size) {
  Bytes b(first4, first4 + 4);
  b.resize(size, 0);
  return b;
}

TEST(Families, EveryFixtureFaceIsEnumerated) {
  // The faces an independent dumper found: (file, family, style, PostScript name).
  const std::vector<test::ExpectedFace> expected = test::loadExpectedFaces();
  ASSERT_EQ(expected.size(), 20u);
  std::set<std::string> files;
  for (const auto& face : expected) files.insert(face.path);
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    auto rf = test::openResourceFile(test::macFixture(path));
    ASSERT_TRUE(rf);
    std::vector<std::string> found, wanted;
    for (int i = 1; i <= countResType(rf.get(), kTypeFOND); ++i) {
      Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, i);
      int16_t id = 0;
      ASSERT_TRUE(GetResInfo(fond, &id, nullptr, nullptr));
      for (int s = 0; s < getCountOfUniqueStyles(rf.get(), fond); ++s) {
        short style = getStyleFromStyleIndex(rf.get(), fond, s);
        found.push_back(std::to_string(id) + " " + std::to_string(style) + " " +
                        getPostScriptNameForFOND(fond, style));
      }
      EXPECT_EQ(getStyleFromStyleIndex(rf.get(), fond, getCountOfUniqueStyles(rf.get(), fond)), -1);
    }
    for (const auto& face : expected)
      if (face.path == path)
        wanted.push_back(std::to_string(face.fondID) + " " + std::to_string(face.style) + " " + face.postScriptName);
    EXPECT_EQ(found, wanted);
  }
}

TEST(Families, OutlineResourcesOfFixtureFaces) {
  // IDs and first bytes from the fixture README.
  const struct { const char* path; short style; int16_t firstID; bool trueType, otto; } rows[] = {
      {"a-dfont/DejaVuSans.dfont", 0, 13490, true, false},
      {"a-dfont/DejaVuSans.dfont", 1, 13491, true, false},
      {"a-dfont/DejaVuSans-ufond.dfont", 1, 2862, true, false},
      {"a-dfont/NimbusSans-CFF.dfont", 0, 7260, false, true},
      {"a-dfont/NimbusSans-CFF.dfont", 1, 7261, false, true},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", 0, 13490, true, false},
      {"b-suitcase-truetype/appledouble/DejaVuSans", 1, 13491, true, false},
      {"c-type1-family/macbinary/NimbusSans", 2, 7262, false, false},  // bitmaps only
      {"c-type1-family/appledouble/NimbusSans", 5, -1, false, false},  // no such style
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.path) + " style " + std::to_string(row.style));
    auto rf = test::openResourceFile(test::macFixture(row.path));
    ASSERT_TRUE(rf);
    Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
    EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(rf.get(), fond, row.style), row.firstID);
    EXPECT_EQ(has_ttc_true_Flag(rf.get(), fond, row.style), row.trueType);
    EXPECT_EQ(has_OTTO_Flag_inResource(rf.get(), fond, row.style), row.otto);
  }
}

TEST(Families, SortedIDsOfAStyleSpanSizesAndTypes) {
  // Style 0 of the suitcase: sfnt 13490, NFNT 13490 (10 pt) and NFNT 13491 (12 pt).
  auto rf = test::openResourceFile(test::macFixture("b-suitcase-truetype/macbinary/DejaVuSans.bin"));
  ASSERT_TRUE(rf);
  Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
  EXPECT_EQ(getSortedResIDsForStyle(rf.get(), fond, 0), (std::vector<int16_t>{13490, 13491}));
  EXPECT_EQ(getSortedResIDsForStyle(rf.get(), fond, 1), (std::vector<int16_t>{13491, 13492, 13493}));
  EXPECT_EQ(getSortedResIDsForStyle(rf.get(), fond, -1), (std::vector<int16_t>{13490, 13491, 13492, 13493}));
  EXPECT_TRUE(getSortedResIDsForStyle(nullptr, fond, 0).empty());
  EXPECT_TRUE(getSortedResIDsForStyle(rf.get(), nullptr, 0).empty());
  EXPECT_EQ(getSortedStyles(test::object(rf)), (std::vector<int16_t>{0, 1}));
}

TEST(Families, QueriesOfAFamilyWithAnOutlineForOneStyle) {
  // (12 pt, bold), (0, bold), (10, plain), and an entry whose ID reads as 65535.
  auto fond = handleOf(FondBuilder().entry(12, 1, 300).entry(0, 1, 200).entry(10, 0, 100).entry(9, 4, -1).build());
  auto anyFile = test::openResourceFile(test::macFixture("a-dfont/DejaVuSans.dfont"));
  void* rf = anyFile.get();
  EXPECT_EQ(getSortedStylesForFOND(fond.get()), (std::vector<int16_t>{0, 1, 4}));
  EXPECT_EQ(getCountOfUniqueStyles(rf, fond.get()), 3);
  EXPECT_FALSE(shouldHavePrinterFile(fond.get(), 1));
  EXPECT_TRUE(shouldHavePrinterFile(fond.get(), 0));
  EXPECT_TRUE(shouldHavePrinterFile(fond.get(), 2));
  EXPECT_EQ(getSortedNFNTsForFOND(fond.get(), 1), (std::vector<int16_t>{200, 300}));
  EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(rf, fond.get(), 1), 300);  // table order
  EXPECT_TRUE(styleExists(4, fond.get()));
  EXPECT_FALSE(styleExists(2, fond.get()));
  const struct { int index; int id; } ids[] = {{0, 300}, {2, 100}, {3, 65535}, {4, -1}, {-1, -1}};
  for (const auto& row : ids) {
    SCOPED_TRACE(row.index);
    EXPECT_EQ(getResIDForFOND(fond.get(), row.index), row.id);
  }
}

TEST(Families, MissingEntriesAreIgnoredByEveryQuery) {
  const Bytes whole = FondBuilder().entry(0, 0, 10).entry(12, 1, 11).entry(0, 2, 12).build();
  const Bytes cut = test::truncated(test::patchU16(whole, 52, 9), 54 + 12);  // claims 10, holds 2
  auto fond = handleOf(cut);
  auto anyFile = test::openResourceFile(test::macFixture("a-dfont/DejaVuSans.dfont"));
  void* rf = anyFile.get();
  EXPECT_EQ(getSortedStylesForFOND(fond.get()), (std::vector<int16_t>{0, 1}));
  EXPECT_FALSE(styleExists(2, fond.get()));
  EXPECT_TRUE(shouldHavePrinterFile(fond.get(), 2));
  EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(rf, fond.get(), 2), -1);
  EXPECT_EQ(getResIDForFOND(fond.get(), 2), -1);
  EXPECT_EQ(getResIDForFOND(fond.get(), 1), 11);
}

TEST(Families, EmptyAnswersForNullAndShortFamilies) {
  auto short53 = handleOf(test::truncated(FondBuilder().entry(0, 0, 10).build(), 53));
  auto short51 = handleOf(test::truncated(FondBuilder().entry(0, 0, 10).build(), 51));
  auto anyFile = test::openResourceFile(test::macFixture("a-dfont/DejaVuSans.dfont"));
  void* rf = anyFile.get();
  for (Handle fond : {Handle(nullptr), short53.get(), short51.get()}) {
    SCOPED_TRACE(GetHandleSize(fond));
    EXPECT_EQ(getCountOfUniqueStyles(rf, fond), 0);
    EXPECT_EQ(getStyleFromStyleIndex(rf, fond, 0), -1);
    EXPECT_EQ(getFirstResourceIDFromHandleAndStyle(rf, fond, 0), -1);
    EXPECT_TRUE(shouldHavePrinterFile(fond, 0));
    EXPECT_EQ(getResIDForFOND(fond, 0), -1);
    EXPECT_EQ(getPostScriptNameForFOND(fond, 0), "");
  }
  EXPECT_EQ(getStyleOffsetFromFOND(short51.get()), 0u);
  auto full = handleOf(FondBuilder().entry(0, 0, 10).build());
  EXPECT_EQ(getCountOfUniqueStyles(nullptr, full.get()), 0);
  EXPECT_EQ(getStyleFromStyleIndex(nullptr, full.get(), 0), -1);
}

TEST(Families, StylesOverAllFamiliesKeepTheFamilyIndexedBound) {
  // The k-th family (ascending IDs, from 0) is read only when 60 + 6k bytes fit in it.
  const Bytes oneEntry = FondBuilder().entry(0, 2, 1).build();                 // 60 bytes
  const Bytes twoEntries = FondBuilder().entry(0, 4, 2).entry(0, 8, 3).build();  // 66 bytes
  const Bytes noEntries = test::patchU16(FondBuilder().entry(0, 16, 4).build(), 52, 0xFFFF);
  const struct { const char* what; Bytes fork; std::vector<int16_t> styles; } rows[] = {
      {"second family of 60 bytes is skipped",
       ResourceForkBuilder().add("FOND", 200, oneEntry).add("FOND", 100, oneEntry).build(), {2}},
      {"second family of 66 bytes is read",
       ResourceForkBuilder().add("FOND", 100, oneEntry).add("FOND", 200, twoEntries).build(), {2, 4, 8}},
      {"ascending IDs decide the order",
       ResourceForkBuilder().add("FOND", 200, oneEntry).add("FOND", 100, twoEntries).build(), {4, 8}},
      {"a family without entries",
       ResourceForkBuilder().add("FOND", 100, noEntries).add("FOND", 200, twoEntries).build(), {4, 8}},
      {"no families", ResourceForkBuilder().add("NFNT", 100, Bytes(30)).build(), {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Fonts.dfont", row.fork);
    ASSERT_TRUE(rf);
    EXPECT_EQ(getSortedStyles(test::object(rf)), row.styles);
  }
}

TEST(Families, FamilyNamesDecodeAsMacRomanOrMacJapanese) {
  // "テスト" in Shift-JIS; read as Mac Roman the same bytes are "ÉeÉXÉg".
  const std::string sjis = "\x83\x65\x83\x58\x83\x67";
  const std::string japanese = "\xE3\x83\x86\xE3\x82\xB9\xE3\x83\x88";
  const std::string roman = "\xC3\x89" "e" "\xC3\x89" "X" "\xC3\x89" "g";
  const auto outline = [](int16_t family, const Bytes& sfnt, bool styleTable = false) {
    FondBuilder fond;
    fond.familyID(family).entry(0, 0, 500);
    if (styleTable) fond.postScriptNames("Name", {});
    ResourceForkBuilder fork;
    fork.add("FOND", family, fond.build(), "\x83\x65\x83\x58\x83\x67");
    if (!sfnt.empty()) fork.add("sfnt", 500, sfnt);
    return fork.build();
  };
  const auto bitmaps = [](bool withFONT) {
    ResourceForkBuilder fork;
    const Bytes fond = FondBuilder().familyID(16400).postScriptNames("Name", {}).entry(12, 0, 7).entry(10, 0, 8).build();
    fork.add("FOND", 16400, fond, "\x83\x65\x83\x58\x83\x67");
    if (withFONT) fork.add("FONT", 8, Bytes(26));
    return fork.build();
  };
  const struct { const char* what; Bytes fork; std::string name; } rows[] = {
      {"roman family", outline(128, withHeader("typ1", 40)), roman},
      {"Type 1 outline", outline(16384, withHeader("typ1", 40)), japanese},
      {"TrueType outline", outline(16384, withHeader("\0\1\0\0", 40)), roman},
      {"no outline resource", outline(16384, {}), roman},
      {"4-byte outline, style table", outline(16384, withHeader("true", 4), true), japanese},
      {"4-byte outline, no style table", outline(16384, withHeader("true", 4), false), roman},
      {"bitmaps with a FONT", bitmaps(true), roman},
      {"bitmaps without FONT, style table", bitmaps(false), japanese},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Family.dfont", row.fork);
    ASSERT_TRUE(rf);
    Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
    EXPECT_EQ(std::string(getResourceNameFromFOND(test::object(rf), fond)), row.name);
  }
  auto fixture = test::openResourceFile(test::macFixture("a-dfont/DejaVuSans.dfont"));
  EXPECT_EQ(getResourceNameFromFOND(test::object(fixture), getHandleOfTypeAndIndex(fixture.get(), kTypeFOND, 1)),
            "DejaVu Sans");
  EXPECT_EQ(getResourceNameFromFOND(test::object(fixture), nullptr), "");
}

TEST(Families, TrueTagCountsOutsideCIDFamiliesOnly) {
  const struct { const char* what; std::string familyName; Bytes sfnt; bool trueType, otto; } rows[] = {
      {"true, plain name", "Sample", withHeader("true", 12), true, false},
      {"true, A-CID name", "A-CIDSample", withHeader("true", 12), false, false},
      {"true, CID-B name", "SampleCID-B", withHeader("true", 12), false, false},
      {"CID-B not at the end", "SampleCID-Bold", withHeader("true", 12), true, false},
      {"TrueType version, CID name", "A-CIDSample", withHeader("\0\1\0\0", 12), true, false},
      {"OTTO", "Sample", withHeader("OTTO", 4), false, true},
      {"3 bytes", "Sample", Bytes{'O', 'T', 'T'}, false, false},
      {"typ1", "Sample", withHeader("typ1", 12), false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Family.dfont",
                                 ResourceForkBuilder()
                                     .add("FOND", 128, FondBuilder().entry(0, 0, 900).build(), row.familyName)
                                     .add("sfnt", 900, row.sfnt)
                                     .build());
    ASSERT_TRUE(rf);
    Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
    EXPECT_EQ(has_ttc_true_Flag(rf.get(), fond, 0), row.trueType);
    EXPECT_EQ(has_OTTO_Flag_inResource(rf.get(), fond, 0), row.otto);
  }
}

}  // namespace
}  // namespace typeprint
