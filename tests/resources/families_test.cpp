// Families and styles: the faces and outline resources of the fixture families, and the queries
// of one family over whole, short and cut synthetic families.
#include <gtest/gtest.h>

#include <set>

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

TEST(Families, EveryFixtureFaceIsEnumerated) {
  const std::vector<test::ExpectedFace> expected = test::loadExpectedFaces();
  ASSERT_EQ(expected.size(), 20u);
  std::set<std::string> files;
  for (const auto& face : expected) files.insert(face.path);
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    auto rf = test::openResourceFile(test::macFixture(path));
    ASSERT_TRUE(rf);
    std::vector<std::string> found, wanted;
    for (int i = 1; i <= rf->count(kTypeFOND); ++i) {
      const ByteSpan fond = rf->at(kTypeFOND, i)->data();
      const int16_t id = rf->at(kTypeFOND, i)->id;
      const int count = getCountOfUniqueStyles(fond);
      for (int s = 0; s < count; ++s) {
        short style = getStyleFromStyleIndex(fond, s);
        found.push_back(std::to_string(id) + " " + std::to_string(style) + " " + getPostScriptNameForFOND(fond, style));
      }
      EXPECT_EQ(getStyleFromStyleIndex(fond, count), -1);
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
      {"a-dfont/NimbusSans-CFF.dfont", 1, 7261, false, true},
      {"b-suitcase-truetype/appledouble/DejaVuSans", 1, 13491, true, false},
      {"c-type1-family/macbinary/NimbusSans", 2, 7262, false, false},  // bitmaps only
      {"c-type1-family/appledouble/NimbusSans", 5, -1, false, false},  // no such style
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    auto rf = test::openResourceFile(test::macFixture(row.path));
    Resource fond = rf->at(kTypeFOND, 1);
    EXPECT_EQ(getFirstResourceIDForStyle(fond->data(), row.style), row.firstID);
    EXPECT_EQ(has_ttc_true_Flag(*rf, fond, row.style), row.trueType);
    EXPECT_EQ(has_OTTO_Flag_inResource(*rf, fond, row.style), row.otto);
  }
  // Style 0 of the suitcase: sfnt 13490, NFNT 13490 (10 pt) and NFNT 13491 (12 pt).
  auto rf = test::openResourceFile(test::macFixture("b-suitcase-truetype/macbinary/DejaVuSans.bin"));
  EXPECT_EQ(getSortedResIDsForStyle(rf->at(kTypeFOND, 1)->data(), 0), (std::vector<int16_t>{13490, 13491}));
  EXPECT_EQ(getSortedStyles(*rf), (std::vector<int16_t>{0, 1}));
}

TEST(Families, QueriesOfWholeShortAndCutFamilies) {
  // (12 pt, bold), (0, bold), (10, plain), and an entry whose ID reads as 65535.
  const Bytes whole = FondBuilder().entry(12, 1, 300).entry(0, 1, 200).entry(10, 0, 100).entry(9, 4, -1).build();
  const struct { const char* what; Bytes bytes; std::vector<int16_t> styles; int firstBold, idOf3; bool printerForBold; } rows[] = {
      {"whole", whole, {0, 1, 4}, 300 /* table order */, 65535, false},
      {"claims 10 entries, holds 2", test::truncated(test::patchU16(whole, 52, 9), 54 + 12), {1}, 300, -1, false},
      {"53 bytes", test::truncated(whole, 53), {}, -1, -1, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const ByteSpan fond(row.bytes);
    EXPECT_EQ(getSortedStylesForFOND(fond), row.styles);
    EXPECT_EQ(getCountOfUniqueStyles(fond), int(row.styles.size()));
    EXPECT_EQ(getFirstResourceIDForStyle(fond, 1), row.firstBold);
    EXPECT_EQ(getResIDForFOND(fond, 3), row.idOf3);
    EXPECT_EQ(shouldHavePrinterFile(fond, 1), row.printerForBold);
    EXPECT_EQ(styleExists(1, fond), !row.styles.empty());
  }
}

// Family names: Mac Roman unless the family is double-byte and its outline is a CID font; the
// "A-CID"/"CID-B" names also keep a "true" outline from counting as TrueType.
TEST(Families, NamesDecodeByScriptAndCIDNamesAreNotTrueType) {
  const Bytes doubleByte = FondBuilder().intl1(1).entry(0, 0, 500).build();
  const Bytes roman = FondBuilder().entry(0, 0, 500).build();
  const Bytes ryumin = {0x83, 0x8A, 0x83, 0x85, 0x83, 0x45, 0x83, 0x7E, 0x83, 0x93};  // Shift-JIS
  const struct { const char* what; Bytes fond; std::string name; Bytes outline; const char* decoded; bool trueType; } rows[] = {
      {"double-byte, typ1 outline", doubleByte, std::string(ryumin.begin(), ryumin.end()), {'t', 'y', 'p', '1', 0},
       "\u30EA\u30E5\u30A6\u30DF\u30F3", false},
      {"single-byte", roman, "Caf\x8E \xA5", {'t', 'r', 'u', 'e', 0}, "Caf\u00E9 \u2022", true},
      {"CID name on a true outline", roman, "A-CID Gothic", {'t', 'r', 'u', 'e', 0}, "A-CID Gothic", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(
        dir, "family", test::ResourceForkBuilder().add("FOND", 128, row.fond, row.name).add("sfnt", 500, row.outline).build());
    Resource fond = rf->at(kTypeFOND, 1);
    EXPECT_EQ(std::string(getResourceNameFromFOND(*rf, fond)), row.decoded);
    EXPECT_EQ(has_ttc_true_Flag(*rf, fond, 0), row.trueType);
  }
}

// Over all families, the k-th family (by ID) is read only when 60 + 6k bytes fit in it: a short
// second family is passed over even though its own entries fit.
TEST(Families, SortedStylesKeepTheFamilyIndexedBound) {
  test::ScratchDir dir;
  auto rf = test::writeAndOpen(dir, "suitcase",
                               test::ResourceForkBuilder()
                                   .add("FOND", 1, FondBuilder().entry(0, 2, 10).build())
                                   .add("FOND", 2, FondBuilder().entry(0, 1, 20).build())
                                   .add("FOND", 3, FondBuilder().entry(0, 4, 30).entry(0, 8, 31).entry(0, 0, 32).build())
                                   .build());
  EXPECT_EQ(getSortedStyles(*rf), (std::vector<int16_t>{0, 2, 4, 8}));
}

}  // namespace
}  // namespace typeprint
