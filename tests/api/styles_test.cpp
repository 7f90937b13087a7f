// TP_GetStyles on the shipped keyword table, PostScript name first, full name second. The expected
// styles are a typographer's reading of each name, not output of the library.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "typeprint.h"

namespace {

constexpr uint32_t kSlots = 8;
constexpr int32_t kSlotSize = 64;

TEST(GetStyles, RealFontNamesGiveTheirWeightWidthAndSlope) {
  const struct { const char *postScriptName, *fullName; std::multiset<std::string> styles; } rows[] = {
      // Installed under /usr/share/fonts (urw-base35, DejaVu, Cantarell) and Debian's font packages.
      {"C059-BdIta", "C059 Bold Italic", {"Bold", "Italic"}},
      {"C059-Roman", "C059 Roman", {"Roman"}},
      {"URWBookman-Demi", "URW Bookman Demi", {"Semibold"}},
      {"URWBookman-LightItalic", "URW Bookman Light Italic", {"Light", "Italic"}},
      {"URWGothic-Book", "URW Gothic Book", {"Book"}},
      {"URWGothic-DemiOblique", "URW Gothic Demi Oblique", {"Semibold", "Oblique"}},
      {"Z003-MediumItalic", "Z003 Medium Italic", {"Medium", "Italic"}},
      {"NimbusSansNarrow-BoldOblique", "Nimbus Sans Narrow Bold Oblique", {"Bold", "Narrow", "Oblique"}},
      {"NimbusMonoPS-Regular", "Nimbus Mono PS Regular", {"Regular"}},
      {"DejaVuSans-ExtraLight", "DejaVu Sans ExtraLight", {"Extra Light"}},
      {"DejaVuSansCondensed-BoldOblique", "DejaVu Sans Condensed Bold Oblique", {"Bold", "Condensed", "Oblique"}},
      {"DejaVuSansMono-Oblique", "DejaVu Sans Mono Oblique", {"Oblique"}},
      {"Cantarell-Thin", "Cantarell Thin", {"Thin"}},
      {"Cantarell-ExtraBold", "Cantarell Extra Bold", {"Extra Bold"}},
      {"TeXGyreHerosCondensed-BoldItalic", "TeX Gyre Heros Cn Bold Italic", {"Bold", "Condensed", "Italic"}},
      {"LiberationSerif-BoldItalic", "Liberation Serif Bold Italic", {"Bold", "Italic"}},
      {"EBGaramond12-AllSC", "EB Garamond 12 Regular All SmallCaps", {"Regular", "Small Caps"}},
      {"UbuntuCondensed-Regular", "Ubuntu Condensed", {"Regular", "Condensed"}},
      // Classic PostScript and desktop families.
      {"Times-Roman", "Times Roman", {"Roman"}},
      {"Helvetica-BoldOblique", "Helvetica Bold Oblique", {"Bold", "Oblique"}},
      {"Helvetica-Narrow-BoldOblique", "Helvetica Narrow Bold Oblique", {"Bold", "Narrow", "Oblique"}},
      {"AvantGarde-BookOblique", "ITC Avant Garde Gothic Book Oblique", {"Book", "Oblique"}},
      {"TimesNewRomanPS-BoldItalicMT", "Times New Roman Bold Italic", {"Bold", "Italic"}},
      {"Arial-BoldMT", "Arial Bold", {"Bold"}},
      {"ArialNarrow-BoldItalic", "Arial Narrow Bold Italic", {"Bold", "Narrow", "Italic"}},
      {"HelveticaNeue-UltraLight", "Helvetica Neue UltraLight", {"Ultra Light"}},
      {"HelveticaNeue-CondensedBlack", "Helvetica Neue Condensed Black", {"Black", "Condensed"}},
      {"Futura-CondensedExtraBold", "Futura Condensed ExtraBold", {"Extra Bold", "Condensed"}},
      {"Optima-ExtraBlack", "Optima ExtraBlack", {"Extra Black"}},
      {"GillSans-UltraBold", "Gill Sans UltraBold", {"Ultra Bold"}},
      {"GillSans-SemiBoldItalic", "Gill Sans SemiBold Italic", {"Semibold", "Italic"}},
      {"AvenirNext-DemiBoldItalic", "Avenir Next Demi Bold Italic", {"Semibold", "Italic"}},
      {"Avenir-Heavy", "Avenir Heavy", {"Heavy"}},
      {"MinionPro-BoldCnIt", "Minion Pro Bold Cond Italic", {"Bold", "Condensed", "Italic"}},
      {"MyriadPro-SemiboldIt", "Myriad Pro Semibold Italic", {"Semibold", "Italic"}},
      {"HelveticaNeueLTStd-BdCn", "Helvetica Neue LT Std 77 Bold Condensed", {"Bold", "Condensed"}},
      {"HelveticaNeueLTStd-UltLt", "Helvetica Neue LT Std 25 Ultra Light", {"Ultra Light"}},
      {"ITCAvantGardeStd-BkCn", "ITC Avant Garde Gothic Std Book Condensed", {"Book", "Condensed"}},
      {"UniversLTStd-BoldCnObl", "Univers LT Std 67 Bold Condensed Oblique", {"Bold", "Condensed", "Oblique"}},
      {"ITCFranklinGothicStd-DmCd", "ITC Franklin Gothic Std Demi Condensed", {"Semibold", "Condensed"}},
      {"SourceSansPro-ExtraLightIt", "Source Sans Pro ExtraLight Italic", {"Extra Light", "Italic"}},
      {"PTSans-NarrowBold", "PT Sans Narrow Bold", {"Bold", "Narrow"}},
      {"ArialMT", "Arial", {}},  // no style words: the count is left as it was
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.postScriptName);
    char buffers[kSlots][kSlotSize] = {};
    char* slots[kSlots];
    for (uint32_t i = 0; i < kSlots; ++i) slots[i] = buffers[i];
    uint32_t count = 0xDEAD;
    EXPECT_EQ(TP_GetStyles(row.postScriptName, row.fullName, kSlots, kSlotSize, &count, slots), TP_STATUS_OK);
    EXPECT_EQ(count, row.styles.empty() ? 0xDEADu : row.styles.size());
    if (count <= kSlots) {
      EXPECT_EQ(std::multiset<std::string>(slots, slots + count), row.styles);
    }
  }
}

