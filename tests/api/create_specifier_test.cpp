// Identification of real font files through the C interface only. Expected values were taken
// independently: names with fontTools, file CRCs with Python's zlib.crc32, collection faces with
// a separate Python rebuild (see tests/fonts/sfnt/README.md).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/test_paths.h"
#include "typeprint.h"

namespace {

using typeprint::test::fontPath;

struct ArrayHolder {
  TP_FontArray* array = nullptr;
  ~ArrayHolder() { TP_SpecifierFree(array); }  // a null array answers 1 and frees nothing
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

// Asks the writer for the size with a zero capacity, then writes into a buffer of that size.
std::string documentOf(TP_Status (*writer)(TP_FontArray*, char*, uint32_t*), TP_FontArray* array) {
  char probe[1];
  uint32_t size = 0;
  writer(array, probe, &size);
  std::vector<char> buffer(size);
  EXPECT_EQ(writer(array, buffer.data(), &size), TP_STATUS_OK);
  return buffer.data();
}

// One face as the getters report it. The Mac family checksums are those of
// tests/fonts/mac/family_checksums.tsv, worked out from the resource bytes with Python's zlib.
struct Face {
  const char* postScriptName;
  int16_t style;  // looked up with the family ID; -1 (collection faces) are taken in order
  uint32_t crc, legacyCrc, kerning, outlineSize;
  const char* printerFile = "";  // beside the font; "" when the outlines are in the font file
};

// A plain sfnt is style 0 of family -1: kerning checksum 0, face and legacy checksums the CRC of
// the whole file. Collection faces have no legacy checksum nor outline size.
// The names-table reader on raw sfnt bytes; its three middle inputs are handed through unused.
TEST(CreateSpecifier, PostScriptNameFromRawSfntBytes) {
  const std::string font = typeprint::test::readFile(fontPath("sfnt/NimbusSans-Regular.otf"));
  char buffer[64] = "untouched";
  int resourceFile = 0;
  char* handleData = nullptr;
  TP_GetPostScriptNameFromNamesTable(font.data(), 12, &resourceFile, &handleData, 0, buffer, sizeof buffer);
  EXPECT_STREQ(buffer, "untouched");  // no names in 12 bytes: the buffer is left alone
  TP_GetPostScriptNameFromNamesTable(font.data(), uint32_t(font.size()), &resourceFile, &handleData, 0, buffer, 8);
  EXPECT_STREQ(buffer, "NimbusS");
}

TEST(CreateSpecifier, FacesOfRealFiles) {
  const std::vector<Face> nimbus = {
      {"NimbusSans-Regular", 0, 0xA3D01D2B, 0xA3D01D2B, 0x000129FD, 5807, "NimbuSanReg"},
      {"NimbusSans-Bold", 1, 0x731D575A, 0x731D575A, 0x00013ED0, 6080, "NimbuSanBol"},
      {"NimbusSans-Italic", 2, 0x20929F59, 0x20929F59, 0x00013AC7, 11013, "NimbuSanIta"},
      {"NimbusSans-BoldItalic", 3, 0x8F800AB9, 0x8F800AB9, 0x00012ABE, 6443, "NimbuSanBolIta"},
  };
  const std::vector<Face> dejaVu = {{"DejaVuSans", 0, 0xC8875654, 0xC8875654, 0x000043BD, 48369},
                                    {"DejaVuSans-Bold", 1, 0x49D0B498, 0x49D0B498, 0x00002993, 48369}};
  const char* const cross = "crossplatform";
  const struct { const char *file, *kind, *platform; int16_t fondID; std::vector<Face> faces; } rows[] = {
      {"sfnt/DejaVuSans-kern.ttf", "TrueType", cross, -1, {{"DejaVuSans", 0, 0x6CEF5D8F, 0x6CEF5D8F, 0, 22764}}},
      {"sfnt/DejaVuSans-DSIG.ttf", "OpenType - TT", cross, -1, {{"DejaVuSans", 0, 0x6044FE9C, 0x6044FE9C, 0, 22788}}},
      {"sfnt/NimbusSans-Regular.otf", "OpenType - PS", cross, -1,
       {{"NimbusSans-Regular", 0, 0x7400DF99, 0x7400DF99, 0, 4016}}},
      {"sfnt/DejaVuSans-3faces.ttc", "TrueType Collection", cross, -1,
       {{"DejaVuSans", -1, 0xE902AFD2, 0, 0xFA0DFAA2, 0}, {"DejaVuSans-Bold", -1, 0x66F9F536, 0, 0xFEACFCF3, 0},
        {"DejaVuSans-Oblique", -1, 0x369AC099, 0, 0xFF04FECA, 0}}},
      {"sfnt/DejaVuSans-2faces-v2.ttc", "TrueType Collection", cross, -1,
       {{"DejaVuSans", -1, 0xEAE6122C, 0, 0xFA0DFAA2, 0}, {"DejaVuSans-Bold", -1, 0x52E28046, 0, 0xFD1DFB64, 0}}},
      {"mac/c-type1-family/macbinary/NimbusSans", "PostScript", "mac", 7260, nimbus},
      {"mac/c-type1-family/appledouble/NimbusSans", "PostScript", "mac", 7260, nimbus},
      {"mac/a-dfont/DejaVuSans.dfont", "TrueType", "mac", 13490, dejaVu},
      {"mac/a-dfont/DejaVuSans.dfont.bin", "TrueType", "mac", 13490, dejaVu},
      {"mac/a-dfont/NimbusSans-CFF.dfont", "OpenType - PS", "mac", 7260,
       {{"NimbusSans-Regular", 0, 0x326A540B, 0x326A540B, 0x000129FD, 10958},
        {"NimbusSans-Bold", 1, 0x95AF654E, 0x95AF654E, 0x00013ED0, 10958}}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    const std::string path = fontPath(row.file), folder = path.substr(0, path.rfind('/') + 1);
    ArrayHolder h;
    ASSERT_EQ(TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &h.array), TP_STATUS_OK);
    uint32_t count = 0;
    TP_GetFontCount(h.array, &count);
    ASSERT_EQ(count, row.faces.size());
    for (uint32_t k = 0; k < count; ++k) {
      const Face& face = row.faces[k];
      SCOPED_TRACE(face.postScriptName);
      uint32_t i = 99;
      ASSERT_EQ(TP_GetFontIndexForFONDResourceID(h.array, row.fondID, face.style, &i), TP_STATUS_OK);
      if (face.style < 0) i = k;
      EXPECT_EQ(stringAttribute(TP_GetKindName, h.array, i), row.kind);
      EXPECT_EQ(stringAttribute(TP_GetPostScriptName, h.array, i), face.postScriptName);
      EXPECT_EQ(stringAttribute(TP_GetPlatform, h.array, i), row.platform);
      EXPECT_EQ(numberAttribute(TP_GetTypeprintChecksum, h.array, i), face.crc);
      EXPECT_EQ(numberAttribute(TP_GetLegacyTypeprintChecksum, h.array, i), face.legacyCrc);
      EXPECT_EQ(numberAttribute(TP_GetKerningChecksum, h.array, i), face.kerning);
      EXPECT_EQ(numberAttribute(TP_GetOutlineFileSize, h.array, i), face.outlineSize);
      EXPECT_EQ(stringAttribute(TP_GetPrinterFont, h.array, i), *face.printerFile ? folder + face.printerFile : "");
    }
  }
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
  using namespace typeprint::test;
  ScratchDir dir;
  writeFile(dir.file("cut.ttf"), readFile(fontPath("sfnt/DejaVuSans-kern.ttf")).substr(0, 300));
  writeFile(dir.file("notes.ttc"), "ttcf but not really a collection");
  TP_FontArray* out = reinterpret_cast<TP_FontArray*>(0x1);
  const struct { const char* what; std::string path; } rows[] = {
      {"missing file", dir.file("absent.ttf")},
      {"a folder", dir.path()},
      {"names cut off", dir.file("cut.ttf")},
      {"text named as a collection", dir.file("notes.ttc")},
      {"Type 1 program: known only through its Mac or metrics companions", fontPath("type1/NimbusRoman-Regular.pfb")},
      {"a fork companion is no font of its own", fontPath("mac/b-suitcase-truetype/appledouble/._DejaVuSans")},
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

// Every file below `folder`, fonts or not: what gives no face is skipped where it matters.
std::vector<std::string> filesBelow(const std::string& folder) {
  std::vector<std::string> files;
  if (std::filesystem::is_directory(folder))
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
      if (entry.is_regular_file()) files.push_back(entry.path().string());
  return files;
}

// The XML and property list of a file's faces; both empty when it gives none.
std::pair<std::string, std::string> documentsOf(const std::string& path) {
  ArrayHolder h;
  if (TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &h.array) != TP_STATUS_OK) return {};
  return {documentOf(TP_GetXMLRepresentation, h.array), documentOf(TP_GetPropertyListRepresentation, h.array)};
}

TEST(CreateSpecifier, ThreadsGiveTheSameResultsAsOneThread) {
  const std::vector<std::string> files = filesBelow(fontPath(""));
  // Each run also asks the style and classification tables, so that run alone (as the thread
  // sanitizer runs it) the threads race for the first use of every shared table.
  auto identifyAll = [&files] {
    std::vector<std::pair<std::string, std::string>> documents;
    for (const std::string& path : files) documents.push_back(documentsOf(path));
    char style[64] = "", classification[64] = "";
    char* names[] = {style};
    uint32_t count = 0;
    TP_GetStyles("Garamond-BoldItalic", "Garamond Bold Italic", 1, sizeof style, &count, names);
    TP_GetClassificationFromFamily("DejaVu Sans", nullptr, classification, sizeof classification);
    documents.emplace_back(style, classification);
    return documents;
  };
  std::vector<decltype(identifyAll())> parallel(4);
  std::vector<std::thread> threads;
  for (auto& result : parallel) threads.emplace_back([&] { result = identifyAll(); });
  for (auto& t : threads) t.join();
  const auto sequential = identifyAll();
  EXPECT_EQ(sequential.back(), std::make_pair(std::string("Bold"), std::string("Sans Serif")));
  for (const auto& result : parallel) EXPECT_EQ(result, sequential);
  EXPECT_GT(std::count_if(sequential.begin(), sequential.end(), [](const auto& d) { return !d.first.empty(); }), 10);
}

// Every fixture and every installed font: creation never fails hard, and both exchange forms
// come back as the same document. Checksums from 0x80000000 up saturate when read, by design.
TEST(CreateSpecifier, ExchangeFormsRoundTripOverRealFonts) {
  std::vector<std::string> files = filesBelow(fontPath("")), installed = filesBelow("/usr/share/fonts");
  files.insert(files.end(), installed.begin(), installed.end());
  const std::regex highChecksum("Checksum>[89A-F]");
  size_t checked = 0;
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    const auto [xml, plist] = documentsOf(path);
    if (xml.empty() || std::regex_search(xml, highChecksum)) continue;
    ArrayHolder fromXML, fromPlist;
    ASSERT_EQ(TP_CreateSpecifierFromXML(xml.c_str(), &fromXML.array), TP_STATUS_OK);
    ASSERT_EQ(TP_CreateSpecifierFromPropertyList(plist.c_str(), &fromPlist.array), TP_STATUS_OK);
    EXPECT_EQ(documentOf(TP_GetXMLRepresentation, fromXML.array), xml);
    EXPECT_EQ(documentOf(TP_GetPropertyListRepresentation, fromPlist.array), plist);
    ++checked;
  }
  EXPECT_GT(checked, 5u);
}

}  // namespace
