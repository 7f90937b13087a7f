#include "analysis/ttc_split.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

#include "analysis/checksums.h"
#include "analysis/name_table.h"
#include "builders/ttc_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::TtcBuilder;

uint32_t zlibCrc(const Bytes& b) { return uint32_t(crc32(0, b.data(), uInt(b.size()))); }
std::string text(const Bytes& b) { return std::string(b.begin(), b.end()); }

// Two faces sharing "glyf" (10 bytes: padded) and "name"; each has its own "kern".
Bytes twoFaceCollection(uint32_t version = 0x00010000) {
  TtcBuilder b(version);
  int glyf = b.addTable(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  int name = b.addTable(test::nameTable({{1, 0, 0, 6, test::asciiBytes("Shared-Name")}}));
  int kernA = b.addTable(Bytes{0, 0, 0, 1, 0, 0, 0, 2}), kernB = b.addTable(Bytes{0, 0, 0, 3, 0, 0, 0, 4});
  b.addTable(Bytes(64, 0xEE));  // keeps each face smaller than the file
  b.face({{"glyf", glyf}, {"kern", kernA}, {"name", name}});
  b.face({{"glyf", glyf}, {"kern", kernB}, {"name", name}});
  return b.build();
}

TEST(TtcSplit, HeaderAndRebuildStatuses) {
  test::ScratchDir dir;
  const Bytes good = twoFaceCollection();
  const struct { const char* what; Bytes bytes; int status; unsigned faces; } headers[] = {
      {"version 1.0", good, kTTCSuccess, 2},
      {"version 2.0 with signature fields", twoFaceCollection(0x00020000), kTTCSuccess, 2},
      {"empty", {}, kTTCBadVersion, 0},
      {"not ttcf", test::patchU32(good, 0, 0x4F54544F), kTTCNotCollection, 0},
      {"version 3.0", test::patchU32(good, 4, 0x00030000), kTTCBadVersion, 0},
      {"12 bytes", test::truncated(good, 12), kTTCDamaged, 0},
  };
  for (const auto& row : headers) {
    SCOPED_TRACE(row.what);
    test::writeFile(dir.file("c.ttc"), text(row.bytes));
    EXPECT_EQ(TrueTypeCollectionFont(dir.file("c.ttc")).ReadIntoMemory(), row.status);
    EXPECT_EQ(TrueTypeCollectionFont(ByteSpan(row.bytes)).faceCount(), row.faces);
  }
  EXPECT_EQ(TrueTypeCollectionFont(dir.file("missing.ttc")).ReadIntoMemory(), kTTCFileError);
  const size_t face0 = 12 + 8, firstEntry = face0 + 12;  // the first offset table follows the two offsets
  const struct { const char* what; Bytes bytes; unsigned face; int status; } faces[] = {
      {"face index equal to the count", good, 2, kTTCNoFace},
      {"offset list cut", test::patchU32(good, 8, 1000), 999, kTTCDamaged},
      {"offset table past the end", test::patchU32(good, TtcBuilder::faceOffsetEntry(0), uint32_t(good.size() - 12)),
       0, kTTCDamaged},
      {"directory past the end", test::patchU16(good, face0 + 4, 0x4000), 0, kTTCDamaged},
      {"table past the end", test::patchU32(good, firstEntry + 8, uint32_t(good.size() - 4)), 0, kTTCDamaged},
      {"face not smaller than the file", test::patchU32(good, firstEntry + 12, uint32_t(good.size())), 0, kTTCNoFace},
  };
  for (const auto& row : faces) {
    SCOPED_TRACE(row.what);
    std::vector<uint8_t> out{1, 2, 3};
    EXPECT_EQ(TrueTypeCollectionFont(ByteSpan(row.bytes)).GetDataPtrForFace(row.face, out), row.status);
    EXPECT_TRUE(out.empty());
  }
}

// What the scan reads of a face: "CRC|kerning ok|kerning|names ok|PostScript|full|family|styled|platform".
std::string factsOf(const SfntBytes& face, uint32_t crc) {
  uint32_t kerning = 0;
  UxString ps, full, family, styled, platform;
  bool kerningOk = GetTrueTypeKerningTableChecksum(face, &kerning);
  bool namesOk = getMetaDataFromNamesTable(face, nullptr, nullptr, 0, nullptr, &family, nullptr, &ps, &styled, &full,
                                           nullptr);
  GetPlatformTTF(face, &platform);
  return std::to_string(crc) + "|" + std::to_string(kerningOk) + "|" + std::to_string(kerning) + "|" +
         std::to_string(namesOk) + "|" + ps + "|" + full + "|" + family + "|" + styled + "|" + platform;
}

// A face assembled in place must read exactly as the same face rebuilt into bytes.
void expectAssembledLikeRebuilt(TrueTypeCollectionFont& collection, unsigned face, const Bytes& rebuilt) {
  TTCFace layout;
  ASSERT_EQ(collection.GetFaceLayout(face, layout), kTTCSuccess);
  ASSERT_EQ(layout.size(), rebuilt.size());
  EXPECT_EQ(factsOf(layout, layout.crc()), factsOf(ByteSpan(rebuilt), zlibCrc(rebuilt)));
  std::vector<uint8_t> scratch;  // every range, also across tables and padding, reads the same bytes
  for (size_t offset = 0; offset < rebuilt.size(); offset += 3) {
    for (size_t length : {1u, 5u, 17u}) {
      if (length > rebuilt.size() - offset) continue;
      ByteSpan got = SfntBytes(layout).read(offset, length, scratch);
      ASSERT_EQ(Bytes(got.begin(), got.end()), Bytes(rebuilt.begin() + long(offset), rebuilt.begin() + long(offset + length)))
          << "offset " << offset << " length " << length;
    }
  }
}

// Rebuilt faces (directory copied, each table appended and zero-padded, its word sum and new
// offset written into its entry), their zlib CRCs, names and kerning sums computed with Python.
TEST(TtcSplit, RealCollections) {
  const struct { const char* file; std::vector<uint32_t> crcs; std::vector<size_t> sizes; std::vector<const char*> names;
                 std::vector<uint32_t> kerning; } rows[] = {
      {"sfnt/DejaVuSans-3faces.ttc", {0xE902AFD2, 0x66F9F536, 0x369AC099}, {31956, 32604, 31436},
       {"DejaVuSans", "DejaVuSans-Bold", "DejaVuSans-Oblique"}, {0xFA0DFAA2, 0xFEACFCF3, 0xFF04FECA}},
      {"sfnt/DejaVuSans-2faces-v2.ttc", {0xEAE6122C, 0x52E28046}, {22808, 23464}, {"DejaVuSans", "DejaVuSans-Bold"},
       {0xFA0DFAA2, 0xFD1DFB64}},
  };
  for (const auto& row : rows) {
    TrueTypeCollectionFont collection(test::fontPath(row.file));
    ASSERT_EQ(collection.faceCount(), row.crcs.size()) << row.file;
    for (unsigned face = 0; face < collection.faceCount(); ++face) {
      SCOPED_TRACE(testing::Message() << row.file << " face " << face);
      std::vector<uint8_t> bytes;
      ASSERT_EQ(collection.GetDataPtrForFace(face, bytes), kTTCSuccess);
      EXPECT_EQ(bytes.size(), row.sizes[face]);
      EXPECT_EQ(zlibCrc(bytes), row.crcs[face]);
      uint32_t kerning = 0;
      EXPECT_TRUE(GetTrueTypeKerningTableChecksum(ByteSpan(bytes), &kerning));
      EXPECT_EQ(kerning, row.kerning[face]);
      std::string postScript;
      getPostScriptNameFromNamesTable(ByteSpan(bytes), nullptr, nullptr, 0, postScript);
      EXPECT_EQ(postScript, row.names[face]);
      expectAssembledLikeRebuilt(collection, face, bytes);
    }
  }
}

TEST(TtcSplit, SharedTablesArePaddedCopiesInEachFace) {
  const Bytes ttc = twoFaceCollection();
  TrueTypeCollectionFont collection{ByteSpan(ttc)};
  for (unsigned face = 0; face < 2; ++face) {
    SCOPED_TRACE(face);
    std::vector<uint8_t> bytes;
    ASSERT_EQ(collection.GetDataPtrForFace(face, bytes), kTTCSuccess);
    auto glyf = FindSpecifiedTable(ByteSpan(bytes), "glyf");
    ASSERT_TRUE(glyf);
    EXPECT_EQ(Bytes(bytes.begin() + glyf->offset, bytes.begin() + glyf->offset + 12),
              (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0}));
    EXPECT_EQ(glyf->checkSum, 0x01020304u + 0x05060708u + 0x090A0000u);
    expectAssembledLikeRebuilt(collection, face, bytes);
  }
}

