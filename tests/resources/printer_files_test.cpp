// Printer-font files: five-three-three file names, the fixture Type 1 family's printer files in
// every container form and under container names, the printer fonts of the folder, the cache.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/printer_files.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::FondBuilder;
using test::ResourceForkBuilder;

// A suitcase of one bitmap-only family whose plain face is named `base` + `suffix`.
Bytes bitmapFamily(const std::string& base, const std::string& suffix) {
  return ResourceForkBuilder().add("FOND", 300, FondBuilder().postScriptNames(base, {{0, suffix}}).entry(12, 0, 1).build()).build();
}

ByteSpan firstFamily(const test::ResourceFilePtr& rf) { return rf->at(kTypeFOND, 1)->data(); }

TEST(PrinterFiles, FileNamesFollowTheFiveThreeThreeRule) {
  const struct { const char* psName; const char* fileName; } rows[] = {
      {"Helvetica-Narrow-BoldOblique", "HelveNarBolObl"}, {"ITC-Garamond-Book", "GaramBoo"}, {"Univers-55", "Unive55"},
      {"MyriadMM_215_LT", "MyriaMM"}, {"", ""}, {"Times-BoldItalic", "TimesBolIta"},
      {"AGaramond-Regular", "AGarReg"}, {"Frutiger55Roman", "FrutiRom"},
      // The fixture printer files (named by FontForge and t1mac).
      {"NimbusSans-BoldItalic", "NimbuSanBolIta"}, {"C059-Roman", "C059Rom"}, {"NimbusMonoPS-Regular", "NimbuMonPSReg"},
      {"Abc_", "Abc_"},               // a "_" in the last place is no cut
      {"sample-bold", "samplbol"},    // lower-case letters start no word, but anything after a hyphen does
      {"Sample-5Bold", "Sampl5Bol"},  // a digit word before the last two places keeps itself only
  };
  for (const auto& row : rows) {
    unsigned char in[256], out[256];
    UxString(row.psName).GetPascalString(in);
    GetPostScriptFontFileName(in, out);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(out + 1), out[0]), row.fileName) << row.psName;
  }
}

// Multiple-master names come from the family's resource name: "%M" marks one, "MM" ends the base.
TEST(PrinterFiles, MultipleMasterNamesFromTheFamilyName) {
  const struct { const char* familyName; const char* result; bool isMM; } rows[] = {
      {"MyriadMM_215_LT", "Myriad", true}, {"TekoMMSans_wd", "TekoSans", true}, {"%MMinionMM", "Minion", true},
      {"%MMinion", "Minion", true},
      {"Garamond", "Garamond-Bold", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.familyName);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(
        dir, "suitcase", ResourceForkBuilder().add("FOND", 300, FondBuilder().entry(12, 0, 1).build(), row.familyName).build());
    bool isMM = false;
    EXPECT_EQ(std::string(normalizePostScriptName("Garamond-Bold", rf->at(kTypeFOND, 1), &isMM)), row.result);
    EXPECT_EQ(isMM, row.isMM);
  }
}

TEST(PrinterFiles, FixtureFamilyFindsItsPrinterFilesInEveryForm) {
  const std::vector<std::string> files = {"NimbuSanReg", "NimbuSanBol", "NimbuSanIta", "NimbuSanBolIta"};  // README
  for (const char* form : {"macbinary", "appledouble"}) {
    SCOPED_TRACE(form);
    const std::string folder = test::macFixture(std::string("c-type1-family/") + form + "/");
    auto rf = test::openResourceFile(folder + "NimbusSans");
    ASSERT_TRUE(rf);
    std::set<std::string> wanted;
    for (short style = 0; style < 4; ++style) {
      EXPECT_EQ(getPSPrinterNameForFOND(*rf, firstFamily(rf), style), files[size_t(style)]);
      EXPECT_EQ(CreatePrinterPath(rf.get(), firstFamily(rf), style).value_or(""), folder + files[size_t(style)]);
      wanted.insert(folder + files[size_t(style)]);
    }
    const std::vector<UxString> found = getPrinterFiles(*rf);
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), wanted);
  }
  auto outlines = test::openResourceFile(test::macFixture("b-suitcase-truetype/macbinary/DejaVuSans.bin"));
  EXPECT_FALSE(CreatePrinterPath(outlines.get(), firstFamily(outlines), 0));  // faces with outlines need none
  EXPECT_TRUE(getPrinterFiles(*outlines).empty());
}

