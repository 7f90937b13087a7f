// Identification of real font files through the C interface only. Expected values were taken
// independently: names with fontTools, file CRCs with Python's zlib.crc32, collection faces with
// a separate Python rebuild (see tests/fonts/sfnt/README.md).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "support/test_paths.h"
#include "typeprint.h"

namespace {

using typeprint::test::fontPath;

struct ArrayHolder {
  TP_FontArray* array = nullptr;
  ~ArrayHolder() {
    if (array) TP_SpecifierFree(array);
  }
};

std::string stringAttribute(TP_Status (*getter)(TP_FontArray*, uint32_t, char*, int32_t), TP_FontArray* a,
                            uint32_t i) {
  char buffer[512] = "<unset>";
  EXPECT_EQ(getter(a, i, buffer, sizeof buffer), TP_STATUS_OK);
  return buffer;
}

uint32_t numberAttribute(TP_Status (*getter)(TP_FontArray*, uint32_t, uint32_t*), TP_FontArray* a, uint32_t i) {
  uint32_t value = 0xDEADBEEF;
  EXPECT_EQ(getter(a, i, &value), TP_STATUS_OK);
  return value;
}

std::string xmlOf(TP_FontArray* array) {
  char probe[1];
  uint32_t size = 0;
  TP_GetXMLRepresentation(array, probe, &size);
  std::vector<char> buffer(size);
  TP_GetXMLRepresentation(array, buffer.data(), &size);
  return buffer.data();
}

TEST(CreateSpecifier, SingleFaceSfntFiles) {
  // A file without a family resource keeps kerning checksum 0; its face checksum and legacy
  // checksum are the CRC of the whole file.
  const struct {
    const char* file;
    const char* kind;
    const char* postScriptName;
    const char* family;
    const char* version;
    uint32_t crc;
    uint32_t size;
  } rows[] = {
      {"sfnt/DejaVuSans-kern.ttf", "TrueType", "DejaVuSans", "DejaVu Sans", "2.37", 0x6CEF5D8F, 22764},
      {"sfnt/DejaVuSans-DSIG.ttf", "OpenType - TT", "DejaVuSans", "DejaVu Sans", "2.37", 0x6044FE9C, 22788},
      {"sfnt/DejaVuSans-GPOS.ttf", "OpenType - TT", "DejaVuSans", "DejaVu Sans", "2.37", 0x94A13172, 17692},
      {"sfnt/NimbusSans-Regular.otf", "OpenType - PS", "NimbusSans-Regular", "Nimbus Sans", "1.00", 0x7400DF99,
       4016},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    ArrayHolder h;
    ASSERT_EQ(TP_CreateSpecifier(fontPath(row.file).c_str(), 0, TP_ATTR_ALL, &h.array), TP_STATUS_OK);
    uint32_t count = 0, index = 99;
    TP_GetFontCount(h.array, &count);
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(stringAttribute(TP_GetKindName, h.array, 0), row.kind);
    EXPECT_EQ(stringAttribute(TP_GetPostScriptName, h.array, 0), row.postScriptName);
    EXPECT_EQ(stringAttribute(TP_GetFamilyName, h.array, 0), row.family);
    EXPECT_EQ(stringAttribute(TP_GetVersion, h.array, 0), row.version);
    EXPECT_EQ(stringAttribute(TP_GetPlatform, h.array, 0), "crossplatform");
    EXPECT_EQ(stringAttribute(TP_GetPrinterFont, h.array, 0), "");
    EXPECT_EQ(numberAttribute(TP_GetTypeprintChecksum, h.array, 0), row.crc);
    EXPECT_EQ(numberAttribute(TP_GetLegacyTypeprintChecksum, h.array, 0), row.crc);
    EXPECT_EQ(numberAttribute(TP_GetKerningChecksum, h.array, 0), 0u);
    EXPECT_EQ(numberAttribute(TP_GetOutlineFileSize, h.array, 0), row.size);
    // No family resource: the face is style 0 of family -1.
    EXPECT_EQ(TP_GetFontIndexForFONDResourceID(h.array, -1, 0, &index), TP_STATUS_OK);
    EXPECT_EQ(index, 0u);
  }
}

TEST(CreateSpecifier, CollectionsGiveOneRecordPerFace) {
  const struct {
    const char* file;
    std::vector<const char*> names;
    std::vector<uint32_t> crcs, kerning;
  } rows[] = {
      {"sfnt/DejaVuSans-3faces.ttc",
       {"DejaVuSans", "DejaVuSans-Bold", "DejaVuSans-Oblique"},
       {0xE902AFD2, 0x66F9F536, 0x369AC099},
       {0xFA0DFAA2, 0xFEACFCF3, 0xFF04FECA}},
      {"sfnt/DejaVuSans-2faces-v2.ttc", {"DejaVuSans", "DejaVuSans-Bold"}, {0xEAE6122C, 0x52E28046},
       {0xFA0DFAA2, 0xFD1DFB64}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    ArrayHolder h;
    ASSERT_EQ(TP_CreateSpecifier(fontPath(row.file).c_str(), 0, TP_ATTR_ALL, &h.array), TP_STATUS_OK);
    uint32_t count = 0, index = 0;
    TP_GetFontCount(h.array, &count);
    ASSERT_EQ(count, row.names.size());
    for (uint32_t i = 0; i < count; ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(stringAttribute(TP_GetKindName, h.array, i), "TrueType Collection");
      EXPECT_EQ(stringAttribute(TP_GetPostScriptName, h.array, i), row.names[i]);
      EXPECT_EQ(numberAttribute(TP_GetTypeprintChecksum, h.array, i), row.crcs[i]);
      EXPECT_EQ(numberAttribute(TP_GetKerningChecksum, h.array, i), row.kerning[i]);
      EXPECT_EQ(numberAttribute(TP_GetLegacyTypeprintChecksum, h.array, i), 0u);
      EXPECT_EQ(numberAttribute(TP_GetOutlineFileSize, h.array, i), 0u);
    }
    // Collection faces carry no family resource and keep style -1.
    EXPECT_EQ(TP_GetFontIndexForFONDResourceID(h.array, -1, -1, &index), TP_STATUS_OK);
  }
}

// Mac families. Checksums computed with fontTools' resource reader and Python's zlib: the CRC of
// the style's kerning pairs, continued over the printer file's POST resources (PostScript faces)
// or the style's sfnt resource (TrueType faces); kerning checksums as byte sums of the style's
// kerning entries.
struct MacFace {
  const char* postScriptName;
  int16_t style;
  uint32_t crc, kerning, outlineSize;
  const char* printerFile;
};

void expectMacFamily(const std::string& path, const char* kind, int16_t fondID, const std::vector<MacFace>& faces) {
  SCOPED_TRACE(path);
  ArrayHolder h;
  ASSERT_EQ(TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &h.array), TP_STATUS_OK);
  uint32_t count = 0;
  TP_GetFontCount(h.array, &count);
  ASSERT_EQ(count, faces.size());
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  for (const MacFace& face : faces) {
    SCOPED_TRACE(face.postScriptName);
    uint32_t i = 99;
    ASSERT_EQ(TP_GetFontIndexForFONDResourceID(h.array, fondID, face.style, &i), TP_STATUS_OK);
    EXPECT_EQ(stringAttribute(TP_GetKindName, h.array, i), kind);
    EXPECT_EQ(stringAttribute(TP_GetPostScriptName, h.array, i), face.postScriptName);
    EXPECT_EQ(stringAttribute(TP_GetPlatform, h.array, i), "mac");
    EXPECT_EQ(numberAttribute(TP_GetTypeprintChecksum, h.array, i), face.crc);
    EXPECT_EQ(numberAttribute(TP_GetLegacyTypeprintChecksum, h.array, i), face.crc);
    EXPECT_EQ(numberAttribute(TP_GetKerningChecksum, h.array, i), face.kerning);
    EXPECT_EQ(numberAttribute(TP_GetOutlineFileSize, h.array, i), face.outlineSize);
    EXPECT_EQ(stringAttribute(TP_GetPrinterFont, h.array, i), *face.printerFile ? folder + face.printerFile : "");
  }
}

TEST(CreateSpecifier, PostScriptFamilyFindsItsPrinterFiles) {
  const std::vector<MacFace> faces = {
      {"NimbusSans-Regular", 0, 0xA3D01D2B, 0x000129FD, 5807, "NimbuSanReg"},
      {"NimbusSans-Bold", 1, 0x731D575A, 0x00013ED0, 6080, "NimbuSanBol"},
      {"NimbusSans-Italic", 2, 0x20929F59, 0x00013AC7, 11013, "NimbuSanIta"},
      {"NimbusSans-BoldItalic", 3, 0x8F800AB9, 0x00012ABE, 6443, "NimbuSanBolIta"},
  };
  for (const char* form : {"macbinary", "appledouble"})
    expectMacFamily(fontPath(std::string("mac/c-type1-family/") + form + "/NimbusSans"), "PostScript", 7260, faces);
}

TEST(CreateSpecifier, DataForkSuitcaseInEveryWrapping) {
  const std::vector<MacFace> faces = {
      {"DejaVuSans", 0, 0xC8875654, 0x000043BD, 48369, ""},
      {"DejaVuSans-Bold", 1, 0x49D0B498, 0x00002993, 48369, ""},
  };
  expectMacFamily(fontPath("mac/a-dfont/DejaVuSans.dfont"), "TrueType", 13490, faces);
  expectMacFamily(fontPath("mac/a-dfont/DejaVuSans.dfont.bin"), "TrueType", 13490, faces);
}

TEST(CreateSpecifier, MaskDecidesWhatIsCollected) {
  ArrayHolder h;
  const uint32_t mask = TP_ATTR_KIND_NAME | TP_ATTR_CHECKSUM;
  ASSERT_EQ(TP_CreateSpecifier(fontPath("sfnt/DejaVuSans-3faces.ttc").c_str(), 0, mask, &h.array), TP_STATUS_OK);
  uint32_t count = 0, value = 0;
  TP_GetFontCount(h.array, &count);
  EXPECT_EQ(count, 1u);  // without PostScript names every face has the same (empty) name
  char buffer[64];
  EXPECT_EQ(TP_GetPostScriptName(h.array, 0, buffer, sizeof buffer), TP_STATUS_NOT_COLLECTED);
  EXPECT_EQ(TP_GetKerningChecksum(h.array, 0, &value), TP_STATUS_NOT_COLLECTED);
  EXPECT_EQ(numberAttribute(TP_GetTypeprintChecksum, h.array, 0), 0xE902AFD2u);
}

TEST(CreateSpecifier, RefusesWhatIsNoFace) {
  typeprint::test::ScratchDir dir;
  const std::string truncated = dir.file("cut.ttf"), empty = dir.file("empty.otf"), text = dir.file("notes.ttc");
  typeprint::test::writeFile(truncated, typeprint::test::readFile(fontPath("sfnt/DejaVuSans-kern.ttf")).substr(0, 300));
  typeprint::test::writeFile(empty, "");
  typeprint::test::writeFile(text, "ttcf but not really a collection");
  TP_FontArray* out = reinterpret_cast<TP_FontArray*>(0x1);
  const struct { const char* what; std::string path; } rows[] = {
      {"missing file", dir.file("absent.ttf")},
      {"a folder", dir.path()},
      {"names cut off", truncated},
      {"empty file", empty},
      {"text named as a collection", text},
      {"Type 1 program: identified through its Mac or metrics companions only", fontPath("type1/NimbusRoman-Regular.pfb")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TP_CreateSpecifier(row.path.c_str(), 0, TP_ATTR_ALL, &out), TP_STATUS_FAILED);
    EXPECT_EQ(out, reinterpret_cast<TP_FontArray*>(0x1));  // untouched on failure
  }
  EXPECT_EQ(TP_CreateSpecifier(nullptr, 0, TP_ATTR_ALL, &out), TP_STATUS_FAILED);
  EXPECT_EQ(TP_CreateSpecifier(fontPath("sfnt/DejaVuSans-kern.ttf").c_str(), 0, TP_ATTR_ALL, nullptr),
            TP_STATUS_FAILED);
}

// Every committed fixture, for the tests that run over many files.
std::vector<std::string> fixtureFonts() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(fontPath(""))) {
    const std::string name = entry.path().filename().string();
    if (entry.is_regular_file() && name.rfind("._", 0) != 0 && entry.path().extension() != ".md" &&
        entry.path().extension() != ".py" && entry.path().extension() != ".tsv" &&
        entry.path().string().find("/.AppleDouble/") == std::string::npos)
      files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// The XML of every file, "" for files that give no face.
std::vector<std::string> identifyAll(const std::vector<std::string>& files) {
  std::vector<std::string> xml;
  for (const std::string& path : files) {
    ArrayHolder h;
    xml.push_back(TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &h.array) == TP_STATUS_OK ? xmlOf(h.array) : "");
  }
  return xml;
}

