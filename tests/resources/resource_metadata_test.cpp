// Names of resource-fork faces from their printer files: the fixture Type 1 family in both
// forms, the POST walk's limits, missing printer files, multiple-master, CID and OCF families,
// and headers read from data forks.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "builders/fond_builder.h"
#include "analysis/font_data.h"
#include "builders/resource_fork_builder.h"
#include "resources/resource_metadata.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::FondBuilder;
using test::ResourceForkBuilder;

struct Names {
  UxString printerPath, kind, foundry, family, version, postScriptName, styledName, fullName;
};

long collectMac(const test::ResourceFilePtr& rf, const std::string& path, short style, Names* n) {
  Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
  return CollectPSMetaDataMac(rf.get(), path, fond, style, &n->printerPath, &n->kind, &n->foundry, &n->family,
                              &n->version, &n->postScriptName, &n->styledName, &n->fullName);
}

long collectFile(const std::string& path, Names* n) {
  n->printerPath = path;
  return CollectPSMetaDataFromFile("unused", &n->printerPath, &n->kind, &n->foundry, &n->family, &n->version,
                                   &n->postScriptName, &n->styledName, &n->fullName);
}

// A POST resource: segment type, a zero byte, then the text.
Bytes post(uint8_t segment, const std::string& text, size_t size = 0) {
  Bytes b{segment, 0};
  b.insert(b.end(), text.begin(), text.end());
  if (size) b.resize(size, ' ');
  return b;
}

// A bitmap-only family "Sample" whose plain face is Sample-One (printer file SamplOne).
Bytes sampleFamily(const std::string& familyName = "Sample", int16_t familyID = 300) {
  const Bytes fond = FondBuilder().familyID(familyID).postScriptNames("Sample", {{0, "-One"}}).entry(12, 0, 1).build();
  return ResourceForkBuilder().add("FOND", familyID, fond, familyName).build();
}

TEST(ResourceMetadata, FixtureFacesReadTheirPrinterFiles) {
  // Values from the fixture README and the fixture dumper's POST 501 text: /FontName, /FamilyName
  // and /version of each LWFN.
  const char* versions[] = {"1.00", "1.00", "1.10", "1.10"};
  const char* psNames[] = {"NimbusSans-Regular", "NimbusSans-Bold", "NimbusSans-Italic", "NimbusSans-BoldItalic"};
  const char* files[] = {"NimbuSanReg", "NimbuSanBol", "NimbuSanIta", "NimbuSanBolIta"};
  for (const char* form : {"macbinary", "appledouble"}) {
    const std::string folder = test::macFixture(std::string("c-type1-family/") + form + "/");
    auto rf = test::openResourceFile(folder + "NimbusSans");
    ASSERT_TRUE(rf);
    for (short style = 0; style < 4; ++style) {
      SCOPED_TRACE(std::string(form) + " style " + std::to_string(style));
      Names n;
      EXPECT_EQ(collectMac(rf, folder + "NimbusSans", style, &n), kPSMetaDataRead);
      EXPECT_EQ(n.printerPath, folder + files[style]);
      EXPECT_EQ(n.kind, "PostScript");
      EXPECT_EQ(n.family, "Nimbus Sans");
      EXPECT_EQ(n.version, versions[style]);
      EXPECT_EQ(n.postScriptName, psNames[style]);
      EXPECT_EQ(n.fullName, psNames[style]);
      EXPECT_EQ(n.styledName, "Nimbus Sans");  // the family resource's name
    }
  }
}

TEST(ResourceMetadata, OutlineFacesAndMissingInputs) {
  auto suitcase = test::openResourceFile(test::macFixture("b-suitcase-truetype/macbinary/DejaVuSans.bin"));
  ASSERT_TRUE(suitcase);
  Names n;
  n.kind = "TrueType";
  n.printerPath = "untouched";
  EXPECT_EQ(collectMac(suitcase, test::macFixture("b-suitcase-truetype/macbinary/DejaVuSans.bin"), 0, &n),
            kPSMetaDataNothingToDo);
  EXPECT_EQ(n.printerPath, "untouched");
  EXPECT_EQ(n.kind, "TrueType");
  EXPECT_EQ(n.postScriptName, "");
  EXPECT_EQ(CollectPSMetaDataMac(nullptr, "x", nullptr, 0, &n.printerPath, &n.kind, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, nullptr),
            kPSMetaDataNothingToDo);
  n.styledName = "kept";
  EXPECT_EQ(CollectPSMetaDataMac(suitcase.get(), "x", nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, &n.styledName, nullptr),
            kPSMetaDataNothingToDo);
  EXPECT_EQ(n.styledName, "kept");
}

