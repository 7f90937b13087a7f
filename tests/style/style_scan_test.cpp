// The style scan over a small hand-made keyword table: word splitting in both modes, the
// special words and suffixes, the order-dependent clean-up, the built-in matcher's exact
// matches, thresholds and filters, and the user style test.
#include "style/style_scan.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace typeprint {
namespace {

constexpr size_t npos = std::string::npos;

SStyleComponent word(int32_t constant, std::vector<std::string> spellings, bool modifier = false) {
  SStyleComponent c;
  c.styleConstant = constant;
  c.isModifier = modifier;
  c.display = spellings.empty() ? std::string() : spellings.front();
  c.matchStrings = std::move(spellings);
  return c;
}

// The words behind the constants the scan treats specially, plus a few ordinary ones.
SKeywordTable scanTable() {
  SKeywordTable t;
  t.components = {
      word(0, {"Italic", "It"}), word(1, {"Bold", "Bd"}),  word(4, {"Demi"}),   word(5, {"Extra"}, true),
      word(6, {"Black"}),        word(9, {"Light", "Lt"}), word(10, {"Cond"}),  word(12, {"Roman"}),
      word(13, {"Regular"}),     word(15, {"Semi", "Semibold"}), word(16, {"Ultra"}, true),
      word(18, {"Small"}, true), word(19, {"Caps"}),     word(20, {"OsF"}),   word(21, {"Cyrillic"}),
      word(35, {"Thin"}),        word(77, {"Bold", "Heavy"}),
  };
  for (const SStyleComponent& c : t.components) t.componentMap[c.styleConstant] = c;
  return t;
}

std::vector<std::string> split(const std::string& text, size_t start, bool multipleMaster) {
  std::vector<std::string> words;
  size_t pos = start;
  int budget = 100;
  while (pos != npos && budget--) {
    std::string w = local_styleSubstring(text, pos, multipleMaster);
    if (!w.empty()) words.push_back(w);
  }
  EXPECT_GT(budget, 0) << "the split did not end";
  return words;
}

std::vector<int32_t> constants(const std::vector<SStyleComponent>& list) {
  std::vector<int32_t> out;
  for (const SStyleComponent& c : list) out.push_back(c.styleConstant);
  return out;
}

TEST(StyleWords, SplitsCamelCaseAndSuffixes) {
  const struct {
    const char* text;
    size_t start;
    bool multipleMaster;
    std::vector<std::string> words;
  } rows[] = {
      {"TimesNewRoman-BoldItalic", 1, false, {"New", "Roman", "Bold", "Italic"}},
      {"Arial", 1, false, {}},
      {"BoldSC", 0, false, {"Bold", "S", "C"}},
      {"ABC", 0, false, {"A", "B", "C"}},
      {"foo-bar baz", 0, false, {}},
      {"Caf\xC3\xA9" "Bold9It", 1, false, {"Bold", "It"}},
      {"", 1, false, {}},
      {"X", 1, false, {}},
      {"MyriadMM_SB", 1, true, {"M", "M", "SB"}},
      {"MyriadMM_SB", 1, false, {"M", "M", "S", "B"}},
      {"AbMM_215_LT_SB", 1, true, {"M", "M", "LT", "SB"}},
      {"Ab_x", 0, true, {"Ab"}},  // lower case after the underscore is never reached from mode 1
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(split(row.text, row.start, row.multipleMaster), row.words);
  }
}

TEST(StyleWords, AdvancesPositionWordByWord) {
  const struct {
    const char* text;
    size_t pos;
    bool multipleMaster;
    std::string word;
    size_t next;
  } rows[] = {
      {"BoldItalic", 0, false, "Bold", 4},
      {"Bold-Italic", 0, false, "Bold", 5},   // the hyphen is consumed, then the capital found
      {"Bold-italic", 0, false, "Bold", npos},
      {"boldItalic", 0, false, "Italic", npos},
      {"AbMM_xyZW", 5, true, "x", 6},       // after the underscore any letter starts a word
      {"AbMM_xyZW", 6, true, "yZW", npos},  // and capitals continue it
      {"AbMM_9", 5, true, "", npos},
      {"Bold", 4, false, "", npos},
      {"Bold", 99, false, "", npos},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.text) + " @" + std::to_string(row.pos));
    size_t pos = row.pos;
    EXPECT_EQ(local_styleSubstring(row.text, pos, row.multipleMaster), row.word);
    EXPECT_EQ(pos, row.next);
  }
}

TEST(StyleScan, MatchesWordsExactlyAndFirstEntryWins) {
  SKeywordTable table = scanTable();
  UxFontStyleScan scan(table);
  SStyleComponent found = word(-1, {"unchanged"});
  EXPECT_FALSE(scan.MatchStyleComponent("bold", found));
  EXPECT_FALSE(scan.MatchStyleComponent("Bol", found));
  EXPECT_EQ(found.styleConstant, -1);
  ASSERT_TRUE(scan.MatchStyleComponent("Bold", found));
  EXPECT_EQ(found.styleConstant, 1);
  ASSERT_TRUE(scan.MatchStyleComponent("Heavy", found));
  EXPECT_EQ(found.styleConstant, 77);
}

