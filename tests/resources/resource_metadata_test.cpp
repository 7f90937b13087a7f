// Names of resource-fork faces from their printer files: the fixture Type 1 family in both forms,
// the POST walk's limits, and multiple-master, CID and OCF families.
#include <gtest/gtest.h>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/resource_metadata.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::ResourceForkBuilder;

struct Names {
  UxString printerPath, kind, foundry, family, version, postScriptName, styledName, fullName;
};

PSHeaderOutcome collectMac(const test::ResourceFilePtr& rf, const std::string& path, short style, Names* n) {
  return CollectPSMetaDataMac(rf.get(), path, rf->at(kTypeFOND, 1), style, &n->printerPath, &n->kind, &n->foundry, &n->family,
                              &n->version, &n->postScriptName, &n->styledName, &n->fullName);
}

// A POST resource: segment type, a zero byte, then the text.
Bytes post(uint8_t segment, const std::string& text, size_t size = 0) {
  Bytes b(2 + text.size());
  b[0] = segment;
  std::copy(text.begin(), text.end(), b.begin() + 2);
  if (size) b.resize(size, ' ');
  return b;
}

// A suitcase of one family whose plain face is Sample-One (printer file SamplOne), held by a
// resource of `type` when one is given.
Bytes sampleFamily(const std::string& name = "Sample", int16_t id = 300, int16_t pointSize = 12,
                   const char* type = nullptr, const Bytes& face = {}) {
  ResourceForkBuilder fork;
  fork.add("FOND", id, test::FondBuilder().familyID(id).postScriptNames("Sample", {{0, "-One"}}).entry(pointSize, 0, 500).build(), name);
  if (type) fork.add(std::string(type) == "sfnt" ? "sfnt" : "NFNT", 500, face);
  return fork.build();
}

TEST(ResourceMetadata, FixtureFacesReadTheirPrinterFiles) {
  // The fixture README and the dumper's POST 501 text: /FontName, /FamilyName and /version.
  const char* versions[] = {"1.00", "1.00", "1.10", "1.10"};
  const char* psNames[] = {"NimbusSans-Regular", "NimbusSans-Bold", "NimbusSans-Italic", "NimbusSans-BoldItalic"};
  const char* files[] = {"NimbuSanReg", "NimbuSanBol", "NimbuSanIta", "NimbuSanBolIta"};
  for (const char* form : {"macbinary", "appledouble"}) {
    const std::string folder = test::macFixture(std::string("c-type1-family/") + form + "/");
    auto rf = test::openResourceFile(folder + "NimbusSans");
    for (short style = 0; style < 4; ++style) {
      SCOPED_TRACE(std::string(form) + " style " + std::to_string(style));
      Names n;
      EXPECT_EQ(collectMac(rf, folder + "NimbusSans", style, &n), PSHeaderOutcome::Read);
      EXPECT_EQ(n.printerPath, folder + files[style]);
      EXPECT_EQ(n.kind + "|" + n.family + "|" + n.version, std::string("PostScript|Nimbus Sans|") + versions[style]);
      EXPECT_EQ(n.postScriptName + "|" + n.fullName, std::string(psNames[style]) + "|" + psNames[style]);
      EXPECT_EQ(n.styledName, "Nimbus Sans");  // the family resource's name
    }
  }
}

