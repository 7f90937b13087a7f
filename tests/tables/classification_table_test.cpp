// Classification mappings from small broken or odd files, and from the shipped table for real families.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/linux/plist_io.h"
#include "platform/linux/text_encoding.h"
#include "support/test_paths.h"
#include "tables/classification_table.h"

namespace typeprint {
namespace {

using test::ScratchDir;

std::vector<std::string> builtinClasses(const CClassificationMappings& mappings) {
  std::vector<UxString> list = {"stale entry"};
  mappings.GetListOfBuiltinClasses(list);
  return std::vector<std::string>(list.begin(), list.end());
}

// Loads mappings from a file holding `bytes`, or from no file at all when `bytes` is null.
bool load(CClassificationMappings& mappings, const char* bytes) {
  ScratchDir dir;
  if (bytes) test::writeFile(dir.file("c.plist"), bytes);
  return mappings.LoadMappings(dir.file("c.plist"));
}

std::string dictionaryFile(const std::string& body) { return "<plist><dict>" + body + "</dict></plist>"; }

TEST(ClassificationMappings, DamagedFilesLeaveNoMappings) {
  const struct { const char* what; const char* bytes; } rows[] = {
      {"missing file", nullptr},
      {"not a property list", "helvetica = Sans Serif\n"},
      {"root is an array", "<plist version=\"1.0\"><array><string>Serif</string></array></plist>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    CClassificationMappings mappings;
    EXPECT_FALSE(load(mappings, row.bytes));
    EXPECT_EQ(std::string(mappings.GetClassNameFromFontFamily("Times")), "--");
    EXPECT_TRUE(builtinClasses(mappings).empty());
  }
}

TEST(ClassificationMappings, LookupIgnoresCaseOfTheFamilyOnly) {
  CClassificationMappings mappings;
  ASSERT_TRUE(load(mappings, dictionaryFile(
      "<key>Mappings</key><dict>"
      "<key>times</key><string>Serif</string>"
      "<key>Helvetica</key><string>Sans Serif</string>"
      "<key>\xCE\xBF\xCE\xBB\xCF\x85\xCE\xBC\xCF\x80\xCE\xBF\xCF\x82</key><string>Display</string>"  // "ολυμπος"
      "<key>none</key><string>None</string>"
      "</dict>").c_str()));
  const struct { const char* family; std::string expected; } rows[] = {
      {"tImEs", "Serif"},
      {"Helvetica", "--"},              // a key with capitals is never found
      {"\xCE\x9F\xCE\x9B\xCE\xA5\xCE\x9C\xCE\xA0\xCE\x9F\xCE\xA3", "Display"},  // "ΟΛΥΜΠΟΣ": final sigma
      {"none", "None"},                 // only the built-in list renames "None"
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.family);
    EXPECT_EQ(std::string(mappings.GetClassNameFromFontFamily(row.family)), row.expected);
  }
}

TEST(ClassificationMappings, BuiltinClassesListNoneAsUnknown) {
  CClassificationMappings mappings;
  ASSERT_TRUE(load(mappings, dictionaryFile("<key>Default Classifications</key><array><string>Serif</string>"
                                            "<string>None</string><integer>1</integer><string>none</string>"
                                            "<string>Serif</string></array>").c_str()));
  EXPECT_EQ(builtinClasses(mappings), (std::vector<std::string>{"Serif", "--", "none", "Serif"}))
      << "\"None\" is compared with case, entries that are not strings are skipped";
  EXPECT_EQ(mappings.ReplaceDefaultClassification("Serif", "Roman"), 2);
  EXPECT_EQ(builtinClasses(mappings), (std::vector<std::string>{"Roman", "--", "none", "Roman"}));
}

// The families of fonts in Debian packages and classic desktop families, with the class a
// typographer gives them.
TEST(ClassificationMappings, ShippedTableClassifiesRealFamilies) {
  CClassificationMappings mappings;
  ASSERT_TRUE(mappings.LoadMappings());
  EXPECT_EQ(builtinClasses(mappings),
            (std::vector<std::string>{"Serif", "Sans Serif", "Slab Serif", "Script", "Handwriting", "Display",
                                      "Monospace", "Blackletter", "Symbol", "--"}));
  const struct { const char* family; const char* expected; } rows[] = {
      {"DejaVu Sans Mono", "Monospace"},  {"Nimbus Roman", "Serif"},        {"Z003", "Script"},
      {"Standard Symbols PS", "Symbol"}, {"Cantarell", "Sans Serif"},      {"Roboto Slab", "Slab Serif"},
      {"UnifrakturMaguntia", "Blackletter"}, {"Comic Neue", "Handwriting"}, {"IPAMincho", "Serif"},
      {"Cooper Black", "Display"},       {"ZAPF DINGBATS", "Symbol"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.family);
    EXPECT_EQ(std::string(mappings.GetClassNameFromFontFamily(row.family)), row.expected);
  }
  std::string text = test::readFile(std::string(TYPEPRINT_SOURCE_DIR) + "/data/DefaultClassifications.plist");
  auto root = parsePropertyList(ByteSpan(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  const PlistValue* all = root ? root->find("Mappings") : nullptr;
  ASSERT_TRUE(all && all->is(PlistValue::Type::Dictionary));
  EXPECT_GE(all->asDictionary().size(), 1000u);
  for (const auto& [family, cls] : all->asDictionary()) {
    EXPECT_EQ(toLowerUnicode(family), family) << "a key the lower-cased lookup can never find";
  }
}

}  // namespace
}  // namespace typeprint