TEST(CreateSpecifier, ThreadsGiveTheSameResultsAsOneThread) {
  const std::vector<std::string> files = fixtureFonts();
  ASSERT_GT(files.size(), 20u);
  const std::vector<std::string> sequential = identifyAll(files);
  std::vector<std::vector<std::string>> parallel(4);
  std::vector<std::thread> threads;
  for (auto& result : parallel) threads.emplace_back([&files, &result] { result = identifyAll(files); });
  for (auto& t : threads) t.join();
  for (const auto& result : parallel) EXPECT_EQ(result, sequential);
  EXPECT_GT(std::count_if(sequential.begin(), sequential.end(), [](const std::string& x) { return !x.empty(); }), 5);
}

std::string plistOf(TP_FontArray* array) {
  char probe[1];
  uint32_t size = 0;
  TP_GetPropertyListRepresentation(array, probe, &size);
  std::vector<char> buffer(size);
  TP_GetPropertyListRepresentation(array, buffer.data(), &size);
  return buffer.data();
}

// Checksums of 0x80000000 and above saturate when read back, by design of the exchange forms.
bool checksumsReadBack(TP_FontArray* array) {
  uint32_t count = 0;
  TP_GetFontCount(array, &count);
  for (uint32_t i = 0; i < count; ++i) {
    uint32_t value = 0;
    if (TP_GetTypeprintChecksum(array, i, &value) == TP_STATUS_OK && value >= 0x80000000u) return false;
    if (TP_GetKerningChecksum(array, i, &value) == TP_STATUS_OK && value >= 0x80000000u) return false;
  }
  return true;
}

