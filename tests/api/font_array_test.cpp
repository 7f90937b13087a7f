// The record and array as a caller sees them through the C interface: matching, duplicate
// removal, the FOND lookup and the index, gate and out-string rules.
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "api/font_specifier.h"
#include "typeprint.h"

namespace {

using Record = TP_FontSpecifier;

Record face(const char* psName, int32_t style, int32_t firstRes, uint32_t mask = TP_ATTR_ALL) {
  Record s;
  s.postScriptName = psName;
  s.style = style;
  s.firstFontResID = firstRes;
  s.attributes = mask;
  return s;
}

Record named(Record s, const std::string& psName) {
  s.postScriptName = psName;
  return s;
}

Record complete() {
  Record s = face("Garamond-Bold", 0, 128);
  s.kindName = "PostScript";
  s.familyName = "Garamond";
  s.foundryName = "Adobe";
  s.version = "001.002";
  s.outlineFilePath = "/fonts/GaramBol";
  s.kerningChecksum = 0x1234;
  s.outlineFileSize = 5000;
  return s;
}

// Each row compares a complete record with a copy of itself, changed as the row says.
TEST(FontSpecifier, CopiesMatchAndDiffer) {
  const struct { const char* what; void (*change)(Record&, Record&); uint32_t matching, differing; } rows[] = {
      {"identical copy", [](Record&, Record&) {}, 0x303F, 0},
      {"one version empty", [](Record& a, Record&) { a.version.clear(); }, 0x3037, 0},
      {"family differs in case only", [](Record&, Record& b) { b.familyName = "GARAMOND"; }, 0x303F, 0x1000},
      {"both empty match", [](Record& a, Record& b) { a.foundryName.clear(); b.foundryName.clear(); }, 0x303F, 0},
      {"zero numbers never match", [](Record& a, Record& b) { a.kerningChecksum = b.kerningChecksum = 0; }, 0x302F, 0},
      {"different sizes", [](Record&, Record& b) { b.outlineFileSize = 4; }, 0x301F, 0x20},
      {"bit off one side", [](Record& a, Record& b) { a.attributes &= ~TP_ATTR_VERSION; b.version = "2"; }, 0x3037, 0},
      {"checksums take no part", [](Record& a, Record&) { a.typeprintChecksum = 1; }, 0x303F, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Record a = complete();
    Record b = a;
    row.change(a, b);
    EXPECT_EQ(a.MatchingAttributes(b), row.matching);
    EXPECT_EQ(a.DifferingAttributes(b), row.differing);
  }
}

// One record per name (compared without case), in order of first appearance; a later record of
// lower style replaces the first only when it comes from a real font resource. Kept: name/style/resource.
TEST(FontArray, RemoveDupsKeepsLowestStyleFromARealResource) {
  const struct { const char* what; std::vector<Record> faces; const char* kept; } rows[] = {
      {"lower styles replace in place",
       {face("A", 2, -1), face("B", 0, 1), face("A", 0, 128), face("A", 1, 128), face("b", 0, 1)}, "A/0/128 B/0/1 "},
      {"resource 0 cannot replace, empty names are one name",
       {face("A", 3, 5), face("A", 1, 0), face("A", 2, 7), face("", 0, 1), face("", 0, 2)}, "A/2/7 /0/1 "},
      {"a name ends at its first zero byte, as strcasecmp reads it",
       {named(face("", 3, 5), std::string("a\0x", 3)), face("A", 1, 2), face("B", 0, 1)}, "A/1/2 B/0/1 "},
      {"the scan goes on from each new choice", {face("A", 5, 1), face("A", 3, 1), face("A", 4, 1), face("A", 1, 1)},
       "A/1/1 "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TP_FontArray array{row.faces};
    array.RemoveDups();
    std::string kept;
    for (const Record& s : array.specifiers)
      kept += std::string(s.postScriptName) + "/" + std::to_string(s.style) + "/" +
              std::to_string(s.firstFontResID) + " ";
    EXPECT_EQ(kept, row.kept);
  }
}

// The C interface over an array built in place.
class CInterface : public ::testing::Test {
 protected:
  void SetUp() override {
    Record a = complete(), b = face("Other", 0, 1, TP_ATTR_POSTSCRIPT_NAME);
    a.style = 1;
    a.fondResID = b.fondResID = 300;
    array_->append(a);
    array_->append(b);
  }
  void TearDown() override { EXPECT_EQ(TP_SpecifierFree(array_), TP_STATUS_OK); }
  TP_FontArray* array_ = new TP_FontArray;
};

TEST_F(CInterface, OutStringRule) {
  // "Garamond-Bold" is 13 bytes; below 1 nothing is written, not even a terminator.
  const struct { int32_t size; const char* expected; } rows[] = {
      {0, "#"}, {1, ""}, {13, "Garamond-Bol"}, {14, "Garamond-Bold"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.size);
    char buffer[32];
    std::memset(buffer, '#', sizeof buffer);
    buffer[1] = '\0';
    EXPECT_EQ(TP_GetPostScriptName(array_, 0, buffer, row.size), TP_STATUS_OK);
    EXPECT_STREQ(buffer, row.expected);
  }
}

// Pointers (1), then the index (4), then the attribute gate (5); the kind name and the Windows
// multiple-master name break that order on purpose.
TEST_F(CInterface, StatusOrderOfGetters) {
  char buffer[32];
  uint32_t value = 0, major = 0, minor = 0;
  EXPECT_EQ(TP_GetFontCount(array_, &value), TP_STATUS_OK);
  EXPECT_EQ(value, 2u);
  EXPECT_EQ(TP_GetFontCount(array_, nullptr), TP_STATUS_FAILED);
  EXPECT_EQ(TP_SpecifierFree(nullptr), TP_STATUS_FAILED);
  TP_GetTypeprintVersion(nullptr, &minor);  // does nothing
  TP_GetTypeprintVersion(&major, &minor);
  EXPECT_EQ(std::make_pair(major, minor), std::make_pair(1u, 4u));
  EXPECT_EQ(TP_GetFamilyName(nullptr, 0, buffer, 32), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetFamilyName(array_, 0, nullptr, 32), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetFamilyName(array_, 2, buffer, 32), TP_STATUS_RANGE);
  EXPECT_EQ(TP_GetFamilyName(array_, 1, buffer, 32), TP_STATUS_NOT_COLLECTED);
  EXPECT_EQ(TP_GetOutlineFileSize(array_, 0, nullptr), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetKerningChecksum(array_, 9, &value), TP_STATUS_RANGE);
  EXPECT_EQ(TP_GetKerningChecksum(array_, 1, &value), TP_STATUS_NOT_COLLECTED);
  try {
    TP_GetKindName(array_, 2, buffer, 32);
    ADD_FAILURE() << "no exception";
  } catch (const std::out_of_range& e) {
    EXPECT_NE(std::string(e.what()).find("vector::_M_range_check"), std::string::npos);
  }
  EXPECT_EQ(TP_GetWindowsMMFile(array_, 2, buffer, 32), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetWindowsMMFile(array_, 1, buffer, 32), TP_STATUS_NOT_COLLECTED);
  EXPECT_EQ(TP_GetWindowsMMFile(array_, 0, buffer, 32), TP_STATUS_FAILED);  // not a .pfb printer file
  array_->specifiers[0].outlineFilePath = "/fonts/MyriaMM.PFB";
  EXPECT_EQ(TP_GetWindowsMMFile(array_, 0, buffer, 32), TP_STATUS_OK);
  EXPECT_STREQ(buffer, "/fonts/MyriaMM.mmm");
}

TEST_F(CInterface, VersionIsTrimmedToItsNumber) {
  const struct { const char* stored; const char* shown; } rows[] = {
      {"Version 2.015;PS 2.000", "2.015"}, {"v1.2b", "1.2"}, {"1-2.3 beta", "1-2.3"}, {"no digits", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored);
    array_->specifiers[0].version = row.stored;
    char buffer[32] = "#";
    EXPECT_EQ(TP_GetVersion(array_, 0, buffer, 32), TP_STATUS_OK);
    EXPECT_STREQ(buffer, row.shown);
  }
}

TEST_F(CInterface, WindowsFullNameFallsBackToTheFullNameAndItsGate) {
  char buffer[32];
  Record& face = array_->specifiers[0];
  face.fullName = "Garamond Bold";
  EXPECT_EQ(TP_GetWindowsFullName(array_, 0, buffer, 32), TP_STATUS_OK);
  EXPECT_STREQ(buffer, "Garamond Bold");
  face.attributes &= ~TP_ATTR_FULL_NAME;  // the fallback answers with the full name's gate
  EXPECT_EQ(TP_GetWindowsFullName(array_, 0, buffer, 32), TP_STATUS_NOT_COLLECTED);
  face.windowsFullName = "Garamond Win";
  EXPECT_EQ(TP_GetWindowsFullName(array_, 0, buffer, 32), TP_STATUS_OK);
  EXPECT_STREQ(buffer, "Garamond Win");
}

TEST_F(CInterface, MatchAndFondLookup) {
  uint32_t matching = 7, differing = 7, index = 7;
  EXPECT_EQ(TP_Match(array_, 0, array_, 1, &matching, &differing), TP_STATUS_OK);
  EXPECT_EQ(matching, 0u);
  EXPECT_EQ(differing, uint32_t(TP_ATTR_POSTSCRIPT_NAME));
  EXPECT_EQ(TP_Match(array_, 0, array_, 5, &matching, &differing), TP_STATUS_RANGE);
  EXPECT_EQ(matching | differing, 0u);  // both zeroed before the index check
  EXPECT_EQ(TP_Match(nullptr, 0, array_, 0, &matching, &differing), TP_STATUS_FAILED);
  // The first record of family 300 in the asked style; the index is zeroed first, even on failure.
  EXPECT_EQ(TP_GetFontIndexForFONDResourceID(array_, 300, 0, &index), TP_STATUS_OK);
  EXPECT_EQ(index, 1u);
  EXPECT_EQ(TP_GetFontIndexForFONDResourceID(array_, 300, 1, &index), TP_STATUS_OK);
  EXPECT_EQ(index, 0u);
  for (TP_FontArray* array : {array_, static_cast<TP_FontArray*>(nullptr)}) {
    index = 7;
    EXPECT_EQ(TP_GetFontIndexForFONDResourceID(array, 301, 0, &index), TP_STATUS_FAILED);
    EXPECT_EQ(index, 0u);
  }
}

}  // namespace