TEST(PrinterFiles, WrappedPrinterFilesAreFoundByTheirMacName) {
  test::ScratchDir dir;
  // MacBinary copies named NAME.bin; one .bin whose Mac name is another file's.
  const std::pair<const char*, const char*> renames[] = {{"NimbusSans", "NimbusSans"}, {"NimbuSanReg", "NimbuSanReg.bin"},
      {"NimbuSanBol", "NimbuSanBol.macbin"}, {"NimbuSanIta", "NimbuSanBolIta.bin"}, {"NimbuSanBolIta", "Other"}};
  for (const auto& [from, to] : renames) fs::copy_file(test::macFixture(std::string("c-type1-family/macbinary/") + from), dir.file(to));
  // An AppleSingle printer file named NAME.as, for a family that names C059-Roman.
  fs::copy_file(test::macFixture("d-t1mac-lwfn/applesingle/C059Rom"), dir.file("C059Rom.as"));
  auto rf = test::openResourceFile(dir.file("NimbusSans"));
  const ByteSpan fond = firstFamily(rf);
  EXPECT_EQ(getPSPrinterNameForFOND(*rf, fond, 0), "NimbuSanReg.bin");
  EXPECT_EQ(getPSPrinterNameForFOND(*rf, fond, 1), "NimbuSanBol.macbin");
  EXPECT_EQ(CreatePrinterPath(rf.get(), fond, 0).value_or(""), dir.file("NimbuSanReg.bin"));
  // NimbuSanBolIta.bin holds NimbuSanIta; each face finds its file by the file's header.
  EXPECT_EQ(getPSPrinterNameForFOND(*rf, fond, 3), "Other");
  EXPECT_EQ(getPSPrinterNameForFOND(*rf, fond, 2), "NimbuSanBolIta.bin");
  auto c059 = test::writeAndOpen(dir, "C059 Family", bitmapFamily("C059", "-Roman"));
  EXPECT_EQ(CreatePrinterPath(c059.get(), firstFamily(c059), 0).value_or(""), dir.file("C059Rom.as"));
}

TEST(PrinterFiles, TheFolderAnswersWhenTheComputedNameIsMissing) {
  const struct { const char* what; std::string base, suffix; const char* fixture; const char* copiedAs; std::string answer;
                 const char* suitcase = "Suitcase"; } rows[] = {
      {"exact name, PFB", "NimbusRoman", "-Regular", "type1/NimbusRoman-Regular.pfb", "Roman.pfb", "Roman.pfb"},
      {"exact name, PFA", "NimbusRoman", "-Regular", "type1/NimbusRoman-Regular.pfa", "Roman.PFA", "Roman.PFA"},
      {"up to the second hyphen", "NimbusRoman", "-Regular-SC", "type1/NimbusRoman-Regular.pfb", "R.pfb", "R.pfb"},
      {"LWFN in AppleDouble form", "C059", "-Roman", "mac/d-t1mac-lwfn/appledouble/C059Rom", "Printer", "Printer"},
      {"not a printer font", "NimbusRoman", "-Regular", "type1/NimbusRoman-Regular.pfm", "R.pfm", "NimbuRomReg"},
      {"no match: the computed name stands", "NimbusRoman", "-Bold", "type1/NimbusRoman-Regular.pfb", "R.pfb",
       "NimbuRomBol"},
      {"the computed name is the suitcase itself", "NimbusSans", "-Regular", "mac/c-type1-family/macbinary/NimbuSanReg",
       "Regular", "Regular", "NimbuSanReg"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    const fs::path fixture = test::fontPath(row.fixture);
    fs::copy_file(fixture, dir.file(row.copiedAs));
    if (fs::exists(fixture.parent_path() / ("._" + fixture.filename().string())))
      fs::copy_file(fixture.parent_path() / ("._" + fixture.filename().string()), dir.file(std::string("._") + row.copiedAs));
    auto rf = test::writeAndOpen(dir, row.suitcase, bitmapFamily(row.base, row.suffix));
    ASSERT_TRUE(rf);
    EXPECT_EQ(getPSPrinterNameForFOND(*rf, firstFamily(rf), 0), row.answer);
  }
}

TEST(PrinterFiles, AnswersAreCachedForTheLifeOfTheObject) {
  test::ScratchDir dir;
  for (const auto& e : fs::directory_iterator(test::macFixture("c-type1-family/appledouble")))
    fs::copy_file(e.path(), dir.file(e.path().filename().string()));
  auto rf = test::openResourceFile(dir.file("NimbusSans"));
  ASSERT_TRUE(rf);
  EXPECT_EQ(getPSPrinterNameForFOND(*rf, firstFamily(rf), 1), "NimbuSanBol");
  fs::rename(dir.file("NimbuSanBol"), dir.file("Bold"));
  fs::rename(dir.file("._NimbuSanBol"), dir.file("._Bold"));
  EXPECT_EQ(getPSPrinterNameForFOND(*rf, firstFamily(rf), 1), "NimbuSanBol");
  EXPECT_FALSE(CreatePrinterPath(rf.get(), firstFamily(rf), 1));  // the file is gone
  auto reopened = test::openResourceFile(dir.file("NimbusSans"));  // a new object reads the folder again
  EXPECT_EQ(CreatePrinterPath(reopened.get(), firstFamily(reopened), 1).value_or(""), dir.file("Bold"));
}

}  // namespace
}  // namespace typeprint
