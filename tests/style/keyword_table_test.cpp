// Loading the keyword table: the error texts, the skip rules for malformed entries and unreadable
// files, and the shipped table's binding of the constants the scan treats specially.
#include "style/keyword_table.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
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
PlistValue num(int64_t n) { return PlistValue::integer(n); }

PlistValue component(const std::string& display, int64_t constant, Array spellings) {
  const PlistValue no = PlistValue::boolean(false);
  return PlistValue::dictionary({{"display", str(display)}, {"is-modifier", no}, {"compounds", no},
                                 {"style-constant", num(constant)}, {"match-strings", PlistValue::array(spellings)}});
}

PlistValue style(const std::string& display, Array constants, bool weight = true) {
  return PlistValue::dictionary({{"display", str(display)}, {"components", PlistValue::array(constants)},
                                 {"isweight", PlistValue::boolean(weight)}});
}

// `entry` with `key` set to `value`, or removed when `value` is empty.
PlistValue changed(const PlistValue& entry, const std::string& key, std::optional<PlistValue> value) {
  Dict d = entry.asDictionary();
  if (value) d[key] = *value; else d.erase(key);
  return PlistValue::dictionary(d);
}

PlistValue root(Array components, Array styles) {
  return PlistValue::dictionary(
      {{"Components", PlistValue::array(std::move(components))}, {"Styles", PlistValue::array(std::move(styles))}});
}

std::string thrown(const std::function<void()>& load) {
  try {
    load();
  } catch (const DataRetrieveError& e) {
    return e.what();
  }
  return "(nothing thrown)";
}

TEST(KeywordTable, MissingArraysThrowTheirTextsAndUnreadableFilesAreIgnored) {
  SKeywordTable table;
  table.components.push_back(SStyleComponent{7, false, false, "Old", {"Old"}});
  PlistValue noComponents = PlistValue::dictionary({{"Components", str("x")}, {"Styles", PlistValue::array()}});
  EXPECT_EQ(thrown([&] { fillKeywordTable(noComponents, table); }), "KeywordTable.plist - Components array");
  EXPECT_EQ(table.components.at(0).display, "Old") << "the check comes before any change";

  PlistValue noStyles = PlistValue::dictionary({{"Components", PlistValue::array({component("Bold", 1, {})})}});
  EXPECT_EQ(thrown([&] { fillKeywordTable(noStyles, table); }), "KeywordTable.plist - Style array");
  EXPECT_EQ(table.components.at(0).display, "Bold") << "the components were loaded before the throw";

  // A file the loader reads throws the same; files missing or no property list are ignored.
  test::ScratchDir dir;
  test::writeFile(dir.file("nostyles.plist"), *printXMLPropertyList(noStyles));
  EXPECT_EQ(thrown([&] { loadKeywordTable(dir.file("nostyles.plist"), table); }), "KeywordTable.plist - Style array");
  test::writeFile(dir.file("text.plist"), "Bold Italic\n");
  for (const std::string& path : {dir.file("absent.plist"), dir.file("text.plist")}) {
    EXPECT_EQ(thrown([&] { loadKeywordTable(path, table); }), "(nothing thrown)") << path;
    EXPECT_EQ(table.components.at(0).display, "Bold");
  }
}

TEST(KeywordTable, SkipsMalformedEntriesAndDropsBadValuesInsideTheRest) {
  const PlistValue bold = component("Bold", 1, {str("Bold")}), boldStyle = style("Bold", {num(1)});
  Array spellings = {str("Bold"), num(1), str(std::string(512, 'b')), str(std::string(511, 'b')), str("Bd")};
  SKeywordTable table;
  fillKeywordTable(root({str("Bold"),                                                 // not a dictionary
                         changed(bold, "display", std::nullopt),                      // a required key missing
                         changed(bold, "match-strings", str("Bold")),                 // not an array
                         changed(bold, "display", str(std::string(600, 'B'))),        // display too long
                         changed(component("Bold", 1, spellings), "style-constant", PlistValue::real(16.0)),
                         changed(component("Text", 1, {}), "style-constant", str("12")), component("Fett", 16, {})},
                        {changed(boldStyle, "isweight", std::nullopt),                // a required key missing
                         changed(boldStyle, "components", num(1)),                    // not an array
                         changed(boldStyle, "display", str(std::string(600, 'x'))),   // display too long
                         style("Odd", {num(5), str("9"), PlistValue::boolean(true), num(9)})}),
                   table);
  ASSERT_EQ(table.components.size(), 3u);
  ASSERT_EQ(table.builtinStyles.size(), 1u);
  EXPECT_EQ(table.componentMap.count(1), 0u) << "no skipped entry is mapped";
  EXPECT_EQ(table.components[0].matchStrings, (std::vector<std::string>{"Bold", std::string(511, 'b'), "Bd"}));
  EXPECT_EQ(table.components[0].styleConstant, 16) << "a real constant is read as an integer";
  EXPECT_EQ(table.components[1].styleConstant, 0) << "a constant given as text";
  EXPECT_EQ(table.builtinStyles[0].components, (std::vector<int32_t>{5, 0, 0, 9}));
  // Two components share constant 16 and the later one is mapped; a reload only adds to the map.
  fillKeywordTable(root({component("Light", 9, {})}, {}), table);
  EXPECT_EQ(table.componentMap.at(16).display, "Fett");
}

// The shipped table: the scan's special rules assume these words behind these constants, and
// the spellings found in real PostScript names must reach the right component.
TEST(ShippedKeywordTable, BindsTheSpecialConstantsAndRealSpellings) {
  SKeywordTable table;
  loadKeywordTable(libraryDataFile("KeywordTable.plist"), table);
  UxFontStyleScan scan(table);
  const struct { const char* spelling; int32_t constant; bool modifier; } rows[] = {
      {"Italic", 0, false}, {"Ita", 0, false},      {"Bd", 1, false},       {"Demi", 4, false},
      {"Smbd", 4, false},   {"Extra", 5, true},     {"Lt", 9, false},       {"Roman", 12, false},
      {"Regular", 13, false}, {"Semi", 15, false},  {"Ultra", 16, true},    {"Thin", 35, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.spelling);
    SStyleComponent found;
    ASSERT_TRUE(scan.MatchStyleComponent(row.spelling, found));
    EXPECT_EQ(found.styleConstant, row.constant);
    EXPECT_EQ(found.isModifier, row.modifier);
  }
  for (const SBuiltinStyle& s : table.builtinStyles)
    for (int32_t c : s.components) EXPECT_EQ(table.componentMap.count(c), 1u) << s.display;
}

}  // namespace
}  // namespace typeprint
