// The foundry name table on small tables written for each test (damaged files, order, default
// entries, creator codes) and on the shipped table with the notices of real fonts.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "foundation/be_reader.h"
#include "platform/linux/data_location.h"
#include "platform/linux/plist_io.h"
#include "support/test_paths.h"
#include "tables/foundry_table.h"

namespace typeprint {
namespace {

using test::ScratchDir;

std::string plistDocument(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + body + "\n</plist>\n";
}

// An entry: name (omitted when null), pattern (omitted when null), creator codes.
std::string entry(const char* name, const char* pattern, std::initializer_list<const char*> codes = {}) {
  std::string s = "<dict>";
  if (name) s += "<key>FoundryName</key><string>" + std::string(name) + "</string>";
  if (pattern) s += "<key>Pattern</key><string>" + std::string(pattern) + "</string>";
  if (codes.size()) {
    s += "<key>CreatorCode</key><array>";
    for (const char* code : codes) s += "<string>" + std::string(code) + "</string>";
    s += "</array>";
  }
  return s + "</dict>";
}

class TableFile {
 public:
  explicit TableFile(const std::string& entries) {
    test::writeFile(dir_.file("table.plist"), plistDocument("<array>" + entries + "</array>"));
    EXPECT_TRUE(table_.LoadTable(dir_.file("table.plist")));
  }
  const CFoundryNameTable& operator*() const { return table_; }
  const CFoundryNameTable* operator->() const { return &table_; }

