// The classification mappings on small files written for each test (damaged files, case rules,
// the "None" class) and on the shipped table with the families of real fonts.
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

std::string plistDocument(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + body + "\n</plist>\n";
}

std::vector<std::string> builtinClasses(const CClassificationMappings& mappings) {
  std::vector<UxString> list = {"stale entry"};
  mappings.GetListOfBuiltinClasses(list);
  return std::vector<std::string>(list.begin(), list.end());
}

class MappingsFile {
 public:
  explicit MappingsFile(const std::string& dictionaryBody) {
    test::writeFile(dir_.file("c.plist"), plistDocument("<dict>" + dictionaryBody + "</dict>"));
    EXPECT_TRUE(mappings_.LoadMappings(dir_.file("c.plist")));
  }
  CClassificationMappings& operator*() { return mappings_; }
  CClassificationMappings* operator->() { return &mappings_; }

 private:
  ScratchDir dir_;
  CClassificationMappings mappings_;
};

TEST(ClassificationMappings, DamagedFilesLeaveNoMappings) {
  const struct {
    const char* what;
    const char* bytes;  // null: no file at all
  } rows[] = {
      {"missing file", nullptr},
      {"empty file", ""},
      {"not a property list", "helvetica = Sans Serif\n"},
      {"cut-off document", "<plist version=\"1.0\"><dict><key>Mappings</key><dict><key>times</key>"},
      {"root is an array", "<plist version=\"1.0\"><array><string>Serif</string></array></plist>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    ScratchDir dir;
    if (row.bytes) test::writeFile(dir.file("c.plist"), row.bytes);
    CClassificationMappings mappings;
    EXPECT_FALSE(mappings.LoadMappings(dir.file("c.plist")));
    EXPECT_FALSE(mappings.IsLoaded());
    EXPECT_EQ(std::string(mappings.GetClassNameFromFontFamily("Times")), "--");
    EXPECT_TRUE(builtinClasses(mappings).empty());
    EXPECT_EQ(mappings.ReplaceDefaultClassification("None", "--"), 0);
  }
}

TEST(ClassificationMappings, LookupIgnoresCaseOfTheFamilyOnly) {
  const std::string longName(1024, 'x');
  MappingsFile mappings(
      "<key>Mappings</key><dict>"
      "<key>times</key><string>Serif</string>"
      "<key>Helvetica</key><string>Sans Serif</string>"
      "<key>\xC3\xA9" "criture</key><string>Script</string>"  // "écriture"
      "<key>\xCE\xBF\xCE\xBB\xCF\x85\xCE\xBC\xCF\x80\xCE\xBF\xCF\x82</key><string>Display</string>"  // "ολυμπος"
      "<key>number</key><integer>3</integer>"
      "<key>long class</key><string>" + longName + "</string>"
      "<key>longest class</key><string>" + longName.substr(1) + "</string>"
      "<key>none</key><string>None</string>"
      "</dict>");
  const struct {
    const char* family;
    std::string expected;
  } rows[] = {
      {"times", "Serif"},
      {"TIMES", "Serif"},
      {"tImEs", "Serif"},
      {"Times ", "--"},                     // the key is matched exactly
      {"Helvetica", "--"},                  // a key with capitals is never found
      {"helvetica", "--"},
      {"\xC3\x89" "CRITURE", "Script"},     // "ÉCRITURE": lower-cased beyond ASCII
      {"\xCE\x9F\xCE\x9B\xCE\xA5\xCE\x9C\xCE\xA0\xCE\x9F\xCE\xA3", "Display"},  // "ΟΛΥΜΠΟΣ", final sigma
      {"number", "--"},                     // a value that is not a string
      {"long class", "--"},                 // 1024 bytes do not fit the 1024-byte buffer
      {"longest class", longName.substr(1)},
      {"none", "None"},                     // only the built-in list renames "None"
      {"", "--"},
      {"Courier", "--"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.family);
    EXPECT_EQ(std::string(mappings->GetClassNameFromFontFamily(row.family)), row.expected);
  }
}

TEST(ClassificationMappings, BuiltinClassesListNoneAsUnknown) {
  const struct {
    const char* what;
    const char* body;
    std::vector<std::string> expected;
  } rows[] = {
      {"None twice", "<key>Default Classifications</key><array><string>Serif</string><string>None</string>"
                     "<string>Script</string><string>None</string></array>",
       {"Serif", "--", "Script", "--"}},
      {"None compared with case", "<key>Default Classifications</key><array><string>none</string>"
                                  "<string>NONE</string></array>",
       {"none", "NONE"}},
      {"entries that are not strings are skipped",
       "<key>Default Classifications</key><array><integer>1</integer><string>Symbol</string><array/></array>",
       {"Symbol"}},
      {"list missing", "<key>Mappings</key><dict/>", {}},
      {"list of the wrong type", "<key>Default Classifications</key><string>Serif</string>", {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    MappingsFile mappings(row.body);
    EXPECT_EQ(builtinClasses(*mappings), row.expected);
    EXPECT_EQ(mappings->GetClassNameFromFontFamily("anything"), CClassificationMappings::GetUnknownClassificationName());
  }
}

TEST(ClassificationMappings, ReplacementCountsExactMatches) {
  MappingsFile mappings("<key>Default Classifications</key><array><string>Serif</string><string>Sans</string>"
                        "<string>Serif</string><string>serif</string></array>");
  EXPECT_EQ(mappings->ReplaceDefaultClassification("Serif", "Roman"), 2);
  EXPECT_EQ(mappings->ReplaceDefaultClassification("Serif", "Roman"), 0);
  EXPECT_EQ(mappings->ReplaceDefaultClassification("Roman", "Roman"), 2);
  EXPECT_EQ(builtinClasses(*mappings), (std::vector<std::string>{"Roman", "Sans", "Roman", "serif"}));
}

// The shipped table: the built-in classes, keys that the lookup can reach, and the families of
// fonts in Debian packages with the class a typographer gives them.
TEST(ClassificationMappings, ShippedTableClassifiesRealFamilies) {
  CClassificationMappings mappings;
  ASSERT_TRUE(mappings.LoadMappings());
  EXPECT_EQ(builtinClasses(mappings),
            (std::vector<std::string>{"Serif", "Sans Serif", "Slab Serif", "Script", "Handwriting", "Display",
                                      "Monospace", "Blackletter", "Symbol", "--"}));
  const struct {
    const char* family;
    const char* expected;
  } rows[] = {
      // fonts-dejavu-core, fonts-urw-base35, fonts-cantarell, fonts-inconsolata
      {"DejaVu Sans", "Sans Serif"},      {"DejaVu Serif", "Serif"},         {"DejaVu Sans Mono", "Monospace"},
      {"DejaVu Sans Condensed", "Sans Serif"},
      {"Nimbus Roman", "Serif"},          {"Nimbus Sans", "Sans Serif"},     {"Nimbus Sans Narrow", "Sans Serif"},
      {"Nimbus Mono PS", "Monospace"},    {"C059", "Serif"},                 {"P052", "Serif"},
      {"URW Bookman", "Serif"},           {"URW Gothic", "Sans Serif"},      {"Z003", "Script"},
      {"Standard Symbols PS", "Symbol"},  {"D050000L", "Symbol"},            {"Cantarell", "Sans Serif"},
      {"Inconsolata", "Monospace"},
      // other Debian packages
      {"Liberation Serif", "Serif"},      {"Liberation Mono", "Monospace"},  {"Noto Sans", "Sans Serif"},
      {"Noto Serif", "Serif"},            {"Noto Sans Devanagari", "Sans Serif"},
      {"TeX Gyre Termes", "Serif"},       {"TeX Gyre Chorus", "Script"},     {"Latin Modern Mono", "Monospace"},
      {"FreeSerif", "Serif"},             {"FreeMono", "Monospace"},         {"Linux Libertine O", "Serif"},
      {"Fira Code", "Monospace"},         {"Roboto Slab", "Slab Serif"},     {"UnifrakturMaguntia", "Blackletter"},
      {"Comic Neue", "Handwriting"},      {"Noto Color Emoji", "Symbol"},    {"IPAGothic", "Sans Serif"},
      {"IPAMincho", "Serif"},             {"Ubuntu", "Sans Serif"},          {"Hack", "Monospace"},
      // classic desktop families
      {"Helvetica", "Sans Serif"},        {"Times New Roman", "Serif"},      {"Courier New", "Monospace"},
      {"Garamond", "Serif"},              {"Futura", "Sans Serif"},          {"Rockwell", "Slab Serif"},
      {"Zapfino", "Script"},              {"Old English Text MT", "Blackletter"},
      {"Wingdings", "Symbol"},            {"Cooper Black", "Display"},       {"ZAPF DINGBATS", "Symbol"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.family);
    EXPECT_EQ(std::string(mappings.GetClassNameFromFontFamily(row.family)), row.expected);
  }
}

TEST(ClassificationMappings, ShippedKeysAreReachable) {
  std::string text = test::readFile(std::string(TYPEPRINT_SOURCE_DIR) + "/data/DefaultClassifications.plist");
  std::optional<PlistValue> root = parsePropertyList(ByteSpan(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  ASSERT_TRUE(root);
  const PlistValue* mappings = root->find("Mappings");
  ASSERT_TRUE(mappings && mappings->is(PlistValue::Type::Dictionary));
  EXPECT_GE(mappings->asDictionary().size(), 1000u);
  for (const auto& [family, cls] : mappings->asDictionary()) {
    SCOPED_TRACE(family);
    EXPECT_EQ(toLowerUnicode(family), family) << "a key the lower-cased lookup can never find";
    EXPECT_TRUE(cls.is(PlistValue::Type::String));
  }
}

}  // namespace
}  // namespace typeprint
