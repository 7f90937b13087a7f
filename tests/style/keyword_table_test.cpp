// Loading the style keyword table: the two required arrays and their error texts, the skip
// rules for malformed entries, files that are missing or no property list, and the shipped
// table's binding of the constants the scan treats specially.
#include "style/keyword_table.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "platform/linux/data_location.h"
#include "platform/linux/plist_io.h"
#include "style/style_scan.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using Dict = PlistValue::Dictionary;
using Array = PlistValue::Array;

PlistValue str(const std::string& s) { return PlistValue::string(s); }

Dict component(const std::string& display, int64_t constant, Array spellings, bool modifier = false) {
  return Dict{{"display", str(display)},
              {"is-modifier", PlistValue::boolean(modifier)},
              {"compounds", PlistValue::boolean(false)},
              {"style-constant", PlistValue::integer(constant)},
              {"match-strings", PlistValue::array(std::move(spellings))}};
}

Dict style(const std::string& display, Array constants, bool weight = true) {
  return Dict{{"display", str(display)},
              {"components", PlistValue::array(std::move(constants))},
              {"isweight", PlistValue::boolean(weight)}};
}

Dict without(Dict d, const std::string& key) {
  d.erase(key);
  return d;
}

Dict with(Dict d, const std::string& key, PlistValue value) {
  d[key] = std::move(value);
  return d;
}

PlistValue root(Array components, Array styles) {
  return PlistValue::dictionary(
      {{"Components", PlistValue::array(std::move(components))}, {"Styles", PlistValue::array(std::move(styles))}});
}

std::string what(const std::function<void()>& load) {
  try {
    load();
  } catch (const DataRetrieveError& e) {
    return e.what();
  }
  return "(nothing thrown)";
}

TEST(KeywordTable, MissingArraysThrowTheirTexts) {
  SKeywordTable table;
  table.components.push_back(SStyleComponent{7, false, false, "Old", {"Old"}});

  PlistValue noComponents = PlistValue::dictionary({{"Styles", PlistValue::array()}});
  EXPECT_EQ(what([&] { fillKeywordTable(noComponents, table); }), "KeywordTable.plist - Components array");
  ASSERT_EQ(table.components.size(), 1u);  // untouched: the check comes before any change
  EXPECT_EQ(table.components[0].display, "Old");

  PlistValue noStyles = PlistValue::dictionary(
      {{"Components", PlistValue::array({PlistValue::dictionary(component("Bold", 1, {str("Bold")}))})}});
  EXPECT_EQ(what([&] { fillKeywordTable(noStyles, table); }), "KeywordTable.plist - Style array");
  ASSERT_EQ(table.components.size(), 1u);  // the components were loaded before the throw
  EXPECT_EQ(table.components[0].display, "Bold");

  PlistValue arraysOfWrongType =
      PlistValue::dictionary({{"Components", str("x")}, {"Styles", PlistValue::array()}});
  EXPECT_EQ(what([&] { fillKeywordTable(arraysOfWrongType, table); }), "KeywordTable.plist - Components array");
  EXPECT_EQ(what([&] { fillKeywordTable(PlistValue::array(), table); }), "KeywordTable.plist - Components array");

  SKeywordTable empty;
  EXPECT_EQ(what([&] { fillKeywordTable(root({}, {}), empty); }), "(nothing thrown)");
  EXPECT_TRUE(empty.components.empty());
  EXPECT_TRUE(empty.builtinStyles.empty());
}

