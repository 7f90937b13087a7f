// The wider format reader on real files made from Debian's fonts (tests/fonts/formats/, see its
// script): expected values come from the reference tools (woff2sfnt, woff2_decompress, fontTools,
// fc-scan, t1utils), not from the code under test.
#include <gtest/gtest.h>

#include "analysis/checksums.h"
#include "builders/byte_edits.h"
#include "formats/archive_specifier.h"
#include "formats/binhex.h"
#include "formats/bitmap_font.h"
#include "formats/format_reader.h"
#include "formats/type1_font.h"
#include "formats/woff.h"
#include "formats/woff2.h"
#include "support/test_paths.h"
#include "typeprint.h"

namespace typeprint::formats {
namespace {

using test::Bytes;

std::string formatFont(const std::string& name) { return test::fontPath("formats/" + name); }

Bytes readBytes(const std::string& path) {
  const std::string text = test::readFile(path);
  return Bytes(text.begin(), text.end());
}

TFormatFile readOrFail(const std::string& path) {
  std::optional<TFormatFile> file = readFormatFile(path);
  EXPECT_TRUE(file) << path;
  return file.value_or(TFormatFile());
}

TEST(WoffDecoding, GivesTheSfntTheReferenceToolsGive) {
  // CRC-32s of woff2sfnt's and woff2_decompress's output for each file.
  const struct {
    const char* file;
    EDecodeStatus (*decode)(ByteSpan, std::vector<uint8_t>&);
    uint32_t referenceCrc;
  } rows[] = {
      {"DejaVuSans-subset.woff", decodeWoff, 0x6c6da89d},
      {"DejaVuSans-subset.woff2", decodeWoff2, 0x8d6f08d0},
      {"NimbusSans-Regular-subset.woff2", decodeWoff2, 0x1898a4dd},
      {"TypeprintVar.woff2", decodeWoff2, 0x73417482},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    std::vector<uint8_t> sfnt;
    const std::vector<uint8_t> encoded = readBytes(formatFont(row.file));
    ASSERT_EQ(row.decode(encoded, sfnt), EDecodeStatus::kDecoded);
    EXPECT_EQ(CChecksum::icrc(sfnt, 0), row.referenceCrc);
  }
}

TEST(WoffDecoding, RefusesHostileFiles) {
  const Bytes woff = readBytes(formatFont("DejaVuSans-subset.woff"));
  const Bytes woff2 = readBytes(formatFont("DejaVuSans-subset.woff2"));
  // WOFF header fields: length at 8, reserved at 14, totalSfntSize at 16; the first directory
  // entry at 44: offset 48, compLength 52, origLength 56. WOFF2: totalSfntSize at 16.
  Bytes middleFlipped = woff2;
  for (size_t i = woff2.size() / 2; i < woff2.size() / 2 + 16; ++i) middleFlipped[i] ^= 0x5A;
  BEReader directory = BEReader(woff.data(), woff.size()).from(44);
  uint32_t compressedTableAt = 0;
  while (directory.ok() && compressedTableAt == 0) {
    directory.u32();
    const uint32_t offset = directory.u32(), compLength = directory.u32(), origLength = directory.u32();
    directory.u32();
    if (compLength < origLength) compressedTableAt = offset;
  }
  const struct {
    const char* what;
    Bytes bytes;
    EDecodeStatus (*decode)(ByteSpan, std::vector<uint8_t>&);
    EDecodeStatus expected;
  } rows[] = {
      {"woff: empty", {}, decodeWoff, EDecodeStatus::kNotThisFormat},
      {"woff: truncated", test::truncated(woff, woff.size() - 1), decodeWoff, EDecodeStatus::kDamaged},
      {"woff: header only", test::truncated(woff, 44), decodeWoff, EDecodeStatus::kDamaged},
      {"woff: reserved set", test::patchU16(woff, 14, 1), decodeWoff, EDecodeStatus::kDamaged},
      {"woff: table past the end", test::patchU32(woff, 48, 0xFFFFFFF0), decodeWoff, EDecodeStatus::kDamaged},
      {"woff: stored longer than original", test::patchU32(woff, 52, 0xFFFF), decodeWoff, EDecodeStatus::kDamaged},
      {"woff: bomb, 2 GB table", test::patchU32(woff, 56, 0x7FFFFFFF), decodeWoff, EDecodeStatus::kTooLarge},
      {"woff: total size disagrees", test::patchU32(woff, 16, 12), decodeWoff, EDecodeStatus::kDamaged},
      {"woff: broken zlib stream", test::patchU32(woff, compressedTableAt + 4, 0xDEADBEEF), decodeWoff, EDecodeStatus::kDamaged},
      {"woff2: empty", {}, decodeWoff2, EDecodeStatus::kNotThisFormat},
      {"woff2: truncated", test::truncated(woff2, woff2.size() / 2), decodeWoff2, EDecodeStatus::kDamaged},
      {"woff2: bomb, 2 GB declared", test::patchU32(woff2, 16, 0x7FFFFFFF), decodeWoff2, EDecodeStatus::kTooLarge},
      {"woff2: damaged stream", middleFlipped, decodeWoff2, EDecodeStatus::kDamaged},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::vector<uint8_t> sfnt{1};
    EXPECT_EQ(row.decode(row.bytes, sfnt), row.expected);
    EXPECT_TRUE(sfnt.empty());
  }
}

TEST(FormatReader, ReadsSfntFacesInsideEveryContainer) {
  const struct {
    const char* file;
    const char* container;
    const char* contentKind;
    std::vector<std::pair<const char*, const char*>> faces;  // PostScript name, kind
  } rows[] = {
      {"DejaVuSans-subset.woff", "WOFF", "WOFF", {{"DejaVuSans", "TrueType"}}},
      {"DejaVuSans-subset.woff2", "WOFF2", "WOFF2", {{"DejaVuSans", "TrueType"}}},
      {"NimbusSans-Regular-subset.woff2", "WOFF2", "WOFF2", {{"NimbusSans-Regular", "OpenType - PS"}}},
      {"NimbusSans-subset.otc", "", "OpenType Collection",
       {{"NimbusSans-Regular", "OpenType - PS"}, {"NimbusSans-Bold", "OpenType - PS"}}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    const TFormatFile file = readOrFail(formatFont(row.file));
    EXPECT_EQ(file.container, row.container);
    EXPECT_EQ(file.contentKind, row.contentKind);
    ASSERT_EQ(file.faces.size(), row.faces.size());
    for (size_t i = 0; i < row.faces.size(); ++i) {
      EXPECT_EQ(file.faces[i].postScriptName, row.faces[i].first);
      EXPECT_EQ(file.faces[i].kind, row.faces[i].second);
    }
  }
  // A WOFF face carries the names and checksum of the font it was made from.
  const TFormatFile ttf = readOrFail(formatFont("DejaVuSans-subset.ttf"));
  const TFormatFile woff = readOrFail(formatFont("DejaVuSans-subset.woff"));
  ASSERT_EQ(ttf.faces.size(), 1u);
  ASSERT_EQ(woff.faces.size(), 1u);
  EXPECT_EQ(woff.faces[0].fullName, ttf.faces[0].fullName);
  EXPECT_EQ(woff.faces[0].version, ttf.faces[0].version);
  EXPECT_EQ(woff.faces[0].contentChecksum, 0x6c6da89du);
}

TEST(FormatReader, ReadsAxesAndNamedInstancesAsFontToolsDoes) {
  for (const char* name : {"TypeprintVar.ttf", "TypeprintVar.woff2"}) {
    SCOPED_TRACE(name);
    const TFormatFile file = readOrFail(formatFont(name));
    ASSERT_EQ(file.faces.size(), 1u);
    const TFormatFace& face = file.faces[0];
    ASSERT_EQ(face.axes.size(), 2u);
    EXPECT_EQ(face.axes[0].tag, "wght");
    EXPECT_EQ(face.axes[0].name, "Weight");
    EXPECT_EQ(face.axes[0].minimum, 100);
    EXPECT_EQ(face.axes[0].defaultValue, 400);
    EXPECT_EQ(face.axes[0].maximum, 900);
    EXPECT_EQ(face.axes[1].tag, "wdth");
    EXPECT_EQ(face.axes[1].minimum, 75);
    ASSERT_EQ(face.instances.size(), 3u);  // fontTools: 3
    EXPECT_EQ(face.instances[0].subfamilyName, "Thin");
    EXPECT_EQ(face.instances[0].postScriptName, "TypeprintVar-Thin");
    EXPECT_EQ(face.instances[2].subfamilyName, "Black Condensed");
    EXPECT_EQ(face.instances[2].postScriptName, "");
    EXPECT_EQ(face.instances[2].coordinates, (std::vector<double>{900, 75}));
  }
}

TEST(Type1, SameProgramGivesTheSameFaceInEveryContainer) {
  const char* files[] = {"NimbusSans-Regular.pfb", "NimbusSans-Regular.pfa", "NimbusSans-Regular.t1",
                         "NimbuSanReg.bin", "NimbuSanReg.hqx"};
  std::optional<uint32_t> checksum;
  for (const char* name : files) {
    SCOPED_TRACE(name);
    const TFormatFile file = readOrFail(formatFont(name));
    ASSERT_EQ(file.faces.size(), 1u);
    const TFormatFace& face = file.faces[0];
    EXPECT_EQ(face.postScriptName, "NimbusSans-Regular");
    EXPECT_EQ(face.family, "Nimbus Sans");
    EXPECT_EQ(face.kind, "PostScript");
    EXPECT_EQ(face.style, "Regular");
    if (!checksum) checksum = face.contentChecksum;
    EXPECT_EQ(face.contentChecksum, *checksum);
  }
}

TEST(Type1, CompanionFillsWhatTheHeaderLacks) {
  // The PFA with its name keys renamed, beside each companion in turn (FontForge's AFM and PFM).
  std::string pfa = test::readFile(formatFont("NimbusSans-Regular.pfa"));
  for (const char* key : {"/FontName", "/FamilyName", "/FullName"}) pfa.replace(pfa.find(key), 3, "/Xx");
  for (const char* companion : {"NimbusSans-Regular.afm", "NimbusSans-Regular.pfm"}) {
    SCOPED_TRACE(companion);
    test::ScratchDir dir;
    test::writeFile(dir.file("font.pfa"), pfa);
    const std::string extension = std::string(companion).substr(std::string(companion).size() - 4);
    test::writeFile(dir.file("font" + extension), test::readFile(formatFont(companion)));
    const TFormatFile file = readOrFail(dir.file("font.pfa"));
    ASSERT_EQ(file.faces.size(), 1u);
    EXPECT_EQ(file.faces[0].postScriptName, "NimbusSans-Regular");
    EXPECT_EQ(file.faces[0].family, "Nimbus Sans");
  }
}

TEST(Type1, DebianTextAndBinaryFormsOfOneFontAgree) {
  // fonts-urw-base35 ships each font as a .t1 (binary eexec) and a .pfb encrypted afresh.
  const std::string t1 = "/usr/share/fonts/type1/urw-base35/C059-Italic.t1";
  const std::string pfb = "/usr/share/fonts/X11/Type1/C059-Italic.pfb";
  if (test::readFile(t1).empty() || test::readFile(pfb).empty()) GTEST_SKIP() << "fonts-urw-base35 not installed";
  const TFormatFile a = readOrFail(t1), b = readOrFail(pfb);
  ASSERT_EQ(a.faces.size(), 1u);
  ASSERT_EQ(b.faces.size(), 1u);
  EXPECT_EQ(a.faces[0].contentChecksum, b.faces[0].contentChecksum);
  EXPECT_EQ(a.faces[0].style, "Italic");
  EXPECT_EQ(a.faces[0].family, "C059");
  const TFormatFile other = readOrFail("/usr/share/fonts/X11/Type1/C059-Roman.pfb");
  ASSERT_EQ(other.faces.size(), 1u);
  EXPECT_NE(other.faces[0].contentChecksum, a.faces[0].contentChecksum);
}

TEST(BitmapFonts, ReadAsFcScanDoes) {
  // fc-scan: family "Fixed", style "Regular", pixel size 7 for all three.
  for (const char* name : {"Fixed-5x7.pcf", "Fixed-5x7.pcf.gz", "Fixed-5x7.bdf"}) {
    SCOPED_TRACE(name);
    const TFormatFile file = readOrFail(formatFont(name));
    ASSERT_EQ(file.faces.size(), 1u);
    EXPECT_EQ(file.faces[0].family, "Fixed");
    EXPECT_EQ(file.faces[0].style, "Regular");
    EXPECT_EQ(file.faces[0].pixelSize, 7);
  }
  const TFormatFile pcf = readOrFail(formatFont("Fixed-5x7.pcf"));
  const TFormatFile gz = readOrFail(formatFont("Fixed-5x7.pcf.gz"));
  EXPECT_EQ(pcf.faces[0].contentChecksum, gz.faces[0].contentChecksum);  // the decompressed file's CRC
  EXPECT_EQ(gz.container, "gzip");
  EXPECT_EQ(gz.contentKind, "PCF");
}

TEST(MacBitmapFamilies, GiveFamilyStyleAndPointSizes) {
  const TFormatFile file = readOrFail(formatFont("FixedBitmap-bitmaps.bin"));
  ASSERT_EQ(file.faces.size(), 1u);
  EXPECT_EQ(file.faces[0].family, "Fixed Bitmap");
  EXPECT_EQ(file.faces[0].style, "Regular");
  EXPECT_EQ(file.faces[0].kind, "Bitmap");
  EXPECT_EQ(file.faces[0].pointSizes, std::vector<int>{7});
  EXPECT_NE(file.faces[0].contentChecksum, 0u);
}

TEST(BinHex, DecodesForksAndRefusesDamage) {
  const Bytes hqx = readBytes(formatFont("NimbuSanReg.hqx"));
  const std::optional<FileForks> macBinary = openForks(formatFont("NimbuSanReg.bin"));
  ASSERT_TRUE(macBinary);
  TMacFile mac;
  ASSERT_EQ(decodeBinHex(hqx, mac), EDecodeStatus::kDecoded);
  EXPECT_EQ(mac.name, "NimbuSanReg");
  EXPECT_EQ(mac.type, tag("LWFN"));
  EXPECT_EQ(mac.creator, macBinary->creator);
  EXPECT_EQ(Bytes(macBinary->resourceFork.begin(), macBinary->resourceFork.end()), mac.resourceFork);

  const size_t colon = std::string(hqx.begin(), hqx.end()).find("\n:") + 2;
  Bytes changed = hqx;
  changed[colon + 200] = changed[colon + 200] == 'a' ? 'b' : 'a';
  const struct {
    const char* what;
    Bytes bytes;
    EDecodeStatus expected;
  } rows[] = {
      {"not BinHex", test::bytesOf("hello"), EDecodeStatus::kNotThisFormat},
      {"cut before the closing colon", test::truncated(hqx, colon + 100), EDecodeStatus::kDamaged},
      {"one character changed", changed, EDecodeStatus::kDamaged},
      {"character outside the alphabet", test::patchU8(hqx, colon + 10, '~'), EDecodeStatus::kDamaged},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(decodeBinHex(row.bytes, mac), row.expected);
  }
}

TEST(BinHex, ArchivedFileGivesTheLibrarysOwnRecords) {
  TP_FontArray* direct = nullptr;
  ASSERT_EQ(TP_CreateSpecifier(test::fontPath("mac/a-dfont/NimbusSans-CFF.dfont").c_str(), 0, TP_ATTR_ALL, &direct),
            TP_STATUS_OK);
  std::unique_ptr<TP_FontArray> archived =
      createSpecifiersFromBinHex(formatFont("NimbusSans-CFF.dfont.hqx"), TP_ATTR_ALL);
  ASSERT_TRUE(archived);
  uint32_t directCount = 0, archivedCount = 0;
  TP_GetFontCount(direct, &directCount);
  TP_GetFontCount(archived.get(), &archivedCount);
  ASSERT_EQ(archivedCount, 2u);
  ASSERT_EQ(archivedCount, directCount);
  for (uint32_t i = 0; i < directCount; ++i) {
    char a[256] = {}, b[256] = {};
    TP_GetPostScriptName(direct, i, a, sizeof a);
    TP_GetPostScriptName(archived.get(), i, b, sizeof b);
    EXPECT_STREQ(a, b);
    EXPECT_STRNE(a, "");
  }
  TP_SpecifierFree(direct);
  EXPECT_FALSE(createSpecifiersFromBinHex(formatFont("NimbusSans-Regular.pfb"), TP_ATTR_ALL));
}

TEST(ContentKind, NotesNamesThatDisagreeWithTheBytes) {
  const Bytes otf = readBytes(formatFont("NimbusSans-Regular-subset.otf"));
  const Bytes ttf = readBytes(formatFont("DejaVuSans-subset.ttf"));
  const struct {
    const char* path;
    Bytes bytes;
    const char* note;
  } rows[] = {
      {"a/NimbusSans.otf", otf, ""},
      {"a/NimbusSans.ttf", otf, "named .ttf (TrueType) but its bytes are OpenType - PS"},
      {"a/DejaVu.otf", ttf, "named .otf (OpenType - PS) but its bytes are TrueType"},
      {"a/DejaVu.TTF", ttf, ""},
      {"a.d/DejaVu", ttf, "the file name has no extension; its bytes are TrueType"},
      {"a/DejaVu.dfont", ttf, ""},
      {"a/DejaVu.woff2", ttf, "named .woff2 (WOFF2) but its bytes are TrueType"},
      {"a/Nimbus.ttc", readBytes(formatFont("NimbusSans-subset.otc")), ""},
      {"a/5x7.pcf.gz", readBytes(formatFont("Fixed-5x7.pcf")), ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(kindNote(row.path, contentKindOf(row.bytes)), row.note);
  }
}

}  // namespace
}  // namespace typeprint::formats