TEST(TtcSplit, WritesFacesUnderTheFirstFreeName) {
  test::ScratchDir dir;
  TrueTypeCollectionFont collection(test::fontPath("sfnt/DejaVuSans-3faces.ttc"));
  const std::vector<uint8_t> face{1, 2, 3};
  std::string written;
  EXPECT_EQ(collection.WriteTTF({}, 0, dir.path(), written), kTTCNoFace);
  test::writeFile(dir.file("0.ttf"), "taken");
  EXPECT_EQ(collection.WriteTTF(face, 0, dir.path() + "/", written), kTTCSuccess);
  EXPECT_EQ(written, dir.path() + "//1.ttf");
  EXPECT_EQ(test::readFile(written), "\x01\x02\x03");
  EXPECT_EQ(collection.WriteTTF(face, 0, dir.path() + "/missing/sub", written), kTTCFileError);
  EXPECT_EQ(written, "");
  const std::string previous = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());  // a bare word is a name prefix in the working folder
  EXPECT_EQ(collection.WriteTTF(face, 4, "word", written), kTTCSuccess);
  std::filesystem::current_path(previous);
  EXPECT_EQ(written, "word4.ttf");
  EXPECT_EQ(test::readFile(dir.file("word4.ttf")), "\x01\x02\x03");

  test::ScratchDir out;
  std::vector<std::string> paths;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(test::fontPath("sfnt/DejaVuSans-3faces.ttc"), out.path(), paths),
            kTTCSuccess);
  EXPECT_EQ(paths, (std::vector<std::string>{out.file("0.ttf"), out.file("1.ttf"), out.file("2.ttf")}));
  EXPECT_EQ(zlibCrc(test::asciiBytes(test::readFile(out.file("2.ttf")))), 0x369AC099u);  // nothing else left behind:
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(out.path()), std::filesystem::directory_iterator()), 3);
}

TEST(TtcSplit, SeparateReportsTheLastFailureAndKeepsGoing) {
  test::ScratchDir dir;
  const Bytes ttc = twoFaceCollection();
  // Face 0's offset table points past the end; face 1 is still written.
  test::writeFile(dir.file("c.ttc"), text(test::patchU32(ttc, TtcBuilder::faceOffsetEntry(0), uint32_t(ttc.size()))));
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(dir.file("c.ttc"), dir.path(), written), kTTCDamaged);
  EXPECT_EQ(written, std::vector<std::string>{dir.file("1.ttf")});
  // A face count far beyond the offsets present fails without walking every number.
  test::writeFile(dir.file("d.ttc"), text(test::patchU32(ttc, 8, 0xFFFFFFFF)));
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(dir.file("d.ttc"), dir.path() + "/x", written), kTTCDamaged);
}

}  // namespace
}  // namespace typeprint