TEST(GetStyles, ChecksEveryPointerBeforeScanning) {
  char slot[kSlotSize] = "untouched";
  char* slots[] = {slot};
  char* nullSlots[] = {nullptr};
  uint32_t count = 7;
  EXPECT_EQ(TP_GetStyles(nullptr, "Bold", 1, kSlotSize, &count, slots), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetStyles("Foo-Bold", "Bold", 1, kSlotSize, nullptr, slots), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetStyles("Foo-Bold", "Bold", 1, kSlotSize, &count, nullSlots), TP_STATUS_FAILED) << "first slot null";
  EXPECT_EQ(count, 7u);
  EXPECT_STREQ(slot, "untouched");
}

TEST(GetStyles, FillsAtMostMaxNamesSkippingNullSlots) {
  const char* name = "DejaVuSansCondensed-BoldOblique";  // Bold, Condensed, Oblique
  char first[kSlotSize] = "", third[kSlotSize] = "", tiny[4] = "xxx";
  char* slots[] = {first, nullptr, third};
  uint32_t count = 0;
  EXPECT_EQ(TP_GetStyles(name, "", 2, kSlotSize, &count, slots), TP_STATUS_OK);
  EXPECT_STREQ(third, "") << "a slot beyond maxNames";
  EXPECT_EQ(TP_GetStyles(name, "", 3, kSlotSize, &count, slots), TP_STATUS_OK);
  EXPECT_EQ(count, 3u);
  EXPECT_EQ(std::set<std::string>({"Bold", "Condensed", "Oblique"}).count(third), 1u) << third;
  EXPECT_STRNE(first, third);
  char* tinySlots[] = {tiny};
  EXPECT_EQ(TP_GetStyles("Foo-Bold", "", 1, sizeof tiny, &count, tinySlots), TP_STATUS_OK);
  EXPECT_STREQ(tiny, "Bol");
}

}  // namespace