TEST(KeywordTable, FilesThatAreNotTablesLeaveItAlone) {
  test::ScratchDir dir;
  test::writeFile(dir.file("empty.plist"), "");
  test::writeFile(dir.file("text.plist"), "Bold Italic\n");
  test::writeFile(dir.file("cut.plist"), "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Comp");
  const struct {
    const char* what;
    std::string path;
  } rows[] = {
      {"no path", ""},
      {"missing file", dir.file("absent.plist")},
      {"a folder", dir.path()},
      {"empty file", dir.file("empty.plist")},
      {"plain text", dir.file("text.plist")},
      {"cut XML", dir.file("cut.plist")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    SKeywordTable table;
    table.builtinStyles.push_back(SBuiltinStyle{"Kept", {1}, true});
    EXPECT_NO_THROW(loadKeywordTable(row.path, table));
    ASSERT_EQ(table.builtinStyles.size(), 1u);
    EXPECT_EQ(table.builtinStyles[0].display, "Kept");
  }
}

TEST(KeywordTable, LoadsFromAnExplicitPathAndThrowsForAMissingArray) {
  test::ScratchDir dir;
  PlistValue good = root({PlistValue::dictionary(component("Bold", 1, {str("Bold"), str("Bd")}))},
                         {PlistValue::dictionary(style("Bold", {PlistValue::integer(1)}))});
  test::writeFile(dir.file("good.plist"), *printXMLPropertyList(good));
  test::writeFile(dir.file("nostyles.plist"),
                  *printXMLPropertyList(PlistValue::dictionary({{"Components", PlistValue::array()}})));

  SKeywordTable table;
  loadKeywordTable(dir.file("good.plist"), table);
  ASSERT_EQ(table.components.size(), 1u);
  EXPECT_EQ(table.components[0].matchStrings, (std::vector<std::string>{"Bold", "Bd"}));
  ASSERT_EQ(table.builtinStyles.size(), 1u);
  EXPECT_EQ(table.builtinStyles[0].components, std::vector<int32_t>{1});

  EXPECT_THROW(loadKeywordTable(dir.file("nostyles.plist"), table), DataRetrieveError);
}

TEST(KeywordTable, SkipsMalformedComponents) {
  const Dict good = component("Bold", 1, {str("Bold")});
  const struct {
    const char* what;
    PlistValue entry;
  } rows[] = {
      {"not a dictionary", str("Bold")},
      {"no display", PlistValue::dictionary(without(good, "display"))},
      {"no is-modifier", PlistValue::dictionary(without(good, "is-modifier"))},
      {"no compounds", PlistValue::dictionary(without(good, "compounds"))},
      {"no style-constant", PlistValue::dictionary(without(good, "style-constant"))},
      {"no match-strings", PlistValue::dictionary(without(good, "match-strings"))},
      {"match-strings not an array", PlistValue::dictionary(with(good, "match-strings", str("Bold")))},
      {"display not a string", PlistValue::dictionary(with(good, "display", PlistValue::integer(3)))},
      {"display of 600 bytes", PlistValue::dictionary(with(good, "display", str(std::string(600, 'B'))))},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    SKeywordTable table;
    fillKeywordTable(root({row.entry, PlistValue::dictionary(component("Light", 9, {str("Lt")}))}, {}), table);
    ASSERT_EQ(table.components.size(), 1u);  // the entry after the bad one still loads
    EXPECT_EQ(table.components[0].display, "Light");
    EXPECT_EQ(table.componentMap.count(1), 0u);
  }
}

TEST(KeywordTable, ReadsComponentFieldsLeniently) {
  const struct {
    const char* what;
    PlistValue constant;
    PlistValue modifier;
    int32_t expectedConstant;
    bool expectedModifier;
  } rows[] = {
      {"integer and true", PlistValue::integer(-35), PlistValue::boolean(true), -35, true},
      {"real constant", PlistValue::real(16.0), PlistValue::boolean(false), 16, false},
      {"constant as text", str("12"), PlistValue::boolean(true), 0, true},
      {"constant beyond 32 bits", PlistValue::integer(int64_t(1) << 33), PlistValue::boolean(true), 0, true},
      {"modifier as text", PlistValue::integer(5), str("true"), 5, false},
      {"modifier as number", PlistValue::integer(5), PlistValue::integer(1), 5, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Dict entry = with(with(component("X", 0, {}), "style-constant", row.constant), "is-modifier", row.modifier);
    SKeywordTable table;
    fillKeywordTable(root({PlistValue::dictionary(entry)}, {}), table);
    ASSERT_EQ(table.components.size(), 1u);
    EXPECT_EQ(table.components[0].styleConstant, row.expectedConstant);
    EXPECT_EQ(table.components[0].isModifier, row.expectedModifier);
  }
}

TEST(KeywordTable, DropsOnlyTheBadSpellings) {
  SKeywordTable table;
  Array spellings = {str("Bold"), PlistValue::integer(1), str(std::string(512, 'b')), str(std::string(511, 'b')),
                     PlistValue::array(), str("Bd")};
  fillKeywordTable(root({PlistValue::dictionary(component("Bold", 1, spellings))}, {}), table);
  ASSERT_EQ(table.components.size(), 1u);
  EXPECT_EQ(table.components[0].matchStrings, (std::vector<std::string>{"Bold", std::string(511, 'b'), "Bd"}));
}

TEST(KeywordTable, DuplicateConstantsStayListedAndTheLaterOneIsMapped) {
  SKeywordTable table;
  fillKeywordTable(root({PlistValue::dictionary(component("Bold", 1, {str("Bold")})),
                         PlistValue::dictionary(component("Fett", 1, {str("Fett")}))},
                        {}),
                   table);
  ASSERT_EQ(table.components.size(), 2u);
  EXPECT_EQ(table.components[0].display, "Bold");
  EXPECT_EQ(table.components[1].display, "Fett");
  EXPECT_EQ(table.componentMap.at(1).display, "Fett");

  // A reload replaces the list but only adds to the map.
  fillKeywordTable(root({PlistValue::dictionary(component("Light", 9, {str("Lt")}))}, {}), table);
  ASSERT_EQ(table.components.size(), 1u);
  EXPECT_EQ(table.componentMap.size(), 2u);
  EXPECT_EQ(table.componentMap.at(1).display, "Fett");
}

TEST(KeywordTable, SkipsMalformedStylesAndZeroesBadConstants) {
  const Dict good = style("Bold", {PlistValue::integer(1)});
  const struct {
    const char* what;
    PlistValue entry;
  } rows[] = {
      {"not a dictionary", PlistValue::array()},
      {"no display", PlistValue::dictionary(without(good, "display"))},
      {"no components", PlistValue::dictionary(without(good, "components"))},
      {"no isweight", PlistValue::dictionary(without(good, "isweight"))},
      {"components not an array", PlistValue::dictionary(with(good, "components", PlistValue::integer(1)))},
      {"display of 600 bytes", PlistValue::dictionary(with(good, "display", str(std::string(600, 'x'))))},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    SKeywordTable table;
    fillKeywordTable(root({}, {row.entry, PlistValue::dictionary(style("Italic", {PlistValue::integer(0)}, false))}),
                     table);
    ASSERT_EQ(table.builtinStyles.size(), 1u);
    EXPECT_EQ(table.builtinStyles[0].display, "Italic");
    EXPECT_FALSE(table.builtinStyles[0].isWeight);
  }

  SKeywordTable table;
  fillKeywordTable(root({}, {PlistValue::dictionary(style("Odd", {PlistValue::integer(5), str("9"),
                                                                 PlistValue::boolean(true), PlistValue::integer(9)}))}),
                   table);
  ASSERT_EQ(table.builtinStyles.size(), 1u);
  EXPECT_EQ(table.builtinStyles[0].components, (std::vector<int32_t>{5, 0, 0, 9}));
}

// The shipped table: the scan's special rules assume these words behind these constants, and
// the spellings found in real PostScript names must reach the right component.
class ShippedKeywordTable : public ::testing::Test {
 protected:
  void SetUp() override { loadKeywordTable(libraryDataFile("KeywordTable.plist"), table_); }
  SKeywordTable table_;
};

TEST_F(ShippedKeywordTable, BindsTheSpecialConstantsAndRealSpellings) {
  ASSERT_FALSE(table_.components.empty());
  UxFontStyleScan scan(table_);
  const struct {
    const char* spelling;
    int32_t constant;
    bool modifier;
  } rows[] = {
      {"Italic", 0, false}, {"It", 0, false},     {"Ita", 0, false},  {"Bold", 1, false},  {"Bd", 1, false},
      {"Demi", 4, false},   {"Smbd", 4, false},   {"Dm", 4, false},   {"Extra", 5, true},  {"Light", 9, false},
      {"Lt", 9, false},     {"Roman", 12, false}, {"Regular", 13, false}, {"Semi", 15, false},
      {"Semibold", 15, false}, {"Ultra", 16, true}, {"Ult", 16, true}, {"Thin", 35, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.spelling);
    SStyleComponent found;
    ASSERT_TRUE(scan.MatchStyleComponent(row.spelling, found));
    EXPECT_EQ(found.styleConstant, row.constant);
    EXPECT_EQ(found.isModifier, row.modifier);
  }

  const struct {
    const char* spelling;
    const char* display;
  } words[] = {
      {"Blk", "Black"},    {"Cn", "Condensed"}, {"Cond", "Condensed"}, {"Obl", "Oblique"}, {"Med", "Medium"},
      {"Hv", "Heavy"},     {"Bk", "Book"},      {"Narrow", "Narrow"},  {"Ext", "Extended"}, {"Caption", "Caption"},
      {"OsF", "Old Style Figures"}, {"Small", "Small"}, {"Caps", "Caps"}, {"Cyrillic", "Cyrillic"},
  };
  for (const auto& row : words) {
    SCOPED_TRACE(row.spelling);
    SStyleComponent found;
    ASSERT_TRUE(scan.MatchStyleComponent(row.spelling, found));
    EXPECT_EQ(found.display, row.display);
  }
}

TEST_F(ShippedKeywordTable, IsConsistent) {
  std::set<std::string> spellings;
  for (const SStyleComponent& c : table_.components) {
    for (const std::string& s : c.matchStrings) {
      SCOPED_TRACE(s);
      EXPECT_TRUE(spellings.insert(s).second) << "spelled twice";
      EXPECT_GE(s.size(), 2u) << "one-letter words come from acronyms such as MT and ITC";
    }
  }
  EXPECT_EQ(table_.componentMap.size(), table_.components.size()) << "a constant used twice";
  ASSERT_FALSE(table_.builtinStyles.empty());
  for (const SBuiltinStyle& s : table_.builtinStyles) {
    SCOPED_TRACE(s.display);
    EXPECT_FALSE(s.components.empty());
    for (int32_t c : s.components) EXPECT_EQ(table_.componentMap.count(c), 1u);
  }
}

}  // namespace
}  // namespace typeprint