TEST(ResourceMetadata, AMissingPrinterFileStillGivesTheFamilyNames) {
  test::ScratchDir dir;
  fs::copy_file(test::macFixture("c-type1-family/macbinary/NimbusSans"), dir.file("NimbusSans"));
  auto rf = test::openResourceFile(dir.file("NimbusSans"));
  ASSERT_TRUE(rf);
  Names n;
  EXPECT_EQ(collectMac(rf, dir.file("NimbusSans"), 1, &n), kPSMetaDataNoPrinterFile);
  EXPECT_EQ(n.printerPath, dir.file("NimbuSanBol"));
  EXPECT_EQ(n.postScriptName, "NimbusSans-Bold");
  EXPECT_EQ(n.styledName, "Nimbus Sans");
  EXPECT_EQ(n.family, "");
  EXPECT_EQ(n.kind, "");
}

TEST(ResourceMetadata, ThePOSTWalkReadsOnlyTheHeaderResources) {
  const std::string head = "%!PS-AdobeFont-1.0: Header-Line 1.0\n/FontName /First-Name def\n";
  const struct { const char* what; Bytes lwfn; long status; std::string psName, family; } rows[] = {
      {"501 and 502 read",
       ResourceForkBuilder().add("POST", 501, post(1, head)).add("POST", 502, post(1, "/FamilyName (Second)"))
           .add("POST", 503, post(5, "")).build(),
       kPSMetaDataRead, "First-Name", "Second"},
      {"a 2048-byte 502 ends the walk",
       ResourceForkBuilder().add("POST", 501, post(1, head)).add("POST", 502, post(1, "/FamilyName (Second) ", 2048))
           .build(),
       kPSMetaDataRead, "First-Name", "Header"},
      {"a 2048-byte 501 is read",
       ResourceForkBuilder().add("POST", 501, post(1, head, 2048)).build(), kPSMetaDataRead, "First-Name", "Header"},
      {"503 is never read",
       ResourceForkBuilder().add("POST", 501, post(1, head)).add("POST", 502, post(2, "x"))
           .add("POST", 503, post(1, "/FamilyName (Third)")).build(),
       kPSMetaDataRead, "First-Name", "Header"},
      {"no 501: the style table's name",
       ResourceForkBuilder().add("POST", 502, post(1, head)).build(), kPSMetaDataNothingToDo, "Sample-One", ""},
      {"empty 501", ResourceForkBuilder().add("POST", 501, {}).build(), kPSMetaDataNothingToDo, "Sample-One", ""},
      {"no resource map", test::bytesOf(head.c_str()), kPSMetaDataNoPrinterFile, "Sample-One", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    test::writeFile(dir.file("SamplOne"), std::string(row.lwfn.begin(), row.lwfn.end()));
    auto rf = test::writeAndOpen(dir, "Suitcase", sampleFamily());
    ASSERT_TRUE(rf);
    Names n;
    EXPECT_EQ(collectMac(rf, dir.file("Suitcase"), 0, &n), row.status);
    EXPECT_EQ(n.printerPath, dir.file("SamplOne"));
    EXPECT_EQ(n.postScriptName, row.psName);
    EXPECT_EQ(n.family, row.family);
    EXPECT_EQ(n.styledName, "Sample");
  }
}

TEST(ResourceMetadata, HeaderNamesAreCleanedAndCompleted) {
  // No /FamilyName and no header line: the family is the suitcase's file name; the PostScript
  // name loses its spaces and brackets; Mac Roman bytes become UTF-8.
  const std::string header = "/FontName (Caf\x8E [X]) def\n";
  test::ScratchDir dir;
  const Bytes lwfn = ResourceForkBuilder().add("POST", 501, post(1, header)).build();
  test::writeFile(dir.file("SamplOne"), std::string(lwfn.begin(), lwfn.end()));
  auto rf = test::writeAndOpen(dir, "My Suitcase", sampleFamily());
  ASSERT_TRUE(rf);
  Names n;
  EXPECT_EQ(collectMac(rf, dir.file("My Suitcase"), 0, &n), kPSMetaDataRead);
  EXPECT_EQ(n.family, "My Suitcase");
  EXPECT_EQ(n.postScriptName, "Caf\xC3\xA9X");
  EXPECT_EQ(n.fullName, "Caf\xC3\xA9 [X]");
}

TEST(ResourceMetadata, KindsOfMultipleMasterAndDoubleByteFamilies) {
  const auto family = [](int16_t id, const std::string& name, std::vector<std::pair<const char*, Bytes>> extra,
                         int16_t pointSize) {
    ResourceForkBuilder fork;
    fork.add("FOND", id,
             FondBuilder().familyID(id).postScriptNames("Sample", {{0, "-One"}}).entry(pointSize, 0, 500).build(), name);
    for (auto& [type, bytes] : extra) fork.add(type == std::string("sfnt") ? "sfnt" : "NFNT", 500, bytes);
    return fork.build();
  };
  const Bytes typ1 = {'t', 'y', 'p', '1', 0, 0, 0, 0};
  const Bytes trueType = {0, 1, 0, 0, 0, 0, 0, 0};
  const Bytes trueTag = {'t', 'r', 'u', 'e', 0, 0, 0, 0};
  const struct { const char* what; Bytes fork; long status; std::string kind, styled, psName; } rows[] = {
      {"multiple master", family(300, "%MSampleMM_215", {}, 12), kPSMetaDataNoPrinterFile, "PostScript - MM",
       "SampleMM", "Sample"},
      {"MM without the prefix", family(300, "SampleMM_215", {}, 12), kPSMetaDataNoPrinterFile, "PostScript - MM",
       "SampleMM_215", "Sample"},
      // Only the name cut of the PostScript name finds this one multiple master.
      {"MM with no _ after it", family(300, "SampleMM", {}, 12), kPSMetaDataNoPrinterFile, "PostScript - MM",
       "SampleMM", "Sample"},
      {"CID: Type 1 outline", family(16384, "Ryumin", {{"sfnt", typ1}}, 0), kPSMetaDataNothingToDo, "CID", "Ryumin",
       ""},
      {"CID by name", family(16384, "A-CIDRyumin", {{"sfnt", trueTag}}, 0), kPSMetaDataNothingToDo, "CID",
       "A-CIDRyumin", ""},
      {"double-byte TrueType outline", family(16384, "Gothic", {{"sfnt", trueType}}, 0), kPSMetaDataNothingToDo,
       "preset", "Gothic", ""},
      {"OCF: outline entry, no resource", family(16384, "Gothic", {}, 0), kPSMetaDataNothingToDo, "OCF", "Gothic",
       ""},
      {"OCF: bitmaps only", family(16384, "Gothic", {{"NFNT", Bytes(26)}}, 12), kPSMetaDataNoPrinterFile, "OCF",
       "Gothic", "Sample-One"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Suitcase", row.fork);
    ASSERT_TRUE(rf);
    Names n;
    n.kind = "preset";
    EXPECT_EQ(collectMac(rf, dir.file("Suitcase"), 0, &n), row.status);
    EXPECT_EQ(n.kind, row.kind);
    EXPECT_EQ(n.styledName, row.styled);
    EXPECT_EQ(n.postScriptName, row.psName);
  }
}

TEST(ResourceMetadata, HeadersFromDataForks) {
  const std::string padded = std::string(5980, ' ') + "/FontName /Late def";  // key at 5980, ends past 5996
  const std::string tooLate = std::string(6000, ' ') + "/FontName /Late def";
  test::ScratchDir dir;
  test::writeFile(dir.file("within"), padded);
  test::writeFile(dir.file("beyond"), tooLate);
  const struct { const char* what; std::string path; long status; std::string psName, family; } rows[] = {
      {"PFB", test::fontPath("type1/NimbusRoman-Regular.pfb"), kPSMetaDataRead, "NimbusRoman-Regular",
       "Nimbus Roman"},
      {"PFA", test::fontPath("type1/NimbusRoman-Regular.pfa"), kPSMetaDataRead, "NimbusRoman-Regular",
       "Nimbus Roman"},
      {"LWFN with an empty data fork", test::macFixture("c-type1-family/macbinary/NimbuSanReg"), kPSMetaDataRead, "",
       ""},
      {"key within the first 6000 bytes", dir.file("within"), kPSMetaDataRead, "Late", ""},
      {"key beyond them", dir.file("beyond"), kPSMetaDataRead, "", ""},
      {"missing file", dir.file("absent"), kPSMetaDataNoPrinterFile, "", ""},
      {"a folder", dir.path(), kPSMetaDataNoPrinterFile, "", ""},
      {"no path", "", kPSMetaDataNothingToDo, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names n;
    EXPECT_EQ(collectFile(row.path, &n), row.status);
    EXPECT_EQ(n.printerPath, row.path);
    EXPECT_EQ(n.postScriptName, row.psName);
    EXPECT_EQ(n.family, row.family);
  }
  EXPECT_EQ(CollectPSMetaDataFromFile("x", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            kPSMetaDataNothingToDo);
}

TEST(ResourceMetadata, WholeAnalysisOfFixtureFaces) {
  // Kinds and names from the fixture README: bitmap faces read their LWFN, outline faces their sfnt.
  const struct { const char* path; short style; const char* kind; const char* psName; const char* printer; } rows[] = {
      {"c-type1-family/macbinary/NimbusSans", 1, "PostScript", "NimbusSans-Bold", "NimbuSanBol"},
      {"c-type1-family/appledouble/NimbusSans", 3, "PostScript", "NimbusSans-BoldItalic", "NimbuSanBolIta"},
      {"b-suitcase-truetype/appledouble/DejaVuSans", 1, "TrueType", "DejaVuSans-Bold", ""},
      {"a-dfont/NimbusSans-CFF.dfont", 0, "OpenType - PS", "NimbusSans-Regular", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    const std::string path = test::macFixture(row.path);
    auto rf = test::openResourceFile(path);
    ASSERT_TRUE(rf);
    Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
    UxString printer, kind, psName;
    EXPECT_EQ(CollectMetaData(rf.get(), path, fond, row.style, &printer, &kind, nullptr, nullptr, nullptr, nullptr,
                              &psName, nullptr, nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(kind, row.kind);
    EXPECT_EQ(psName, row.psName);
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    EXPECT_EQ(printer, *row.printer ? folder + row.printer : std::string());
  }
}

TEST(ResourceMetadata, OutlineResourcesReadAsHeaders) {
  const std::string header = "typ1%!PS-AdobeFont-1.0: Outline-Name 1.0\n";
  test::ScratchDir dir;
  auto rf = test::writeAndOpen(
      dir, "Suitcase",
      ResourceForkBuilder()
          .add("FOND", 300, FondBuilder().entry(0, 0, 20).entry(0, 0, 10).entry(0, 1, 30).build())
          .add("sfnt", 20, test::bytesOf("/FontName /Second def "))
          .add("sfnt", 10, test::bytesOf(header.c_str()))
          .build());
  ASSERT_TRUE(rf);
  Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
  UxString psName;
  EXPECT_EQ(Collect_sfnt_MetaDataFromPrinterInfo(rf.get(), fond, 0, nullptr, nullptr, nullptr, nullptr, &psName,
                                                 nullptr, nullptr),
            kPSMetaDataRead);
  EXPECT_EQ(psName, "Outline-Name");  // the lowest ID only
  EXPECT_EQ(Collect_sfnt_MetaDataFromPrinterInfo(rf.get(), fond, 1, nullptr, nullptr, nullptr, nullptr, &psName,
                                                 nullptr, nullptr),
            kPSMetaDataNothingToDo);  // sfnt 30 is absent
  EXPECT_EQ(Collect_sfnt_MetaDataFromPrinterInfo(nullptr, fond, 0, nullptr, nullptr, nullptr, nullptr, &psName,
                                                 nullptr, nullptr),
            kPSMetaDataNothingToDo);
}

}  // namespace
}  // namespace typeprint
