// TP_GetStyles on the shipped keyword table, as a font manager calls it: the PostScript name
// first, the full name second. The expected styles are a typographer's reading of each name
// (weight, width and slope as the name spells them), not output of the library.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "typeprint.h"

namespace {

constexpr uint32_t kSlots = 8;
constexpr int32_t kSlotSize = 64;

struct StyleCall {
  TP_Status status = 0;
  uint32_t count = 0xDEADu;  // a value the call must overwrite or leave alone
  std::vector<std::string> names;
};

StyleCall getStyles(const char* nameA, const char* nameB, uint32_t maxNames = kSlots) {
  std::array<std::array<char, kSlotSize>, kSlots> buffers{};
  std::array<char*, kSlots> slots{};
  for (uint32_t i = 0; i < kSlots; ++i) slots[i] = buffers[i].data();
  StyleCall call;
  call.status = TP_GetStyles(nameA, nameB, maxNames, kSlotSize, &call.count, slots.data());
  if (call.count <= kSlots) {
    for (uint32_t i = 0; i < call.count; ++i) call.names.emplace_back(buffers[i].data());
  }
  return call;
}

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

TEST(GetStyles, RealFontNamesGiveTheirWeightWidthAndSlope) {
  const struct {
    const char* postScriptName;
    const char* fullName;
    std::vector<std::string> styles;
  } rows[] = {
      // Installed under /usr/share/fonts (urw-base35, DejaVu, Cantarell) and Debian's font packages.
      {"C059-BdIta", "C059 Bold Italic", {"Bold", "Italic"}},
      {"C059-Roman", "C059 Roman", {"Roman"}},
      {"P052-Italic", "P052 Italic", {"Italic"}},
      {"URWBookman-Demi", "URW Bookman Demi", {"Semibold"}},
      {"URWBookman-LightItalic", "URW Bookman Light Italic", {"Light", "Italic"}},
      {"URWGothic-Book", "URW Gothic Book", {"Book"}},
      {"URWGothic-DemiOblique", "URW Gothic Demi Oblique", {"Semibold", "Oblique"}},
      {"Z003-MediumItalic", "Z003 Medium Italic", {"Medium", "Italic"}},
      {"NimbusSans-BoldItalic", "Nimbus Sans Bold Italic", {"Bold", "Italic"}},
      {"NimbusSansNarrow-BoldOblique", "Nimbus Sans Narrow Bold Oblique", {"Bold", "Narrow", "Oblique"}},
      {"NimbusMonoPS-Regular", "Nimbus Mono PS Regular", {"Regular"}},
      {"NimbusRoman-Regular", "Nimbus Roman Regular", {"Regular"}},
      {"NimbusRoman-Bold", "Nimbus Roman Bold", {"Bold"}},
      {"DejaVuSans-ExtraLight", "DejaVu Sans ExtraLight", {"Extra Light"}},
      {"DejaVuSansCondensed-BoldOblique", "DejaVu Sans Condensed Bold Oblique", {"Bold", "Condensed", "Oblique"}},
      {"DejaVuSerif-Italic", "DejaVu Serif Italic", {"Italic"}},
      {"DejaVuSansMono-Oblique", "DejaVu Sans Mono Oblique", {"Oblique"}},
      {"Cantarell-Thin", "Cantarell Thin", {"Thin"}},
      {"Cantarell-ExtraBold", "Cantarell Extra Bold", {"Extra Bold"}},
      {"Cantarell-Light", "Cantarell Light", {"Light"}},
      {"TeXGyreHerosCondensed-BoldItalic", "TeX Gyre Heros Cn Bold Italic", {"Bold", "Condensed", "Italic"}},
      {"LiberationSerif-BoldItalic", "Liberation Serif Bold Italic", {"Bold", "Italic"}},
      {"EBGaramond12-AllSC", "EB Garamond 12 Regular All SmallCaps", {"Regular", "Small Caps"}},
      {"UbuntuCondensed-Regular", "Ubuntu Condensed", {"Regular", "Condensed"}},
      // Classic PostScript and desktop families.
      {"Times-Roman", "Times Roman", {"Roman"}},
      {"Helvetica-BoldOblique", "Helvetica Bold Oblique", {"Bold", "Oblique"}},
      {"Helvetica-Narrow-BoldOblique", "Helvetica Narrow Bold Oblique", {"Bold", "Narrow", "Oblique"}},
      {"Palatino-BoldItalic", "Palatino Bold Italic", {"Bold", "Italic"}},
      {"ZapfChancery-MediumItalic", "Zapf Chancery Medium Italic", {"Medium", "Italic"}},
      {"AvantGarde-BookOblique", "ITC Avant Garde Gothic Book Oblique", {"Book", "Oblique"}},
      {"NewCenturySchlbk-Roman", "New Century Schoolbook Roman", {"Roman"}},
      {"TimesNewRomanPS-BoldItalicMT", "Times New Roman Bold Italic", {"Bold", "Italic"}},
      {"Arial-BoldMT", "Arial Bold", {"Bold"}},
      {"ArialNarrow-BoldItalic", "Arial Narrow Bold Italic", {"Bold", "Narrow", "Italic"}},
      {"HelveticaNeue-UltraLight", "Helvetica Neue UltraLight", {"Ultra Light"}},
      {"HelveticaNeue-CondensedBlack", "Helvetica Neue Condensed Black", {"Black", "Condensed"}},
      {"Futura-CondensedExtraBold", "Futura Condensed ExtraBold", {"Extra Bold", "Condensed"}},
      {"Optima-ExtraBlack", "Optima ExtraBlack", {"Extra Black"}},
      {"GillSans-UltraBold", "Gill Sans UltraBold", {"Ultra Bold"}},
      {"GillSans-SemiBoldItalic", "Gill Sans SemiBold Italic", {"Semibold", "Italic"}},
      {"Baskerville-SemiBold", "Baskerville SemiBold", {"Semibold"}},
      {"AvenirNext-DemiBoldItalic", "Avenir Next Demi Bold Italic", {"Semibold", "Italic"}},
      {"AvenirNext-UltraLightItalic", "Avenir Next Ultra Light Italic", {"Ultra Light", "Italic"}},
      {"Avenir-BlackOblique", "Avenir Black Oblique", {"Black", "Oblique"}},
      {"Avenir-Heavy", "Avenir Heavy", {"Heavy"}},
      {"MinionPro-BoldCnIt", "Minion Pro Bold Cond Italic", {"Bold", "Condensed", "Italic"}},
      {"MyriadPro-SemiboldIt", "Myriad Pro Semibold Italic", {"Semibold", "Italic"}},
      {"AGaramondPro-Semibold", "Adobe Garamond Pro Semibold", {"Semibold"}},
      {"HelveticaNeueLTStd-BdCn", "Helvetica Neue LT Std 77 Bold Condensed", {"Bold", "Condensed"}},
      {"HelveticaNeueLTStd-UltLt", "Helvetica Neue LT Std 25 Ultra Light", {"Ultra Light"}},
      {"ITCAvantGardeStd-BkCn", "ITC Avant Garde Gothic Std Book Condensed", {"Book", "Condensed"}},
      {"UniversLTStd-BoldCnObl", "Univers LT Std 67 Bold Condensed Oblique", {"Bold", "Condensed", "Oblique"}},
      {"ITCFranklinGothicStd-DmCd", "ITC Franklin Gothic Std Demi Condensed", {"Semibold", "Condensed"}},
      {"SourceSansPro-ExtraLightIt", "Source Sans Pro ExtraLight Italic", {"Extra Light", "Italic"}},
      {"Roboto-MediumItalic", "Roboto Medium Italic", {"Medium", "Italic"}},
      {"OpenSans-SemiboldItalic", "Open Sans Semibold Italic", {"Semibold", "Italic"}},
      {"PTSans-NarrowBold", "PT Sans Narrow Bold", {"Bold", "Narrow"}},
      {"IBMPlexSans-SemiBoldItalic", "IBM Plex Sans SemiBold Italic", {"Semibold", "Italic"}},
      {"Calibri-LightItalic", "Calibri Light Italic", {"Light", "Italic"}},
      {"SegoeUI-Semibold", "Segoe UI Semibold", {"Semibold"}},
      {"FiraSans-ExtraBoldItalic", "Fira Sans ExtraBold Italic", {"Extra Bold", "Italic"}},
      {"Rockwell-ExtraBold", "Rockwell Extra Bold", {"Extra Bold"}},
      {"Georgia-BoldItalic", "Georgia Bold Italic", {"Bold", "Italic"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.postScriptName);
    StyleCall call = getStyles(row.postScriptName, row.fullName);
    EXPECT_EQ(call.status, 0u);
    EXPECT_EQ(sorted(call.names), sorted(row.styles));
  }
}

TEST(GetStyles, NamesWithoutStyleWordsLeaveTheCountAlone) {
  const struct {
    const char* postScriptName;
    const char* fullName;
  } rows[] = {
      {"ArialMT", "Arial"},
      {"Inconsolata", "Inconsolata"},
      {"Helvetica", "Helvetica"},
      {"DejaVuSans", "DejaVu Sans"},
      {"", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.postScriptName);
    StyleCall call = getStyles(row.postScriptName, row.fullName);
    EXPECT_EQ(call.status, 0u);
    EXPECT_EQ(call.count, 0xDEADu);
  }
}

TEST(GetStyles, ChecksEveryPointerBeforeScanning) {
  char slot[kSlotSize] = "untouched";
  char* slots[] = {slot};
  char* emptySlots[] = {nullptr};
  uint32_t count = 7;
  const struct {
    const char* what;
    const char* nameA;
    const char* nameB;
    uint32_t* count;
    char** names;
  } rows[] = {
      {"no first name", nullptr, "Bold", &count, slots},
      {"no second name", "Foo-Bold", nullptr, &count, slots},
      {"no count", "Foo-Bold", "Bold", nullptr, slots},
      {"no name array", "Foo-Bold", "Bold", &count, nullptr},
      {"first name slot null", "Foo-Bold", "Bold", &count, emptySlots},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TP_GetStyles(row.nameA, row.nameB, 1, kSlotSize, row.count, row.names), 1u);
    EXPECT_EQ(count, 7u);
    EXPECT_STREQ(slot, "untouched");
  }
}

TEST(GetStyles, FillsAtMostMaxNamesAndSkipsNullSlots) {
  const char* name = "DejaVuSansCondensed-BoldOblique";  // Bold, Condensed, Oblique
  const std::vector<std::string> all = {"Bold", "Condensed", "Oblique"};

  StyleCall two = getStyles(name, "", 2);
  EXPECT_EQ(two.count, 2u);
  ASSERT_EQ(two.names.size(), 2u);
  EXPECT_NE(two.names[0], two.names[1]);
  for (const std::string& style : two.names) EXPECT_NE(std::find(all.begin(), all.end(), style), all.end());

  char first[kSlotSize] = "", third[kSlotSize] = "";
  char* slots[] = {first, nullptr, third};
  uint32_t count = 0;
  EXPECT_EQ(TP_GetStyles(name, "", 3, kSlotSize, &count, slots), 0u);
  EXPECT_EQ(count, 3u);
  for (const char* filled : {first, third}) EXPECT_NE(std::find(all.begin(), all.end(), filled), all.end());
  EXPECT_STRNE(first, third);

  char tiny[4] = "xxx";
  char* tinySlots[] = {tiny};
  EXPECT_EQ(TP_GetStyles("Foo-Bold", "", 1, sizeof tiny, &count, tinySlots), 0u);
  EXPECT_EQ(count, 1u);
  EXPECT_STREQ(tiny, "Bol");
}

}  // namespace
