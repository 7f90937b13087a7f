// Printer-font files: the five-three-three file names, the printer files of the fixture Type 1
// family in every container form and under container names, the fallback on the printer fonts
// of the folder, the cache, double-byte and multiple-master names.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/families.h"
#include "resources/printer_files.h"
#include "resources/printer_font_folder.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::FondBuilder;
using test::ResourceForkBuilder;

// The printer files of the fixture family by style (fixture README).
const std::vector<std::string> kNimbusPrinterFiles = {"NimbuSanReg", "NimbuSanBol", "NimbuSanIta", "NimbuSanBolIta"};

std::string fileNameFor(const std::string& psName) {
  unsigned char in[256], out[256];
  UxString(psName).GetPascalString(in);
  GetPostScriptFontFileName(in, out);
  return std::string(reinterpret_cast<const char*>(out + 1), out[0]);
}

// Copies every file of a fixture folder (companions included) into `dir`, renamed by `renames`.
void copyFolder(const std::string& relative, const std::string& dir,
                const std::map<std::string, std::string>& renames = {}) {
  for (const auto& entry : fs::directory_iterator(test::macFixture(relative))) {
    std::string name = entry.path().filename().string();
    auto renamed = renames.find(name);
    if (renamed != renames.end()) name = renamed->second;
    fs::copy_file(entry.path(), fs::path(dir) / name);
  }
}

// A suitcase of one bitmap-only family whose faces have these PostScript names (by style index).
Bytes bitmapFamily(const std::string& base, const std::vector<std::pair<int, std::string>>& suffixes,
                   int16_t familyID = 300, const std::string& name = "Family") {
  FondBuilder fond;
  fond.familyID(familyID).postScriptNames(base, suffixes);
  fond.entry(12, 0, 301);
  for (const auto& s : suffixes) fond.entry(12, uint16_t(s.first), int16_t(302 + s.first));
  return ResourceForkBuilder().add("FOND", familyID, fond.build(), name).build();
}

Handle firstFamily(const test::ResourceFilePtr& rf) { return getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1); }

TEST(PrinterFiles, FileNamesFollowTheFiveThreeThreeRule) {
  const struct { const char* psName; const char* fileName; } rows[] = {
      {"Times-BoldItalic", "TimesBolIta"},
      {"Helvetica-Narrow-BoldOblique", "HelveNarBolObl"},
      {"AGaramond-Regular", "AGarReg"},
      {"ITC-Garamond-Book", "GaramBoo"},
      {"Frutiger55Roman", "FrutiRom"},
      {"Univers-55", "Unive55"},
      {"MyriadMM_215_LT", "MyriaMM"},
      // The fixture printer files (named by FontForge and t1mac).
      {"NimbusSans-Regular", "NimbuSanReg"},
      {"NimbusSans-BoldItalic", "NimbuSanBolIta"},
      {"C059-Roman", "C059Rom"},
      {"URWBookman-Light", "URWBooLig"},
      {"NimbusMonoPS-Regular", "NimbuMonPSReg"},
      {"", ""},
      {"ITC-", ""},
      {"Abc_", "Abc_"},  // a "_" in the last place is no cut
      {"Ab_c", "Ab"},
      {"_Sample", ""},
      {"samplebold", "sampl"},      // lower-case letters start no word
      {"sample-bold", "samplbol"},  // but anything right after a hyphen does
      {"Sample-5Bold", "Sampl5Bol"},  // a digit word before the last two places keeps itself only
      {"A--B", "A-B"},  // a character right after a hyphen starts a word, even a hyphen
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.psName);
    EXPECT_EQ(fileNameFor(row.psName), row.fileName);
  }
  // At most 254 characters.
  EXPECT_EQ(fileNameFor(std::string(255, 'A')).size(), 254u);
}

TEST(PrinterFiles, FixtureFamilyFindsItsPrinterFilesInEveryForm) {
  for (const char* form : {"macbinary", "appledouble"}) {
    SCOPED_TRACE(form);
    const std::string folder = test::macFixture(std::string("c-type1-family/") + form + "/");
    auto rf = test::openResourceFile(folder + "NimbusSans");
    ASSERT_TRUE(rf);
    Handle fond = firstFamily(rf);
    std::vector<std::string> wanted;
    for (short style = 0; style < 4; ++style) {
      const std::string name = kNimbusPrinterFiles[size_t(style)];
      EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, style), name);
      auto path = CreatePrinterPath(rf.get(), fond, style);
      ASSERT_TRUE(path);
      EXPECT_EQ(*path, folder + name);
      wanted.push_back(folder + name);
    }
    std::vector<UxString> found = getPrinterFiles(test::object(rf));
    std::vector<std::string> paths(found.begin(), found.end());
    std::sort(paths.begin(), paths.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(paths, wanted);
  }
}