TEST(ResourceMetadata, ThePOSTWalkReadsOnlyTheHeaderResources) {
  const std::string head = "%!PS-AdobeFont-1.0: Header-Line 1.0\n/FontName /First-Name def\n";
  const auto lwfn = [](std::vector<std::pair<int16_t, Bytes>> posts) {
    ResourceForkBuilder fork;
    for (auto& [id, bytes] : posts) fork.add("POST", id, bytes);
    return fork.build();
  };
  // Without a /FamilyName, the family is the header line's; without that, the suitcase's file
  // name. The PostScript name loses its spaces and brackets; Mac Roman bytes become UTF-8.
  const struct { const char* what; Bytes file; PSHeaderOutcome status; std::string psName, family, fullName; } rows[] = {
      {"501 and 502 read", lwfn({{501, post(1, head)}, {502, post(1, "/FamilyName (Second)")}, {503, post(5, "")}}),
       PSHeaderOutcome::Read, "First-Name", "Second", "First-Name"},
      {"a 2048-byte 502 ends the walk", lwfn({{501, post(1, head)}, {502, post(1, "/FamilyName (Second) ", 2048)}}),
       PSHeaderOutcome::Read, "First-Name", "Header", "First-Name"},
      {"names cleaned", lwfn({{501, post(1, "/FontName (Caf\x8E [X]) def\n")}}), PSHeaderOutcome::Read, "Caf\xC3\xA9X",
       "Suitcase", "Caf\xC3\xA9 [X]"},
      {"no 501: the style table's name", lwfn({{502, post(1, head)}}), PSHeaderOutcome::NothingToDo, "Sample-One", "", ""},
      {"no resource map", test::bytesOf(head.c_str()), PSHeaderOutcome::NoPrinterFile, "Sample-One", "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    test::writeFile(dir.file("SamplOne"), std::string(row.file.begin(), row.file.end()));
    auto rf = test::writeAndOpen(dir, "Suitcase", sampleFamily());
    Names n;
    EXPECT_EQ(collectMac(rf, dir.file("Suitcase"), 0, &n), row.status);
    EXPECT_EQ(n.printerPath, dir.file("SamplOne"));
    EXPECT_EQ(n.postScriptName + "|" + n.family + "|" + n.fullName, row.psName + "|" + row.family + "|" + row.fullName);
    EXPECT_EQ(n.styledName, "Sample");
  }
}

TEST(ResourceMetadata, KindsOfMultipleMasterAndDoubleByteFamilies) {
  const struct { const char* what; Bytes fork; PSHeaderOutcome status; std::string kind, styled, psName; } rows[] = {
      {"multiple master", sampleFamily("%MSampleMM_215"), PSHeaderOutcome::NoPrinterFile, "PostScript - MM", "SampleMM",
       "Sample"},
      {"CID: Type 1 outline", sampleFamily("Ryumin", 16384, 0, "sfnt", test::bytesOf("typ1....")),
       PSHeaderOutcome::NothingToDo, "CID", "Ryumin", ""},
      {"CID by name", sampleFamily("A-CIDRyumin", 16384, 0, "sfnt", test::bytesOf("true....")), PSHeaderOutcome::NothingToDo,
       "CID", "A-CIDRyumin", ""},
      {"OCF: bitmaps only", sampleFamily("Gothic", 16384, 12, "NFNT", Bytes(26)), PSHeaderOutcome::NoPrinterFile, "OCF",
       "Gothic", "Sample-One"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "Suitcase", row.fork);
    Names n;
    EXPECT_EQ(collectMac(rf, dir.file("Suitcase"), 0, &n), row.status);
    EXPECT_EQ(n.kind + "|" + n.styledName + "|" + n.postScriptName, row.kind + "|" + row.styled + "|" + row.psName);
  }
}

// A printer file that keeps its header in the data fork: only the first 6000 bytes are read.
TEST(ResourceMetadata, DataForkHeadersAreReadToSixThousandBytes) {
  test::ScratchDir dir;
  const std::string key = "/FamilyName (Sample) readonly def\n";
  test::writeFile(dir.file("early"), key + std::string(6000, ' '));
  test::writeFile(dir.file("late"), std::string(6000, ' ') + key);
  const struct { const char* what; std::string path; PSHeaderOutcome status; const char* family; } rows[] = {
      {"key within the first 6000 bytes", dir.file("early"), PSHeaderOutcome::Read, "Sample"},
      {"key after them", dir.file("late"), PSHeaderOutcome::Read, ""},
      {"missing file", dir.file("absent"), PSHeaderOutcome::NoPrinterFile, ""},
      {"no path", "", PSHeaderOutcome::NothingToDo, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names n;
    n.printerPath = row.path;
    EXPECT_EQ(CollectPSMetaDataFromFile("", &n.printerPath, &n.kind, &n.foundry, &n.family, &n.version,
                                        &n.postScriptName, &n.styledName, &n.fullName),
              row.status);
    EXPECT_EQ(std::string(n.family), row.family);
  }
}

}  // namespace
}  // namespace typeprint