 private:
  ScratchDir dir_;
  CFoundryNameTable table_;
};

TEST(FoundryNameTable, DamagedFilesLeaveAnEmptyTable) {
  const struct {
    const char* what;
    const char* bytes;  // null: no file at all
  } rows[] = {
      {"missing file", nullptr},
      {"empty file", ""},
      {"not a property list", "Adobe Systems, ASPF\n"},
      {"cut-off document", "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><dict><key>Foundry"},
      {"root is a dictionary", "<plist version=\"1.0\"><dict><key>FoundryName</key><string>Adobe</string></dict></plist>"},
      {"root is a string", "<plist version=\"1.0\"><string>adobe</string></plist>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    ScratchDir dir;
    if (row.bytes) test::writeFile(dir.file("t.plist"), row.bytes);
    CFoundryNameTable table;
    EXPECT_FALSE(table.LoadTable(dir.file("t.plist")));
    EXPECT_FALSE(table.IsLoaded());
    UxString found;
    EXPECT_FALSE(table.IsKnownCreatorCode(tag("ASPF"), &found));
    EXPECT_FALSE(table.ContainsKnownFoundryName("Copyright Adobe Systems", &found, nullptr));
    EXPECT_EQ(std::string(found), "");
    EXPECT_EQ(table.GetCanonicalFoundryName(tag("ASPF"), "adobe"), "--");
  }
}

TEST(FoundryNameTable, ReloadingABrokenFileDropsTheOldTable) {
  ScratchDir dir;
  test::writeFile(dir.file("good.plist"), plistDocument("<array>" + entry("Adobe", "adobe") + "</array>"));
  test::writeFile(dir.file("bad.plist"), "garbage");
  CFoundryNameTable table;
  ASSERT_TRUE(table.LoadTable(dir.file("good.plist")));
  EXPECT_FALSE(table.LoadTable(dir.file("bad.plist")));
  EXPECT_FALSE(table.ContainsKnownFoundryName("adobe", nullptr, nullptr));
}

TEST(FoundryNameTable, QuestionableCreatorCodes) {
  const struct {
    uint32_t code;
    bool questionable;
  } rows[] = {
      {tag("ACP1"), true},  {tag("ACSC"), true},  {tag("ACp1"), true},  {tag("FRet"), true},
      {tag("FRew"), true},  {tag("acp1"), false}, {tag("ACP2"), false}, {tag("FRET"), false},
      {tag("ASPF"), false}, {0, false},           {0xFFFFFFFF, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code);
    EXPECT_EQ(CFoundryNameTable::IsQuestionableCreatorCode(row.code), row.questionable);
  }
}

TEST(FoundryNameTable, CreatorCodeLookup) {
  // 'A\xA9B1' is Mac Roman for "A©B1"; the table holds its UTF-8 form.
  TableFile table("<string>not a dictionary</string>" +
                  entry("Nameless", nullptr, {}) +
                  "<dict><key>FoundryName</key><string>Wrong type</string><key>CreatorCode</key><string>BITS</string></dict>" +
                  "<dict><key>FoundryName</key><integer>7</integer><key>CreatorCode</key><array><string>LINO</string></array></dict>" +
                  entry(nullptr, "x", {"ADBE"}) + entry("Adobe", "adobe", {"", "ASPF", "ADBE"}) +
                  entry("Linotype", "linotype", {"LINO"}) + entry("Second", "second", {"ASPF", "BITS"}) +
                  entry("Copyright sign", "copysign", {"A\xC2\xA9" "B1"}));
  const struct {
    const char* what;
    uint32_t code;
    const char* before;
    bool known;
    const char* after;
  } rows[] = {
      {"first of two entries wins", tag("ASPF"), "", true, "Adobe"},
      {"entry without a name passes the code on", tag("ADBE"), "", true, "Adobe"},
      {"integer name counts as absent", tag("LINO"), "", true, "Linotype"},
      {"codes given as a plain string are not a list", tag("BITS"), "", true, "Second"},
      {"comparison keeps case", tag("aspf"), "", false, ""},
      {"unlisted code", tag("MTSY"), "", false, ""},
      {"code 0 is never known", 0, "", false, ""},
      {"an output already filled stops the search", tag("ASPF"), "Bitstream", false, "Bitstream"},
      {"Mac Roman byte in the code", 0x41A94231, "", true, "Copyright sign"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString foundry = row.before;
    EXPECT_EQ(table->IsKnownCreatorCode(row.code, &foundry), row.known);
    EXPECT_EQ(std::string(foundry), row.after);
  }
  EXPECT_TRUE(table->IsKnownCreatorCode(tag("ASPF"), nullptr));
}

TEST(FoundryNameTable, PatternLookup) {
  TableFile table(entry("Early default", "") + entry("Bitstream", "bitstream") + entry(nullptr, "bigelow") +
                  entry("Capitals", "Monotype") + entry("Late default", "") + entry("B&amp;H", "bigelow") +
                  entry("URW++", "urw") + entry("Trailing default", ""));
  const struct {
    const char* what;
    const char* text;
    bool found;
    const char* foundry;
    const char* fallback;  // default entries passed before the search stopped
  } rows[] = {
      {"first entry that matches", "Copyright (c) 2003 by Bitstream, Inc.", true, "Bitstream", "Early default"},
      {"text in capitals", "BITSTREAM VERA", true, "Bitstream", "Early default"},
      {"entry without a name is passed over", "Bigelow & Holmes", true, "B&H", "Late default"},
      {"pattern with a capital never matches", "Monotype Imaging Inc.", false, "", "Trailing default"},
      {"plain substring anywhere", "(URW)++ Design & Development", true, "URW++", "Late default"},
      {"nothing matches: last default seen", "Some Person", false, "", "Trailing default"},
      {"empty text", "", false, "", "Trailing default"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString foundry, fallback;
    EXPECT_EQ(table->ContainsKnownFoundryName(row.text, &foundry, &fallback), row.found);
    EXPECT_EQ(std::string(foundry), row.foundry);
    EXPECT_EQ(std::string(fallback), row.fallback);
    EXPECT_EQ(table->ContainsKnownFoundryName(row.text, nullptr, nullptr), row.found);
  }
}

TEST(FoundryNameTable, CanonicalName) {
  TableFile withDefault(entry("Adobe", "adobe", {"ASPF"}) + entry("Linotype", "linotype") + entry("Unlisted", ""));
  TableFile withoutDefault(entry("Adobe", "adobe", {"ASPF"}) + entry("Linotype", "linotype"));
  const struct {
    const char* what;
    uint32_t code;
    const char* text;
    const char* withDefault;
    const char* withoutDefault;
  } rows[] = {
      {"creator code before text", tag("ASPF"), "Linotype AG", "Adobe", "Adobe"},
      {"text when the code is unknown", tag("XXXX"), "Copyright Linotype AG", "Linotype", "Linotype"},
      {"text when the code is 0", 0, "Adobe Systems", "Adobe", "Adobe"},
      {"nothing known", tag("XXXX"), "Anonymous", "Unlisted", "--"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(withDefault->GetCanonicalFoundryName(row.code, row.text), row.withDefault);
    EXPECT_EQ(withoutDefault->GetCanonicalFoundryName(row.code, row.text), row.withoutDefault);
  }
}

// The foundry texts of fonts from Debian packages, as fontTools reads them (manufacturer name,
// else copyright; Type 1: /Notice), with the foundry that made each font.
TEST(FoundryNameTable, ShippedTableNamesTheMakersOfRealFonts) {
  CFoundryNameTable table;
  ASSERT_TRUE(table.LoadTable());
  const struct {
    const char* font;
    const char* text;
    const char* foundry;
  } rows[] = {
      {"DejaVuSans-Bold.ttf", "DejaVu fonts team", "DejaVu"},
      {"DejaVuMathTeXGyre.ttf",
       "Copyright (c) 2003 by Bitstream, Inc. All Rights Reserved. DejaVu changes are in public domain, math "
       "extensions are in public domain.",
       "DejaVu"},
      {"C059-BdIta.pfb", "(URW)++,Copyright 2014 by (URW)++ Design & Development", "URW++"},
      {"StandardSymbolsPS.otf", "URW Software, Copyright 2015 by URW", "URW++"},
      {"Cantarell-Bold.otf",
       "Copyright 2019 The Cantarell Project Authors (https://gitlab.gnome.org/GNOME/cantarell-fonts)",
       "Cantarell Project"},
      {"Inconsolata.otf",
       "Created by Raph Levien using his own tools and FontForge. Copyright 2006 Raph Levien. Released under the "
       "SIL Open Font License, http://scripts.sil.org",
       "Raph Levien"},
      {"VeraMono.ttf (fonts-bitstream-vera)", "Copyright (c) 2003 by Bitstream, Inc. All Rights Reserved.", "Bitstream"},
      {"LiberationMono-Regular.ttf", "Ascender Corporation", "Ascender"},
      {"NotoSans-Regular.ttf", "Monotype Imaging Inc.", "Monotype"},
      {"texgyrepagella-regular.otf",
       "Copyright 2006-2018 for TeX Gyre extensions by B. Jackowski, J.M. Nowacki, et al. (on behalf of TeX USERS "
       "GROUPS).",
       "GUST e-foundry"},
      {"CharisSIL-Regular.ttf", "SIL International", "SIL International"},
      {"FreeSerif.ttf copyright",
       "Copyright 2002, 2003, 2005, 2008, 2009, 2010, 2012 GNU Freefont contributors.", "GNU FreeFont"},
      {"Kinnari.otf",
       "Copyright (C) 1999 Db Type. All Rights Reserved. Copyright (C) 2007 National Electronics and Computer "
       "Technology Center.",
       "Db Type"},
      {"TlwgMono.ttf", "TLWG", "Thai Linux Working Group"},
      {"ipag.ttf",
       "Copyright(c) Information-technology Promotion Agency, Japan (IPA), 2003-2011.", "IPA"},
      {"fonts-paratype", "ParaType Ltd", "ParaType"},
      {"fonts-ubuntu", "Dalton Maag Ltd", "Dalton Maag"},
      {"Hack-Regular.ttf", "Source Foundry", "Source Foundry"},
      {"OpenSans-Regular.ttf", "Ascender Corporation", "Ascender"},
      {"Lato-Regular.ttf", "tyPoland Lukasz Dziedzic", "Typoland"},
      {"cmr10.ttf (fonts-lyx)",
       "Copyright (C) 1994, Basil K. Malyshev. All Rights Reserved.012BaKoMa Fonts Collection, Level-B.", "BaKoMa"},
      {"STIXGeneral.otf",
       "Copyright (c) 2001-2011 by the STI Pub Companies, consisting of the American Chemical Society, the "
       "American Institute of Physics, the American Mathematical Society",
       "STIX Fonts Project"},
      {"Adobe Type 1 notice", "Copyright (c) 1985, 1987, 1989, 1990 Adobe Systems Incorporated.", "Adobe"},
      {"Linotype Type 1 notice", "Copyright (c) 1988 Linotype AG and/or its subsidiaries.", "Linotype"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.font);
    UxString foundry;
    EXPECT_TRUE(table.ContainsKnownFoundryName(row.text, &foundry, nullptr));
    EXPECT_EQ(std::string(foundry), row.foundry);
  }
  UxString none;
  EXPECT_FALSE(table.ContainsKnownFoundryName("Created by Keshikan with FontForge 2.0", &none, nullptr));
  EXPECT_EQ(table.GetCanonicalFoundryName(tag("ASPF"), "Bitstream"), "Adobe");
}

// Every entry can match something and names its foundry; the table is not a sample.
TEST(FoundryNameTable, ShippedTableIsWellFormed) {
  const std::string text = test::readFile(std::string(TYPEPRINT_SOURCE_DIR) + "/data/FoundryNameTable.plist");
  CFoundryNameTable table;
  ASSERT_TRUE(table.LoadTable(std::string(TYPEPRINT_SOURCE_DIR) + "/data/FoundryNameTable.plist"));
  // A pattern with a capital can never match the lower-cased text; the file is plain text, so
  // the check reads it directly.
  std::set<std::string> names;
  size_t at = 0;
  while ((at = text.find("<key>Pattern</key>", at)) != std::string::npos) {
    size_t open = text.find("<string>", at) + 8, close = text.find("</string>", open);
    const std::string pattern = text.substr(open, close - open);
    SCOPED_TRACE(pattern);
    EXPECT_FALSE(pattern.empty()) << "the shipped table has no default entry";
    UxString lowered = pattern;
    EXPECT_EQ(lowered.ToLower(), pattern);
    at = close;
  }
  at = 0;
  while ((at = text.find("<key>FoundryName</key>", at)) != std::string::npos) {
    size_t open = text.find("<string>", at) + 8, close = text.find("</string>", open);
    names.insert(text.substr(open, close - open));
    at = close;
  }
  EXPECT_GE(names.size(), 150u);
  // Every canonical name reads back as itself, so foundries survive the exchange forms.
  std::optional<PlistValue> root =
      parsePropertyList(ByteSpan(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  ASSERT_TRUE(root && root->is(PlistValue::Type::Array));
  for (const PlistValue& entry : root->asArray()) {
    const PlistValue* value = entry.find("FoundryName");
    if (!value) continue;
    const std::string& name = value->asString();
    SCOPED_TRACE(name);
    UxString found;
    EXPECT_TRUE(table.ContainsKnownFoundryName(name, &found, nullptr));
    EXPECT_EQ(std::string(found), name);
  }
}

}  // namespace
}  // namespace typeprint