TEST(PrinterFiles, FacesWithOutlinesNeedNoPrinterFile) {
  auto rf = test::openResourceFile(test::macFixture("b-suitcase-truetype/macbinary/DejaVuSans.bin"));
  ASSERT_TRUE(rf);
  EXPECT_FALSE(CreatePrinterPath(rf.get(), firstFamily(rf), 0));
  EXPECT_TRUE(getPrinterFiles(test::object(rf)).empty());
  EXPECT_FALSE(CreatePrinterPath(nullptr, firstFamily(rf), 0));
}

TEST(PrinterFiles, WrappedPrinterFilesAreFoundByTheirMacName) {
  test::ScratchDir dir;
  // MacBinary copies named NAME.bin; one .bin whose Mac name is another file's.
  copyFolder("c-type1-family/macbinary", dir.path(),
             {{"NimbuSanReg", "NimbuSanReg.bin"}, {"NimbuSanBol", "NimbuSanBol.macbin"},
              {"NimbuSanIta", "NimbuSanBolIta.bin"}, {"NimbuSanBolIta", "Other"}});
  // An AppleSingle printer file named NAME.as, for a family that names C059-Roman.
  fs::copy_file(test::macFixture("d-t1mac-lwfn/applesingle/C059Rom"), dir.file("C059Rom.as"));
  auto rf = test::openResourceFile(dir.file("NimbusSans"));
  ASSERT_TRUE(rf);
  Handle fond = firstFamily(rf);
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, 0), "NimbuSanReg.bin");
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, 1), "NimbuSanBol.macbin");
  EXPECT_EQ(*CreatePrinterPath(rf.get(), fond, 0), dir.file("NimbuSanReg.bin"));
  // NimbuSanBolIta.bin holds NimbuSanIta: not the Bold Italic file by name, but by its header.
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, 3), "Other");
  // The Italic face's file is only known by the header of NimbuSanBolIta.bin.
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, 2), "NimbuSanBolIta.bin");

  auto c059 = test::writeAndOpen(dir, "C059 Family", bitmapFamily("C059", {{0, "-Roman"}}));
  ASSERT_TRUE(c059);
  EXPECT_EQ(*CreatePrinterPath(c059.get(), firstFamily(c059), 0), dir.file("C059Rom.as"));
}

TEST(PrinterFiles, TheFolderAnswersWhenTheComputedNameIsMissing) {
  const struct { const char* what; std::string base; std::vector<std::pair<int, std::string>> suffixes;
                 const char* fixture; const char* copiedAs; std::string answer; } rows[] = {
      {"exact name, PFB", "NimbusRoman", {{0, "-Regular"}}, "type1/NimbusRoman-Regular.pfb", "Roman.pfb", "Roman.pfb"},
      {"exact name, PFA", "NimbusRoman", {{0, "-Regular"}}, "type1/NimbusRoman-Regular.pfa", "Roman.PFA", "Roman.PFA"},
      {"letters and digits", "NimbusRoman_Regular", {}, "type1/NimbusRoman-Regular.pfb", "R.pfb", "R.pfb"},
      {"up to the second hyphen", "NimbusRoman", {{0, "-Regular-SC"}}, "type1/NimbusRoman-Regular.pfb", "R.pfb",
       "R.pfb"},
      {"LWFN in AppleDouble form", "C059", {{0, "-Roman"}}, "mac/d-t1mac-lwfn/appledouble/C059Rom", "Printer",
       "Printer"},
      {"no match: the computed name stands", "NimbusRoman", {{0, "-Bold"}}, "type1/NimbusRoman-Regular.pfb",
       "R.pfb", "NimbuRomBol"},
      {"not a printer font", "NimbusRoman", {{0, "-Regular"}}, "type1/NimbusRoman-Regular.pfm", "R.pfm",
       "NimbuRomReg"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    fs::copy_file(test::fontPath(row.fixture), dir.file(row.copiedAs));
    fs::path companion = fs::path(test::fontPath(row.fixture)).parent_path() /
                         ("._" + fs::path(row.fixture).filename().string());
    if (fs::exists(companion)) fs::copy_file(companion, dir.file(std::string("._") + row.copiedAs));
    auto rf = test::writeAndOpen(dir, "Suitcase", bitmapFamily(row.base, row.suffixes));
    ASSERT_TRUE(rf);
    EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), firstFamily(rf), 0), row.answer);
  }
}

TEST(PrinterFiles, TheFolderIsAskedWhenTheComputedNameIsTheFileItself) {
  test::ScratchDir dir;
  fs::copy_file(test::macFixture("c-type1-family/macbinary/NimbuSanReg"), dir.file("Regular"));
  auto rf = test::writeAndOpen(dir, "NimbuSanReg", bitmapFamily("NimbusSans", {{0, "-Regular"}}));
  ASSERT_TRUE(rf);
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), firstFamily(rf), 0), "Regular");
}

