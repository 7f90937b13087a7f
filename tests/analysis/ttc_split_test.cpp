#include "analysis/ttc_split.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

#include "analysis/checksums.h"
#include "analysis/name_table.h"
#include "builders/sfnt_builder.h"
#include "builders/ttc_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::TtcBuilder;

// Two faces sharing "glyf" (10 bytes: padded) and "name"; each has its own "kern".
Bytes twoFaceCollection(uint32_t version = 0x00010000) {
  TtcBuilder b(version);
  int glyf = b.addTable(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  int name = b.addTable(test::nameTable({{1, 0, 0, 6, test::asciiBytes("Shared-Name")}}));
  int kernA = b.addTable(Bytes{0, 0, 0, 1, 0, 0, 0, 2});
  int kernB = b.addTable(Bytes{0, 0, 0, 3, 0, 0, 0, 4});
  int pad = b.addTable(Bytes(64, 0xEE));  // keeps each face smaller than the file
  b.face({{"glyf", glyf}, {"kern", kernA}, {"name", name}});
  b.face({{"glyf", glyf}, {"kern", kernB}, {"name", name}});
  (void)pad;
  return b.build();
}

TEST(TtcSplit, ReadsTheHeader) {
  const Bytes good = twoFaceCollection();
  const struct {
    const char* what;
    Bytes bytes;
    unsigned faces;
  } rows[] = {
      {"version 1.0", good, 2},
      {"version 2.0 with signature fields", twoFaceCollection(0x00020000), 2},
      {"empty", {}, 0},
      {"not ttcf", test::patchU32(good, 0, 0x00010000), 0},
      {"version 3.0", test::patchU32(good, 4, 0x00030000), 0},
      {"12 bytes", test::truncated(good, 12), 0},
      {"6 bytes", test::truncated(good, 6), 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TrueTypeCollectionFont collection{ByteSpan(row.bytes)};
    EXPECT_EQ(collection.faceCount(), row.faces);
  }
}

TEST(TtcSplit, ReadIntoMemoryStatuses) {
  test::ScratchDir dir;
  const Bytes good = twoFaceCollection();
  const struct {
    const char* what;
    Bytes bytes;
    int status;
  } rows[] = {
      {"good", good, kTTCSuccess},
      {"empty", {}, kTTCBadVersion},
      {"not ttcf", test::patchU32(good, 0, 0x4F54544F), kTTCNotCollection},
      {"bad version", test::patchU32(good, 4, 0x00010001), kTTCBadVersion},
      {"12 bytes", test::truncated(good, 12), kTTCDamaged},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::writeFile(dir.file("c.ttc"), std::string(row.bytes.begin(), row.bytes.end()));
    TrueTypeCollectionFont collection(dir.file("c.ttc"));
    EXPECT_EQ(collection.ReadIntoMemory(), row.status);
  }
  TrueTypeCollectionFont missing(dir.file("missing.ttc"));
  EXPECT_EQ(missing.ReadIntoMemory(), kTTCFileError);
  EXPECT_EQ(missing.faceCount(), 0u);
}

TEST(TtcSplit, RebuildFailures) {
  const Bytes good = twoFaceCollection();
  const size_t face0 = 12 + 8;  // the first offset table follows the two offsets
  const size_t firstEntry = face0 + 12;
  const struct {
    const char* what;
    Bytes bytes;
    unsigned face;
    int status;
  } rows[] = {
      {"face index equal to the count", good, 2, kTTCNoFace},
      {"offset list cut", test::patchU32(good, 8, 1000), 999, kTTCDamaged},
      {"offset table past the end", test::patchU32(good, TtcBuilder::faceOffsetEntry(0), uint32_t(good.size() - 12)), 0,
       kTTCDamaged},
      {"directory past the end", test::patchU16(good, face0 + 4, 0x4000), 0, kTTCDamaged},
      {"table past the end", test::patchU32(good, firstEntry + 8, uint32_t(good.size() - 4)), 0, kTTCDamaged},
      {"face not smaller than the file", test::patchU32(good, firstEntry + 12, uint32_t(good.size())), 0, kTTCNoFace},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TrueTypeCollectionFont collection{ByteSpan(row.bytes)};
    std::vector<uint8_t> out{1, 2, 3};
    EXPECT_EQ(collection.GetDataPtrForFace(row.face, out), row.status);
    EXPECT_TRUE(out.empty());
  }
}

// An independent rebuild: directory copied, each table appended with zero padding, its word
// sum and new offset written into its entry.
Bytes rebuildByHand(const Bytes& ttc, size_t faceOffset) {
  size_t n = size_t(ttc[faceOffset + 4]) << 8 | ttc[faceOffset + 5];
  Bytes header(ttc.begin() + long(faceOffset), ttc.begin() + long(faceOffset + 12 + 16 * n));
  Bytes body;
  for (size_t i = 0; i < n; ++i) {
    size_t e = 12 + 16 * i;
    auto u32 = [&](size_t at) { return uint32_t(header[at]) << 24 | header[at + 1] << 16 | header[at + 2] << 8 | header[at + 3]; };
    uint32_t offset = u32(e + 8), length = u32(e + 12);
    Bytes table(ttc.begin() + offset, ttc.begin() + offset + length);
    table.resize((table.size() + 3) & ~size_t(3), 0);
    header = test::patchU32(header, e + 4, test::wordSum(table));
    header = test::patchU32(header, e + 8, uint32_t(header.size() + body.size()));
    body.insert(body.end(), table.begin(), table.end());
  }
  header.insert(header.end(), body.begin(), body.end());
  return header;
}

TEST(TtcSplit, RebuildsFacesWithSharedAndPaddedTables) {
  const Bytes ttc = twoFaceCollection();
  TrueTypeCollectionFont collection{ByteSpan(ttc)};
  for (unsigned face = 0; face < 2; ++face) {
    SCOPED_TRACE(face);
    std::vector<uint8_t> out;
    ASSERT_EQ(collection.GetDataPtrForFace(face, out), kTTCSuccess);
    size_t faceOffset = size_t(ttc[14 + 4 * face]) << 8 | ttc[15 + 4 * face];
    EXPECT_EQ(out, rebuildByHand(ttc, faceOffset));
    // Each face holds its own full copy of the shared glyf, padded with zeros.
    auto glyf = FindSpecifiedTable(ByteSpan(out), "glyf");
    ASSERT_TRUE(glyf);
    EXPECT_EQ(Bytes(out.begin() + glyf->offset, out.begin() + glyf->offset + 12),
              (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0}));
    EXPECT_EQ(glyf->checkSum, 0x01020304u + 0x05060708u + 0x090A0000u);
  }
}

struct FaceFacts {
  uint32_t crc = 0, kerning = 0;
  bool kerningOk = false, namesOk = false;
  UxString postScript, full, family, styled, platform;
};

FaceFacts factsOf(const SfntBytes& face, uint32_t crc) {
  FaceFacts f;
  f.crc = crc;
  f.kerningOk = GetTrueTypeKerningTableChecksum(face, &f.kerning);
  f.namesOk = getMetaDataFromNamesTable(face, nullptr, nullptr, 0, nullptr, &f.family, nullptr, &f.postScript,
                                        &f.styled, &f.full, nullptr);
  GetPlatformTTF(face, &f.platform);
  return f;
}

void expectSameFacts(const FaceFacts& a, const FaceFacts& b) {
  EXPECT_EQ(a.crc, b.crc);
  EXPECT_EQ(a.kerningOk, b.kerningOk);
  EXPECT_EQ(a.kerning, b.kerning);
  EXPECT_EQ(a.namesOk, b.namesOk);
  EXPECT_EQ(a.postScript, b.postScript);
  EXPECT_EQ(a.full, b.full);
  EXPECT_EQ(a.family, b.family);
  EXPECT_EQ(a.styled, b.styled);
  EXPECT_EQ(a.platform, b.platform);
}

// Rebuilt-face CRCs and names computed with Python (rebuild as above, zlib.crc32, fontTools).
TEST(TtcSplit, RealCollections) {
  const struct {
    const char* file;
    std::vector<uint32_t> crcs;
    std::vector<size_t> sizes;
    std::vector<const char*> names;
    std::vector<uint32_t> kerning;
  } rows[] = {
      {"sfnt/DejaVuSans-3faces.ttc",
       {0xE902AFD2, 0x66F9F536, 0x369AC099},
       {31956, 32604, 31436},
       {"DejaVuSans", "DejaVuSans-Bold", "DejaVuSans-Oblique"},
       {0xFA0DFAA2, 0xFEACFCF3, 0xFF04FECA}},
      {"sfnt/DejaVuSans-2faces-v2.ttc",
       {0xEAE6122C, 0x52E28046},
       {22808, 23464},
       {"DejaVuSans", "DejaVuSans-Bold"},
       {0xFA0DFAA2, 0xFD1DFB64}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    TrueTypeCollectionFont collection(test::fontPath(row.file));
    ASSERT_EQ(collection.faceCount(), row.crcs.size());
    for (unsigned face = 0; face < collection.faceCount(); ++face) {
      SCOPED_TRACE(face);
      std::vector<uint8_t> bytes;
      ASSERT_EQ(collection.GetDataPtrForFace(face, bytes), kTTCSuccess);
      EXPECT_EQ(bytes.size(), row.sizes[face]);
      EXPECT_EQ(uint32_t(crc32(0, bytes.data(), uInt(bytes.size()))), row.crcs[face]);
      FaceFacts rebuilt = factsOf(ByteSpan(bytes), CChecksum::icrc(ByteSpan(bytes), 0));
      EXPECT_EQ(rebuilt.postScript, row.names[face]);
      EXPECT_EQ(rebuilt.kerning, row.kerning[face]);
      EXPECT_EQ(rebuilt.platform, "crossplatform");

      TTCFace layout;
      ASSERT_EQ(collection.GetFaceLayout(face, layout), kTTCSuccess);
      expectSameFacts(factsOf(layout, layout.crc()), rebuilt);
    }
  }
}

TEST(TtcSplit, AssembledFaceReadsLikeTheRebuiltBytes) {
  const Bytes ttc = twoFaceCollection();
  TrueTypeCollectionFont collection{ByteSpan(ttc)};
  for (unsigned face = 0; face < 2; ++face) {
    SCOPED_TRACE(face);
    std::vector<uint8_t> bytes;
    ASSERT_EQ(collection.GetDataPtrForFace(face, bytes), kTTCSuccess);
    TTCFace layout;
    ASSERT_EQ(collection.GetFaceLayout(face, layout), kTTCSuccess);
    ASSERT_EQ(layout.size(), bytes.size());
    expectSameFacts(factsOf(layout, layout.crc()), factsOf(ByteSpan(bytes), uint32_t(crc32(0, bytes.data(), uInt(bytes.size())))));
    // Every range, also across table boundaries and padding, reads the same bytes.
    std::vector<uint8_t> scratch;
    for (size_t offset = 0; offset < bytes.size(); offset += 3) {
      for (size_t length : {1u, 5u, 17u}) {
        if (length > bytes.size() - offset) continue;
        ByteSpan got = SfntBytes(layout).read(offset, length, scratch);
        ASSERT_EQ(Bytes(got.begin(), got.end()), Bytes(bytes.begin() + long(offset), bytes.begin() + long(offset + length)))
            << "offset " << offset << " length " << length;
      }
    }
  }
}

TEST(TtcSplit, WriteTTFChoosesTheFirstFreeName) {
  test::ScratchDir dir;
  TrueTypeCollectionFont collection(test::fontPath("sfnt/DejaVuSans-3faces.ttc"));
  std::vector<uint8_t> face;
  ASSERT_EQ(collection.GetDataPtrForFace(0, face), kTTCSuccess);
  std::string written;
  EXPECT_EQ(collection.WriteTTF({}, 0, dir.path(), written), kTTCNoFace);
  EXPECT_EQ(written, "");

  test::writeFile(dir.file("0.ttf"), "taken");
  EXPECT_EQ(collection.WriteTTF(face, 0, dir.path(), written), kTTCSuccess);
  EXPECT_EQ(written, dir.file("1.ttf"));
  EXPECT_EQ(test::readFile(written), std::string(face.begin(), face.end()));
  EXPECT_EQ(collection.WriteTTF(face, 1, dir.path(), written), kTTCSuccess);
  EXPECT_EQ(written, dir.file("2.ttf"));

  EXPECT_EQ(collection.WriteTTF(face, 0, dir.path() + "/", written), kTTCSuccess);
  EXPECT_EQ(written, dir.path() + "//3.ttf");
  EXPECT_EQ(collection.WriteTTF(face, 0, dir.path() + "/missing/sub", written), kTTCFileError);
  EXPECT_EQ(written, "");
}

TEST(TtcSplit, WriteTTFWithABareWordWritesBesideTheWorkingFolder) {
  test::ScratchDir dir;
  std::string previous = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  TrueTypeCollectionFont collection(test::fontPath("sfnt/DejaVuSans-3faces.ttc"));
  std::string written;
  EXPECT_EQ(collection.WriteTTF({1, 2, 3}, 4, "word", written), kTTCSuccess);
  EXPECT_EQ(written, "word4.ttf");
  EXPECT_EQ(test::readFile(dir.file("word4.ttf")), "\x01\x02\x03");
  std::filesystem::current_path(previous);
}

TEST(TtcSplit, SeparatesEveryFace) {
  test::ScratchDir dir;
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(test::fontPath("sfnt/DejaVuSans-3faces.ttc"), dir.path(), written),
            kTTCSuccess);
  ASSERT_EQ(written.size(), 3u);
  const uint32_t crcs[] = {0xE902AFD2, 0x66F9F536, 0x369AC099};
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(written[i], dir.file(std::to_string(i) + ".ttf"));
    std::string bytes = test::readFile(written[i]);
    EXPECT_EQ(uint32_t(crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), uInt(bytes.size()))), crcs[i]);
  }
  // The temporary files are gone.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), std::filesystem::directory_iterator()), 3);
}

TEST(TtcSplit, SeparateReportsTheLastFailureAndKeepsGoing) {
  test::ScratchDir dir;
  Bytes ttc = twoFaceCollection();
  // Face 0's offset table points past the end; face 1 is intact.
  ttc = test::patchU32(ttc, TtcBuilder::faceOffsetEntry(0), uint32_t(ttc.size()));
  test::writeFile(dir.file("c.ttc"), std::string(ttc.begin(), ttc.end()));
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(dir.file("c.ttc"), dir.path(), written), kTTCDamaged);
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written[0], dir.file("1.ttf"));
  // A face count far beyond the offsets present fails without walking every number.
  ttc = test::patchU32(twoFaceCollection(), 8, 0xFFFFFFFF);
  test::writeFile(dir.file("d.ttc"), std::string(ttc.begin(), ttc.end()));
  written.clear();
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(dir.file("d.ttc"), dir.path() + "/out", written), kTTCDamaged);
}

}  // namespace
}  // namespace typeprint