TEST(StyleScan, FindsComponentsAndAppliesTheSpecialRules) {
  SKeywordTable table = scanTable();
  UxFontStyleScan scan(table);
  const struct {
    const char* what;
    const char* first;
    const char* second;
    std::vector<int32_t> found;
  } rows[] = {
      {"family word never read", "Bold", "", {}},
      {"plain", "Times-BoldItalic", "", {1, 0}},
      {"second name wins with more", "Foo-Bold", "Foo Bold Italic", {1, 0}},
      {"a tie goes to the first name", "Foo-Bold", "Foo Italic", {1}},
      {"roman alone stays", "Times-Roman", "", {12}},
      {"roman goes with bold", "TimesNewRoman-Bold", "", {1}},
      {"regular goes with italic", "Foo-RegularItalic", "", {0}},
      {"regular stays with light", "Foo-RegularLight", "", {13, 9}},
      {"erasures shift: the second takes bold", "Foo-RegularRomanBold", "", {12}},
      {"semi before bold absorbs it", "Foo-SemiBoldItalic", "", {15, 0}},
      {"semi alone is dropped", "Foo-SemiCond", "", {10}},
      {"semi kept by a Semibold name", "Foo-SemiCond", "Foo Semibold Cond", {15, 10}},
      {"demi absorbs bold", "Foo-DemiBold", "", {4}},
      {"demi stays alone", "Foo-DemiItalic", "", {4, 0}},
      {"a remembered index past the end takes the last", "Foo-RegularDemiBold", "", {4}},
      {"ultra last means ultra bold", "Foo-Ultra", "", {16, 1}},
      {"ultra not last", "Foo-UltraItalic", "", {16, 0}},
      {"Xlight in the first name", "Foo-Xlight", "", {5, 9}},
      {"Xlight in the second name only", "Foo", "Foo Xlight", {}},
      {"thin", "Foo-Thin", "", {35}},
      {"Helvetica Neue's thin is light", "HelveticaNeue-ThinItalic", "", {9, 0}},
      {"small caps", "Foo-BoldSC", "", {1, 18, 19}},
      {"SC at the start does not count", "SCFoo-Bold", "", {1}},
      {"cyrillic", "FooCY-Bold", "", {1, 21}},
      {"old-style figures clear the second name", "Foo-BoldOsF", "Foo Bold Italic Light Cond", {1, 20}},
      {"multiple-master suffixes", "FooMM_XC_SB", "", {5, 10, 15}},
      {"MM names ignore SC", "FooMM-BoldSC", "", {1}},
      {"MM extra black", "FooMM_XB", "", {5, 6}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(constants(scan.ScanFontForStyleComponents(row.first, row.second)), row.found);
  }
}

TEST(StyleScan, BuiltComponentsCarryNoWords) {
  SKeywordTable table = scanTable();
  UxFontStyleScan scan(table);
  std::vector<SStyleComponent> xlight = scan.ScanFontForStyleComponents("Foo-Xlight", "");
  ASSERT_EQ(xlight.size(), 2u);
  EXPECT_TRUE(xlight[0].isModifier);
  EXPECT_FALSE(xlight[1].isModifier);
  for (const SStyleComponent& c : xlight) {
    EXPECT_TRUE(c.display.empty());
    EXPECT_TRUE(c.matchStrings.empty());
  }
  std::vector<SStyleComponent> thin = scan.ScanFontForStyleComponents("HelveticaNeue-Thin", "");
  ASSERT_EQ(thin.size(), 1u);
  EXPECT_EQ(thin[0].display, "Light");

  SKeywordTable empty;
  EXPECT_EQ(constants(UxFontStyleScan(empty).ScanFontForStyleComponents("Foo-Xlight", "Foo Bold")),
            (std::vector<int32_t>{5, 9}));
}

// Built-in matching over a component list made by hand.
class BuiltinMatch : public ::testing::Test {
 protected:
  void SetUp() override { table_ = scanTable(); }
  void styles(std::vector<SBuiltinStyle> s) { table_.builtinStyles = std::move(s); }
  std::vector<std::string> match(const std::vector<std::pair<int32_t, bool>>& font) {
    std::vector<SStyleComponent> list;
    for (auto [constant, modifier] : font) list.push_back(word(constant, {}, modifier));
    std::vector<SBuiltinStyle> out = {SBuiltinStyle{"stale", {}, false}};
    size_t n = UxFontStyleScan(table_).FindBuiltinMatchesForStyleComponents(list, out);
    EXPECT_EQ(n, out.size());
    std::vector<std::string> names;
    for (const SBuiltinStyle& s : out) names.push_back(s.display);
    return names;
  }
  SKeywordTable table_;
};

using Names = std::vector<std::string>;
constexpr bool M = true;
constexpr bool P = false;

TEST_F(BuiltinMatch, ExactMatchesAndFewestComponents) {
  styles({{"Extra Light", {5, 9}, true}, {"Extra Bold", {5, 1}, true}, {"Light", {9}, true},
          {"Bold", {1}, true},           {"Bold Again", {1}, true},     {"Italic", {0}, false},
          {"Condensed", {10}, false}});
  const struct {
    const char* what;
    std::vector<std::pair<int32_t, bool>> font;
    Names expected;
  } rows[] = {
      {"nothing found", {}, {}},
      {"no style hit", {{35, P}}, {}},
      {"exact, the first of equals", {{1, P}}, {"Bold"}},
      {"exact with a modifier", {{5, M}, {1, P}}, {"Extra Bold"}},
      {"exact ignores order; a trailing modifier is not tested", {{1, P}, {5, M}}, {"Extra Bold"}},
      {"partial: weight and slope", {{5, M}, {1, P}, {0, P}}, {"Extra Bold", "Italic"}},
      {"partial: fewest components win", {{9, P}, {0, P}}, {"Light", "Italic"}},
      {"modifier bound elsewhere drops the style", {{5, M}, {10, P}}, {"Condensed"}},
      {"bold, italic, condensed", {{1, P}, {0, P}, {10, P}}, {"Bold", "Bold Again", "Italic", "Condensed"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(match(row.font), row.expected);
  }
}

TEST_F(BuiltinMatch, DuplicateConstantsCountEveryPair) {
  styles({{"Bold Bold", {1, 1}, true}, {"Bold", {1}, true}, {"Italic", {0}, false}});
  EXPECT_EQ(match({{1, P}, {0, P}}), (Names{"Bold Bold"}));  // two hits from one component: exact
  EXPECT_EQ(match({{1, P}, {1, P}, {0, P}}), (Names{"Bold Bold", "Italic"}));
}

TEST_F(BuiltinMatch, CompleteCandidatesSurviveTheThreshold) {
  styles({{"Light", {9}, true}, {"Extra Light", {5, 9}, true}, {"Italic", {0}, false}});
  // Light comes first with one hit; Extra Light raises the bar to two. Light is complete, so it
  // stays, and with fewer components it passes the second filter too.
  EXPECT_EQ(match({{5, M}, {9, P}, {0, P}}), (Names{"Light", "Extra Light", "Italic"}));
  // A compounding component makes Light incomplete, and the threshold drops it.
  table_.componentMap[9].compounds = true;
  EXPECT_EQ(match({{5, M}, {9, P}, {0, P}}), (Names{"Extra Light", "Italic"}));
}

TEST_F(BuiltinMatch, AKindWithNoCandidateAtTheThresholdIsLeftOut) {
  // Extra Cond gets two hits, so the bar is two, but its modifier conflicts and leaves one:
  // nobody reaches the bar, and even the complete Cond is removed in the second pass.
  styles({{"Bold", {1}, true}, {"Cond", {10}, false}, {"Extra Cond", {5, 10}, false}});
  EXPECT_EQ(match({{10, P}, {5, M}, {1, P}}), (Names{"Bold"}));
  // With the combination listed first, the later Cond is skipped for having fewer hits.
  styles({{"Bold", {1}, true}, {"Extra Cond", {5, 10}, false}, {"Cond", {10}, false}});
  EXPECT_EQ(match({{10, P}, {5, M}, {1, P}}), (Names{"Bold"}));
}

TEST_F(BuiltinMatch, EmptyTablesFindNothing) {
  SKeywordTable empty;
  std::vector<SBuiltinStyle> out;
  EXPECT_EQ(UxFontStyleScan(empty).ScanFontForBuiltinStyles("Foo-Ultra", "Foo Ultra", out), 0u);
  EXPECT_TRUE(out.empty());
}

TEST(UserStyle, FindsTheStyleInEitherNameIgnoringCase) {
  const struct {
    const char* first;
    const char* second;
    const char* style;
    bool found;
  } rows[] = {
      {"Helvetica-BoldOblique", "", "bold", true},
      {"Helvetica-BoldOblique", "", "Bold", true},
      {"Helvetica", "Helvetica Oblique", "OBLIQUE", true},
      {"Helvetica-Bold", "Helvetica Bold", "Italic", false},
      {"Helvetica", "", "", true},
      {"", "", "", true},
      {"", "", "x", false},
      {"Caf\xC3\xA9", "", "\xC3\xA9", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.first) + " / " + row.style);
    EXPECT_EQ(UxFontStyleScan::ScanFontForUserStyle(row.first, row.second, row.style), row.found);
  }
}

TEST(SharedKeywordTable, LoadsOnceWhenFirstUsedFromSeveralThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(UxFontStyleScan::Initialize);
  for (std::thread& t : threads) t.join();
  SStyleComponent bold;
  ASSERT_TRUE(UxFontStyleScan::shared().MatchStyleComponent("Bold", bold));
  EXPECT_EQ(bold.styleConstant, 1);
  std::vector<SBuiltinStyle> out;
  EXPECT_EQ(UxFontStyleScan::shared().ScanFontForBuiltinStyles("Foo-BoldItalic", "", out), 2u);
}

}  // namespace
}  // namespace typeprint