TEST(PrinterFiles, AnswersAreCachedForTheLifeOfTheObject) {
  test::ScratchDir dir;
  copyFolder("c-type1-family/appledouble", dir.path());
  auto rf = test::openResourceFile(dir.file("NimbusSans"));
  ASSERT_TRUE(rf);
  Handle fond = firstFamily(rf);
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, 1), "NimbuSanBol");
  fs::rename(dir.file("NimbuSanBol"), dir.file("Bold"));
  fs::rename(dir.file("._NimbuSanBol"), dir.file("._Bold"));
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), fond, 1), "NimbuSanBol");
  EXPECT_FALSE(CreatePrinterPath(rf.get(), fond, 1));  // the file is gone
  auto reopened = test::openResourceFile(dir.file("NimbusSans"));
  EXPECT_EQ(getPSPrinterNameForFOND(test::object(reopened), firstFamily(reopened), 1), "Bold");
  EXPECT_EQ(*CreatePrinterPath(reopened.get(), firstFamily(reopened), 1), dir.file("Bold"));
}

TEST(PrinterFiles, DoubleByteFamiliesCutTheNameAtItsSecondHyphen) {
  const struct { const char* what; int16_t familyID; std::string base, suffix, name; } rows[] = {
      {"Japanese family", 16384, "Ryumin-Light", "-83pv-RKSJ-H", "Ryumin-Light"},
      {"one hyphen: no name", 16500, "Ryumin", "-Light", ""},
      {"roman family", 128, "Ryumin-Light", "-83pv-RKSJ-H", "RyumiLig8RKSJH"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Suitcase", bitmapFamily(row.base, {{0, row.suffix}}, row.familyID));
    ASSERT_TRUE(rf);
    EXPECT_EQ(getPSPrinterNameForFOND(test::object(rf), firstFamily(rf), 0), row.name);
    EXPECT_FALSE(CreatePrinterPath(rf.get(), firstFamily(rf), 0));
  }
}

TEST(PrinterFiles, APrinterFileSharedWithAnOutlineFaceIsNotListed) {
  // Two families whose plain faces map to the same file; the second has the outline.
  const Bytes bitmap = FondBuilder().postScriptNames("Sample", {{0, "-Regular"}}).entry(12, 0, 1).build();
  const Bytes outline = FondBuilder().postScriptNames("Sample", {{0, "-Regular"}}).entry(0, 0, 2).build();
  const Bytes bold = FondBuilder().postScriptNames("Sample", {{1, "-Bold"}}).entry(12, 1, 3).build();
  test::ScratchDir dir;
  auto rf = test::writeAndOpen(
      dir, "Suitcase",
      ResourceForkBuilder().add("FOND", 100, bitmap).add("FOND", 200, outline).add("FOND", 300, bold).build());
  ASSERT_TRUE(rf);
  std::vector<UxString> files = getPrinterFiles(test::object(rf));
  ASSERT_EQ(files.size(), 1u);
  EXPECT_EQ(files[0], dir.path() + "/SamplBol");
}

TEST(PrinterFiles, MultipleMasterFamilyNames) {
  const struct { const char* familyName; std::string result; bool isMM; } rows[] = {
      {"Sample", "Given-Name", false},
      {"SampleMM_Bold", "Sample", true},
      {"SampleMM Bold_x", "Sample Bold", true},
      {"SampleMM", "Sample", true},
      {"%MSample", "Sample", true},
      {"%MMyriadMM_215_LT", "Myriad", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.familyName);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Suitcase", bitmapFamily("Sample", {}, 300, row.familyName));
    ASSERT_TRUE(rf);
    bool isMM = false;
    EXPECT_EQ(normalizePostScriptName("Given-Name", firstFamily(rf), &isMM), row.result);
    EXPECT_EQ(isMM, row.isMM);
    EXPECT_EQ(normalizePostScriptName("Given-Name", nullptr, &isMM), "Given-Name");
  }
}

TEST(PrinterFonts, FolderFontsAndTheirNames) {
  std::vector<FolderPrinterFont> fonts = readFolderPrinterFonts(test::macFixture("c-type1-family/appledouble"));
  std::vector<std::string> found;
  for (const auto& f : fonts) found.push_back(f.fileName + " " + f.postScriptName);
  EXPECT_EQ(found, (std::vector<std::string>{"NimbuSanBol NimbusSans-Bold", "NimbuSanBolIta NimbusSans-BoldItalic",
                                             "NimbuSanIta NimbusSans-Italic", "NimbuSanReg NimbusSans-Regular"}));
  const struct { const char* path; const char* name; } rows[] = {
      {"mac/d-t1mac-lwfn/macbinary-i/C059Rom", "C059-Roman"},
      {"mac/d-t1mac-lwfn/netatalk/C059Rom", "C059-Roman"},
      {"type1/NimbusRoman-Regular.pfa", "NimbusRoman-Regular"},
      {"type1/NimbusRoman-Regular.pfm", ""},
      {"mac/a-dfont/DejaVuSans.dfont", ""},
      {"mac/no-such-file", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(printerFontPostScriptName(test::fontPath(row.path)), row.name);
  }
  EXPECT_TRUE(readFolderPrinterFonts(test::macFixture("no-such-folder")).empty());
}

}  // namespace
}  // namespace typeprint