// Every fixture and every installed font: creation never fails hard, and both exchange forms
// come back as the same document.
TEST(CreateSpecifier, ExchangeFormsRoundTripOverRealFonts) {
  std::vector<std::string> files = fixtureFonts();
  if (std::filesystem::is_directory("/usr/share/fonts"))
    for (const auto& entry : std::filesystem::recursive_directory_iterator("/usr/share/fonts"))
      if (entry.is_regular_file()) files.push_back(entry.path().string());
  size_t checked = 0;
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    ArrayHolder created;
    if (TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &created.array) != TP_STATUS_OK) continue;
    if (!checksumsReadBack(created.array)) continue;
    const std::string xml = xmlOf(created.array), plist = plistOf(created.array);
    ArrayHolder fromXML, fromPlist;
    ASSERT_EQ(TP_CreateSpecifierFromXML(xml.c_str(), &fromXML.array), TP_STATUS_OK);
    ASSERT_EQ(TP_CreateSpecifierFromPropertyList(plist.c_str(), &fromPlist.array), TP_STATUS_OK);
    EXPECT_EQ(xmlOf(fromXML.array), xml);
    EXPECT_EQ(plistOf(fromPlist.array), plist);
    ++checked;
  }
  EXPECT_GT(checked, 5u);
}

}  // namespace
