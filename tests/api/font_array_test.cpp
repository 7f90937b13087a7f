// The record and array as a caller sees them through the C interface: matching, duplicate
// removal, the FOND lookup and the index, gate and out-string rules.
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "api/font_specifier.h"
#include "typeprint.h"

namespace {

TP_FontSpecifier face(const char* psName, int32_t style, int32_t firstRes, uint32_t mask = TP_ATTR_ALL) {
  TP_FontSpecifier s;
  s.postScriptName = psName;
  s.style = style;
  s.firstFontResID = firstRes;
  s.attributes = mask;
  return s;
}

TP_FontSpecifier complete() {
  TP_FontSpecifier s = face("Garamond-Bold", 0, 128);
  s.kindName = "PostScript";
  s.familyName = "Garamond";
  s.foundryName = "Adobe";
  s.version = "001.002";
  s.outlineFilePath = "/fonts/GaramBol";
  s.kerningChecksum = 0x1234;
  s.outlineFileSize = 5000;
  return s;
}

TEST(FontSpecifier, DefaultsAndCopies) {
  TP_FontSpecifier s;
  EXPECT_EQ(s.style, -1);
  EXPECT_EQ(s.firstFontResID, -1);
  EXPECT_EQ(s.fondResID, -1);
  EXPECT_EQ(s.attributes, 0u);
  EXPECT_TRUE(s.kindName.empty());
  TP_FontSpecifier c = complete();
  TP_FontSpecifier copy = c;
  EXPECT_EQ(std::string(copy.outlineFilePath), "/fonts/GaramBol");
  EXPECT_EQ(copy.outlineFileSize, 5000u);
  EXPECT_EQ(copy.MatchingAttributes(c), 0x303Fu);
}

TEST(FontSpecifier, MatchingAndDiffering) {
  const struct {
    const char* what;
    void (*change)(TP_FontSpecifier&, TP_FontSpecifier&);
    uint32_t matching, differing;
  } rows[] = {
      {"identical", [](TP_FontSpecifier&, TP_FontSpecifier&) {}, 0x303F, 0},
      {"one version empty", [](TP_FontSpecifier& a, TP_FontSpecifier&) { a.version.clear(); }, 0x3037, 0},
      {"family differs in case only",
       [](TP_FontSpecifier&, TP_FontSpecifier& b) { b.familyName = "GARAMOND"; }, 0x303F, 0x1000},
      {"both empty strings match", [](TP_FontSpecifier& a, TP_FontSpecifier& b) { a.foundryName.clear(); b.foundryName.clear(); },
       0x303F, 0},
      {"zero numbers never match",
       [](TP_FontSpecifier& a, TP_FontSpecifier& b) { a.kerningChecksum = 0; b.kerningChecksum = 0; }, 0x302F, 0},
      {"different sizes", [](TP_FontSpecifier&, TP_FontSpecifier& b) { b.outlineFileSize = 4; }, 0x301F, 0x20},
      {"bit missing on one side",
       [](TP_FontSpecifier& a, TP_FontSpecifier& b) { a.attributes &= ~TP_ATTR_VERSION; b.version = "2"; }, 0x3037, 0},
      {"checksums take no part",
       [](TP_FontSpecifier& a, TP_FontSpecifier& b) { a.typeprintChecksum = 1; b.typeprintChecksum = 2; }, 0x303F, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TP_FontSpecifier a = complete(), b = complete();
    row.change(a, b);
    EXPECT_EQ(a.MatchingAttributes(b), row.matching);
    EXPECT_EQ(a.DifferingAttributes(b), row.differing);
  }
}

TEST(FontArray, RemoveDupsKeepsLowestRealStyleInFirstPlace) {
  TP_FontArray array;
  array.append(face("A", 2, -1));
  array.append(face("B", 0, 1));
  array.append(face("A", 0, 128));
  array.append(face("A", 1, 128));
  array.append(face("b", 0, 1));  // names compare without case
  array.RemoveDups();
  ASSERT_EQ(array.count(), 2u);
  EXPECT_EQ(std::string(array.at(0).postScriptName), "A");
  EXPECT_EQ(array.at(0).style, 0);
  EXPECT_EQ(std::string(array.at(1).postScriptName), "B");
}

TEST(FontArray, RemoveDupsIgnoresCandidatesWithoutResource) {
  TP_FontArray array;
  array.append(face("A", 3, 5));
  array.append(face("A", 1, 0));   // no real first resource: cannot replace
  array.append(face("A", 2, 7));
  array.append(face("", 0, 1));
  array.append(face("", 0, 2));    // empty names count as one name
  array.RemoveDups();
  ASSERT_EQ(array.count(), 2u);
  EXPECT_EQ(array.at(0).style, 2);
  EXPECT_EQ(array.at(1).firstFontResID, 1);
}

TEST(FontArray, AtThrowsWithStandardMessage) {
  TP_FontArray array;
  array.append(face("A", 0, 1));
  try {
    array.at(1);
    FAIL() << "no exception";
  } catch (const std::out_of_range& e) {
    EXPECT_NE(std::string(e.what()).find("_M_range_check"), std::string::npos);
  }
}

// The C interface over an array built in place.
class CInterface : public ::testing::Test {
 protected:
  void SetUp() override {
    array_ = new TP_FontArray;
    TP_FontSpecifier a = complete();
    a.fondResID = 300;
    a.style = 1;
    a.fullName = "Garamond Bold";
    a.version = "Version 2.015;PS 2.000";
    array_->append(a);
    TP_FontSpecifier b = face("Other", 0, 1, TP_ATTR_POSTSCRIPT_NAME);
    b.fondResID = 300;
    b.fullName = "Other Full";
    array_->append(b);
  }
  void TearDown() override { EXPECT_EQ(TP_SpecifierFree(array_), TP_STATUS_OK); }
  TP_FontArray* array_ = nullptr;
};

TEST_F(CInterface, CountVersionAndFree) {
  uint32_t count = 0, major = 0, minor = 0;
  EXPECT_EQ(TP_GetFontCount(array_, &count), TP_STATUS_OK);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(TP_GetFontCount(nullptr, &count), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetFontCount(array_, nullptr), TP_STATUS_FAILED);
  EXPECT_EQ(TP_SpecifierFree(nullptr), TP_STATUS_FAILED);
  TP_GetTypeprintVersion(&major, &minor);
  EXPECT_EQ(major, 1u);
  EXPECT_EQ(minor, 4u);
  TP_GetTypeprintVersion(nullptr, &minor);  // does nothing
}

TEST_F(CInterface, OutStringRule) {
  // "Garamond-Bold" is 13 bytes.
  const struct { int32_t size; const char* expected; bool untouched; } rows[] = {
      {-1, "", true}, {0, "", true}, {1, "", false}, {5, "Gara", false},
      {13, "Garamond-Bol", false}, {14, "Garamond-Bold", false}, {64, "Garamond-Bold", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.size);
    char buffer[64];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(TP_GetPostScriptName(array_, 0, buffer, row.size), TP_STATUS_OK);
    if (row.untouched) {
      EXPECT_EQ(buffer[0], '#');
    } else {
      EXPECT_STREQ(buffer, row.expected);
    }
  }
}

TEST_F(CInterface, StatusOrderOfGetters) {
  char buffer[32];
  uint32_t value = 0;
  EXPECT_EQ(TP_GetFamilyName(nullptr, 0, buffer, 32), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetFamilyName(array_, 0, nullptr, 32), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetFamilyName(array_, 2, buffer, 32), TP_STATUS_RANGE);
  EXPECT_EQ(TP_GetFamilyName(array_, 1, buffer, 32), TP_STATUS_NOT_COLLECTED);
  EXPECT_EQ(TP_GetOutlineFileSize(array_, 0, &value), TP_STATUS_OK);
  EXPECT_EQ(value, 5000u);
  EXPECT_EQ(TP_GetOutlineFileSize(array_, 0, nullptr), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetKerningChecksum(array_, 9, &value), TP_STATUS_RANGE);
  EXPECT_EQ(TP_GetKerningChecksum(array_, 1, &value), TP_STATUS_NOT_COLLECTED);
  EXPECT_THROW(TP_GetKindName(array_, 2, buffer, 32), std::out_of_range);
  EXPECT_EQ(TP_GetWindowsMMFile(array_, 2, buffer, 32), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetWindowsMMFile(array_, 1, buffer, 32), TP_STATUS_NOT_COLLECTED);
}

TEST_F(CInterface, VersionIsTrimmedToItsNumber) {
  const struct { const char* stored; const char* shown; } rows[] = {
      {"Version 2.015;PS 2.000", "2.015"}, {"001.000", "001.000"}, {"v1.2b", "1.2"},
      {"no digits", ""}, {"1-2.3 beta", "1-2.3"}, {"", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored);
    array_->specifiers[0].version = row.stored;
    char buffer[32] = "#";
    EXPECT_EQ(TP_GetVersion(array_, 0, buffer, 32), TP_STATUS_OK);
    EXPECT_STREQ(buffer, row.shown);
  }
}

TEST_F(CInterface, WindowsFullNameFallsBackToFullName) {
  char buffer[32];
  EXPECT_EQ(TP_GetWindowsFullName(array_, 0, buffer, 32), TP_STATUS_OK);
  EXPECT_STREQ(buffer, "Garamond Bold");
  array_->specifiers[0].attributes &= ~TP_ATTR_FULL_NAME;
  EXPECT_EQ(TP_GetWindowsFullName(array_, 0, buffer, 32), TP_STATUS_NOT_COLLECTED);
  array_->specifiers[0].windowsFullName = "Garamond Win";
  EXPECT_EQ(TP_GetWindowsFullName(array_, 0, buffer, 32), TP_STATUS_OK);
  EXPECT_STREQ(buffer, "Garamond Win");
}

TEST_F(CInterface, MatchAndFondLookup) {
  uint32_t matching = 7, differing = 7, index = 7;
  EXPECT_EQ(TP_Match(array_, 0, array_, 0, &matching, &differing), TP_STATUS_OK);
  EXPECT_EQ(matching, 0x303Fu);
  EXPECT_EQ(differing, 0u);
  EXPECT_EQ(TP_Match(array_, 0, array_, 5, &matching, &differing), TP_STATUS_RANGE);
  EXPECT_EQ(matching, 0u);
  EXPECT_EQ(differing, 0u);
  EXPECT_EQ(TP_Match(nullptr, 0, array_, 0, &matching, &differing), TP_STATUS_FAILED);

  EXPECT_EQ(TP_GetFontIndexForFONDResourceID(array_, 300, 0, &index), TP_STATUS_OK);
  EXPECT_EQ(index, 1u);
  EXPECT_EQ(TP_GetFontIndexForFONDResourceID(array_, 300, 1, &index), TP_STATUS_OK);
  EXPECT_EQ(index, 0u);
  index = 7;
  EXPECT_EQ(TP_GetFontIndexForFONDResourceID(array_, 301, 0, &index), TP_STATUS_FAILED);
  EXPECT_EQ(index, 0u);
  index = 7;
  EXPECT_EQ(TP_GetFontIndexForFONDResourceID(nullptr, 300, 0, &index), TP_STATUS_FAILED);
  EXPECT_EQ(index, 0u);
}

}  // namespace
