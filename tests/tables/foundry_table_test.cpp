// The foundry name table from small broken or odd tables, and from the shipped table for real notices.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "base/be_reader.h"
#include "platform/linux/plist_io.h"
#include "support/test_paths.h"
#include "tables/foundry_table.h"

namespace typeprint {
namespace {

using test::ScratchDir;

// An entry: name (omitted when null), pattern (omitted when null), creator codes.
std::string entry(const char* name, const char* pattern, std::initializer_list<const char*> codes = {}) {
  std::string s = "<dict>";
  if (name) s += "<key>FoundryName</key><string>" + std::string(name) + "</string>";
  if (pattern) s += "<key>Pattern</key><string>" + std::string(pattern) + "</string>";
  if (codes.size()) s += "<key>CreatorCode</key><array>";
  for (const char* code : codes) s += "<string>" + std::string(code) + "</string>";
  return s + (codes.size() ? "</array></dict>" : "</dict>");
}

// A table loaded from a file holding `entries` in the root array.
CFoundryNameTable table(const std::string& entries) {
  ScratchDir dir;
  test::writeFile(dir.file("t.plist"), "<plist version=\"1.0\"><array>" + entries + "</array></plist>");
  CFoundryNameTable table;
  EXPECT_TRUE(table.LoadTable(dir.file("t.plist")));
  return table;
}

TEST(FoundryNameTable, DamagedFilesLeaveAnEmptyTable) {
  const struct { const char* what; const char* bytes; } rows[] = {  // bytes null: no file at all
      {"missing file", nullptr},
      {"not a property list", "Adobe Systems, ASPF\n"},
      {"root is a dictionary", "<plist version=\"1.0\"><dict><key>Pattern</key><string>adobe</string></dict></plist>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    CFoundryNameTable loaded = table(entry("Adobe", "adobe", {"ASPF"}));
    ScratchDir dir;
    if (row.bytes) test::writeFile(dir.file("t.plist"), row.bytes);
    EXPECT_FALSE(loaded.LoadTable(dir.file("t.plist")));
    EXPECT_FALSE(loaded.IsLoaded()) << "a failed reload drops the old table";
    EXPECT_FALSE(loaded.ContainsKnownFoundryName("Copyright Adobe Systems", nullptr, nullptr));
    EXPECT_EQ(loaded.GetCanonicalFoundryName(tag("ASPF"), "adobe"), "--");
  }
}

TEST(FoundryNameTable, CreatorCodesThenPatternsThenTheLastDefault) {
  EXPECT_TRUE(CFoundryNameTable::IsQuestionableCreatorCode(tag("ACp1")));
  EXPECT_FALSE(CFoundryNameTable::IsQuestionableCreatorCode(tag("acp1")));
  // 'A\xA9B1' is Mac Roman for "A©B1"; the table holds its UTF-8 form.
  const CFoundryNameTable codes = table(
      "<string>not a dictionary</string>" + entry(nullptr, "bigelow", {"ADBE"}) + entry("Early default", "") +
      entry("Adobe", "adobe", {"", "ASPF", "ADBE"}) + entry("Second", "second", {"ASPF"}) + entry("Late default", "") +
      entry("B&amp;H", "bigelow") + entry("Copyright sign", "copysign", {"A\xC2\xA9" "B1"}));
  const struct { const char* what; uint32_t code; const char* before; bool known; const char* after; } rows[] = {
      {"first of two entries wins", tag("ASPF"), "", true, "Adobe"},
      {"entry without a name passes the code on", tag("ADBE"), "", true, "Adobe"},
      {"code 0 is never known", 0, "", false, ""},
      {"an output already filled stops the search", tag("ASPF"), "Bitstream", false, "Bitstream"},
      {"Mac Roman byte in the code", 0x41A94231, "", true, "Copyright sign"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString foundry = row.before;
    EXPECT_EQ(codes.IsKnownCreatorCode(row.code, &foundry), row.known);
    EXPECT_EQ(std::string(foundry), row.after);
  }
  const struct { const char *text, *foundry, *fallback; } texts[] = {
      {"ADOBE SYSTEMS", "Adobe", "Early default"},    // text lower-cased; defaults passed on the way
      {"Bigelow & Holmes", "B&H", "Late default"},    // an entry without a name is passed over
      {"Some Person", "", "Late default"},            // nothing matches: the last default seen
  };
  for (const auto& row : texts) {
    SCOPED_TRACE(row.text);
    UxString foundry, fallback;
    EXPECT_EQ(codes.ContainsKnownFoundryName(row.text, &foundry, &fallback), row.foundry[0] != '\0');
    EXPECT_EQ(std::string(foundry), row.foundry);
    EXPECT_EQ(std::string(fallback), row.fallback);
  }
  EXPECT_EQ(codes.GetCanonicalFoundryName(tag("ASPF"), "Bigelow"), "Adobe") << "the code comes first";
  EXPECT_EQ(codes.GetCanonicalFoundryName(tag("XXXX"), "Bigelow"), "B&H");
  EXPECT_EQ(codes.GetCanonicalFoundryName(0, "Anonymous"), "Late default");
}

// The foundry texts of fonts from Debian packages, as fontTools reads them (manufacturer name,
// else copyright; Type 1: /Notice), with the foundry that made each font.
TEST(FoundryNameTable, ShippedTableNamesTheMakersOfRealFontsAndIsWellFormed) {
  CFoundryNameTable shipped;
  ASSERT_TRUE(shipped.LoadTable());
  const struct { const char* font; const char* text; const char* foundry; } rows[] = {
      {"DejaVuSans-Bold.ttf", "DejaVu fonts team", "DejaVu"},
      {"DejaVuMathTeXGyre.ttf", "Copyright (c) 2003 by Bitstream, Inc. All Rights Reserved. DejaVu changes are in "
       "public domain, math extensions are in public domain.", "DejaVu"},
      {"C059-BdIta.pfb", "(URW)++,Copyright 2014 by (URW)++ Design & Development", "URW++"},
      {"Cantarell-Bold.otf", "Copyright 2019 The Cantarell Project Authors "
       "(https://gitlab.gnome.org/GNOME/cantarell-fonts)", "Cantarell Project"},
      {"ipag.ttf", "Copyright(c) Information-technology Promotion Agency, Japan (IPA), 2003-2011.", "IPA"},
      {"Linotype Type 1 notice", "Copyright (c) 1988 Linotype AG and/or its subsidiaries.", "Linotype"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.font);
    UxString foundry;
    EXPECT_TRUE(shipped.ContainsKnownFoundryName(row.text, &foundry, nullptr));
    EXPECT_EQ(std::string(foundry), row.foundry);
  }
  EXPECT_FALSE(shipped.ContainsKnownFoundryName("Created by Keshikan with FontForge 2.0", nullptr, nullptr));

  // Every pattern can match lower-cased text and every name reads back as itself; not a sample.
  const std::string text = test::readFile(std::string(TYPEPRINT_SOURCE_DIR) + "/data/FoundryNameTable.plist");
  auto root = parsePropertyList(ByteSpan(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  ASSERT_TRUE(root && root->is(PlistValue::Type::Array));
  std::set<std::string> names;
  for (const PlistValue& item : root->asArray()) {
    const PlistValue *pattern = item.find("Pattern"), *nameValue = item.find("FoundryName");
    ASSERT_TRUE(pattern && nameValue && !pattern->asString().empty()) << "no default entry, no nameless entry";
    const std::string name = nameValue->asString();
    UxString lowered = pattern->asString(), found;
    EXPECT_EQ(lowered.ToLower(), pattern->asString()) << name;
    EXPECT_TRUE(shipped.ContainsKnownFoundryName(name, &found, nullptr));
    EXPECT_EQ(std::string(found), name);
    names.insert(name);
  }
  EXPECT_GE(names.size(), 150u);
}

}  // namespace
}  // namespace typeprint
