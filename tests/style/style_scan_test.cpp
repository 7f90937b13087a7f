// The style scan over a small hand-made keyword table: word splitting, the special words and
// suffixes, the order-dependent clean-up, and the built-in matcher's exact matches and thresholds.
#include "style/style_scan.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace typeprint {
namespace {

constexpr size_t npos = std::string::npos;

SStyleComponent word(int32_t constant, std::vector<std::string> spellings, bool modifier = false) {
  return SStyleComponent{constant, modifier, false, spellings.empty() ? "" : spellings[0], spellings};
}

// The words behind the constants the scan treats specially, plus a few ordinary ones.
SKeywordTable scanTable() {
  SKeywordTable t;
  t.components = {
      word(0, {"Italic", "It"}), word(1, {"Bold", "Bd"}),  word(4, {"Demi"}),   word(5, {"Extra"}, true),
      word(6, {"Black"}),        word(9, {"Light", "Lt"}), word(10, {"Cond"}),  word(12, {"Roman"}),
      word(13, {"Regular"}),     word(15, {"Semi", "Semibold"}), word(16, {"Ultra"}, true),
      word(18, {"Small"}, true), word(19, {"Caps"}),     word(20, {"OsF"}),
      word(35, {"Thin"}),        word(77, {"Bold", "Heavy"}),
  };
  for (const SStyleComponent& c : t.components) t.componentMap[c.styleConstant] = c;
  return t;
}

TEST(StyleWords, SplitsCamelCaseAndMultipleMasterSuffixes) {
  const struct { const char* text; size_t start; bool multipleMaster; std::vector<std::string> words; } rows[] = {
      {"TimesNewRoman-BoldItalic", 1, false, {"New", "Roman", "Bold", "Italic"}},
      {"MyriadMM_SB", 1, false, {"M", "M", "S", "B"}},
      {"Ab_x", 0, true, {"Ab"}},  // lower case after the underscore is never reached from a word start
      {"AbMM_215_LT_SB", 1, true, {"M", "M", "LT", "SB"}},
      {"AbMM_xyZW", 5, true, {"x", "yZW"}},  // after the underscore any letter starts a word, capitals continue it
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    std::vector<std::string> words;
    size_t pos = row.start;
    for (int budget = 100; pos != npos && budget > 0; --budget) {
      std::string w = local_styleSubstring(row.text, pos, row.multipleMaster);
      if (!w.empty()) words.push_back(w);
    }
    EXPECT_EQ(pos, npos) << "the split did not end";
    EXPECT_EQ(words, row.words);
  }
}

TEST(StyleScan, FindsComponentsAndAppliesTheSpecialRules) {
  SKeywordTable table = scanTable();
  UxFontStyleScan scan(table);
  SStyleComponent found;
  EXPECT_FALSE(scan.MatchStyleComponent("bold", found)) << "spellings are compared exactly";
  ASSERT_TRUE(scan.MatchStyleComponent("Bold", found));
  EXPECT_EQ(found.styleConstant, 1) << "the first entry with the spelling wins";
  const struct { const char *what, *first, *second; std::vector<int32_t> found; } rows[] = {
      {"family word never read", "Bold", "", {}},
      {"second name wins with more", "Foo-Bold", "Foo Bold Italic", {1, 0}},
      {"regular goes with italic", "Foo-RegularItalic", "", {0}},
      {"erasures shift: the second takes bold", "Foo-RegularRomanBold", "", {12}},
      {"semi before bold absorbs it", "Foo-SemiBoldItalic", "", {15, 0}},
      {"semi alone is dropped", "Foo-SemiCond", "", {10}},
      {"a remembered index past the end takes the last", "Foo-RegularDemiBold", "", {4}},
      {"ultra last means ultra bold", "Foo-Ultra", "", {16, 1}},
      {"Xlight in the first name", "Foo-Xlight", "", {5, 9}},
      {"Helvetica Neue's thin is light", "HelveticaNeue-ThinItalic", "", {9, 0}},
      {"small caps", "Foo-BoldSC", "", {1, 18, 19}},
      {"old-style figures clear the second name", "Foo-BoldOsF", "Foo Bold Italic Light Cond", {1, 20}},
      {"multiple-master suffixes", "FooMM_XC_SB", "", {5, 10, 15}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::vector<int32_t> constants;
    for (const SStyleComponent& c : scan.ScanFontForStyleComponents(row.first, row.second)) constants.push_back(c.styleConstant);
    EXPECT_EQ(constants, row.found);
  }
}

using Names = std::vector<std::string>;
constexpr bool M = true;
constexpr bool P = false;

// The built-in styles `styles` finds for a hand-made component list of (constant, modifier).
Names match(SKeywordTable table, std::vector<SBuiltinStyle> styles, const std::vector<std::pair<int32_t, bool>>& font) {
  table.builtinStyles = std::move(styles);
  std::vector<SStyleComponent> list;
  for (auto [constant, modifier] : font) list.push_back(word(constant, {}, modifier));
  std::vector<SBuiltinStyle> out = {SBuiltinStyle{"stale", {}, false}};
  size_t n = UxFontStyleScan(table).FindBuiltinMatchesForStyleComponents(list, out);
  EXPECT_EQ(n, out.size());
  Names names;
  for (const SBuiltinStyle& s : out) names.push_back(s.display);
  return names;
}

TEST(BuiltinMatch, ExactMatchesAndFewestComponents) {
  const std::vector<SBuiltinStyle> styles = {
      {"Extra Light", {5, 9}, true}, {"Extra Bold", {5, 1}, true}, {"Light", {9}, true},     {"Bold", {1}, true},
      {"Bold Again", {1}, true},     {"Italic", {0}, false},       {"Condensed", {10}, false}};
  const struct { const char* what; std::vector<std::pair<int32_t, bool>> font; Names expected; } rows[] = {
      {"exact, the first of equals", {{1, P}}, {"Bold"}},
      {"exact ignores order; a trailing modifier is not tested", {{1, P}, {5, M}}, {"Extra Bold"}},
      {"partial: fewest components win", {{9, P}, {0, P}}, {"Light", "Italic"}},
      {"modifier bound elsewhere drops the style", {{5, M}, {10, P}}, {"Condensed"}},
      {"bold, italic, condensed", {{1, P}, {0, P}, {10, P}}, {"Bold", "Bold Again", "Italic", "Condensed"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(match(scanTable(), styles, row.font), row.expected);
  }
  // Two hits from one component make an exact match.
  EXPECT_EQ(match(scanTable(), {{"Bold Bold", {1, 1}, true}, {"Bold", {1}, true}, {"Italic", {0}, false}},
                  {{1, P}, {0, P}}),
            (Names{"Bold Bold"}));
}

TEST(BuiltinMatch, Thresholds) {
  SKeywordTable table = scanTable();
  const std::vector<SBuiltinStyle> light = {{"Light", {9}, true}, {"Extra Light", {5, 9}, true}, {"Italic", {0}}};
  // Extra Light raises the bar to two hits; Light is complete, so it stays, and with fewer
  // components it passes the second filter too.
  EXPECT_EQ(match(table, light, {{5, M}, {9, P}, {0, P}}), (Names{"Light", "Extra Light", "Italic"}));
  // A compounding component makes Light incomplete, and the threshold drops it.
  table.componentMap[9].compounds = true;
  EXPECT_EQ(match(table, light, {{5, M}, {9, P}, {0, P}}), (Names{"Extra Light", "Italic"}));
  // Extra Cond sets the bar at two but its modifier conflicts and leaves one: nobody reaches the
  // bar, and even the complete Cond is removed in the second pass.
  EXPECT_EQ(match(table, {{"Bold", {1}, true}, {"Cond", {10}, false}, {"Extra Cond", {5, 10}, false}},
                  {{10, P}, {5, M}, {1, P}}),
            (Names{"Bold"}));
}

TEST(UserStyle, FindsTheStyleInEitherNameIgnoringCase) {
  EXPECT_TRUE(UxFontStyleScan::ScanFontForUserStyle("Helvetica-BoldOblique", "", "bold"));
  EXPECT_TRUE(UxFontStyleScan::ScanFontForUserStyle("Helvetica", "Helvetica Oblique", "OBLIQUE"));
  EXPECT_FALSE(UxFontStyleScan::ScanFontForUserStyle("Helvetica-Bold", "Helvetica Bold", "Italic"));
}

}  // namespace
}  // namespace typeprint
