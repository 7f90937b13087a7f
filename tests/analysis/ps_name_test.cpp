#include "analysis/ps_name.h"

#include <gtest/gtest.h>

namespace typeprint {
namespace {

using Level = GFontToolUtils::EMatchLevel;

TEST(PsName, MatchesAtThreeLevels) {
  const struct {
    std::string a, b;
    bool exact, alphanumeric, toSecondHyphen;
  } rows[] = {
      {"Sample-Bold", "Sample-Bold", true, true, true},
      {"Sample-Bold", "SampleBold", false, true, true},
      {"Sample-Bold", "sample-bold", false, false, false},
      {"Sample-Bold-SC", "Sample-Bold-OsF", false, false, true},
      {"Sample_Bold", "Sample.Bold", false, true, true},
      {"", "", true, true, true},
      {"", "-_.()", false, true, true},
      {"Sample-Bold-SC", "SampleBold", false, false, true},
      {"Sample-Bold-SC", "Sample-Black-SC", false, false, false},
      {"A-B-C", "AB-D", false, false, false},  // "AB" versus "ABD": the second hyphen of AB-D is missing
      {"Caf\xC3\xA9", "Caf", false, true, true},  // bytes of 0x80 and above are not letters in the C locale
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.a + " | " + row.b);
    EXPECT_EQ(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.b, Level(1)), row.exact);
    EXPECT_EQ(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.b, Level(2)), row.alphanumeric);
    EXPECT_EQ(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.b, Level(3)), row.toSecondHyphen);
    EXPECT_EQ(GFontToolUtils::DoPostScriptNamesMatch(row.a, row.b, Level(0)), row.toSecondHyphen);
    EXPECT_EQ(GFontToolUtils::DoPostScriptNamesMatch(row.b, row.a, Level(3)), row.toSecondHyphen);
  }
}

}  // namespace
}  // namespace typeprint
