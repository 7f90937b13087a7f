#include "analysis/ttc_split.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cerrno>
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

// Two faces sharing one "glyf" of 10 bytes, and a table that keeps each face smaller than the file.
Bytes twoFaceCollection() {
  TtcBuilder b;
  const int glyf = b.addTable(Bytes(10, 1));
  b.addTable(Bytes(64, 0xEE));
  return b.face({{"glyf", glyf}}).face({{"glyf", glyf}}).build();
}

TEST(TtcSplit, HeaderAndRebuildStatuses) {
  test::ScratchDir dir;
  const Bytes good = twoFaceCollection();
  // A count of millions in a small file: walks stop where the offset list leaves the file.
  const Bytes huge = test::patchU32(good, 8, 0x00FFFFFF);
  const struct { const char* what; Bytes bytes; int status; unsigned faces, inFile; } headers[] = {
      {"version 1.0", good, kTTCSuccess, 2, 2},
      {"not ttcf", test::patchU32(good, 0, 0x4F54544F), kTTCNotCollection, 0, 0},
      {"version 3.0", test::patchU32(good, 4, 0x00030000), kTTCBadVersion, 0, 0},
      {"12 bytes", test::truncated(good, 12), kTTCDamaged, 0, 0},
      {"count beyond the file", huge, kTTCSuccess, 0x00FFFFFF, unsigned((good.size() - 13) / 4)},
  };
  for (const auto& row : headers) {
    SCOPED_TRACE(row.what);
    test::writeFile(dir.file("c.ttc"), text(row.bytes));
    EXPECT_EQ(TrueTypeCollectionFont(dir.file("c.ttc")).ReadIntoMemory(), row.status);
    const TrueTypeCollectionFont collection{ByteSpan(row.bytes)};
    EXPECT_EQ(std::make_pair(collection.faceCount(), collection.faceCountInFile()), std::make_pair(row.faces, row.inFile));
  }
  EXPECT_EQ(TrueTypeCollectionFont(dir.file("missing.ttc")).ReadIntoMemory(), kTTCFileError);
  const size_t face0 = 12 + 8, firstEntry = face0 + 12;  // the first offset table follows the two offsets
  const struct { const char* what; Bytes bytes; unsigned face; int status; } faces[] = {
      {"face index equal to the count", good, 2, kTTCNoFace},
      {"offset table past the end", test::patchU32(good, TtcBuilder::faceOffsetEntry(0), uint32_t(good.size() - 12)),
       0, kTTCDamaged},
      {"directory past the end", test::patchU16(good, face0 + 4, 0x4000), 0, kTTCDamaged},
      {"table past the end", test::patchU32(good, firstEntry + 8, uint32_t(good.size() - 4)), 0, kTTCDamaged},
      {"face not smaller than the file", test::patchU32(good, firstEntry + 12, uint32_t(good.size())), 0, kTTCNoFace},
  };
  for (const auto& row : faces) {
    std::vector<uint8_t> out{1, 2, 3};
    EXPECT_EQ(TrueTypeCollectionFont(ByteSpan(row.bytes)).GetDataPtrForFace(row.face, out), row.status) << row.what;
    EXPECT_TRUE(out.empty()) << row.what;
  }
}

// What the scan reads of a face: "CRC|kerning checksum|family|PostScript|styled|full|platform".
std::string factsOf(const SfntBytes& face, uint32_t crc) {
  uint32_t kerning = 0;
  UxString n[4], platform;
  GetTrueTypeKerningTableChecksum(face, &kerning);
  getMetaDataFromNamesTable(face, nullptr, &n[0], nullptr, &n[1], &n[2], &n[3], nullptr);
  GetPlatformTTF(face, &platform);
  return std::to_string(crc) + "|" + std::to_string(kerning) + "|" + n[0] + "|" + n[1] + "|" + n[2] + "|" + n[3] + "|" +
         platform;
}

// Faces rebuilt and CRCed with Python (directory copied, tables appended zero-padded, new sums and
// offsets in the entries); their names and kerning sums are checked in api/create_specifier_test.cpp.
TEST(TtcSplit, RealCollections) {
  const struct { const char* file; unsigned face; size_t size; uint32_t crc; } rows[] = {
      {"sfnt/DejaVuSans-3faces.ttc", 0, 31956, 0xE902AFD2}, {"sfnt/DejaVuSans-3faces.ttc", 1, 32604, 0x66F9F536},
      {"sfnt/DejaVuSans-3faces.ttc", 2, 31436, 0x369AC099}, {"sfnt/DejaVuSans-2faces-v2.ttc", 0, 22808, 0xEAE6122C},
      {"sfnt/DejaVuSans-2faces-v2.ttc", 1, 23464, 0x52E28046},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.file << " face " << row.face);
    TrueTypeCollectionFont collection(test::fontPath(row.file));
    std::vector<uint8_t> bytes;
    ASSERT_EQ(collection.GetDataPtrForFace(row.face, bytes), kTTCSuccess);
    EXPECT_EQ(std::make_pair(bytes.size(), zlibCrc(bytes)), std::make_pair(row.size, row.crc));
    // Assembled in place, the face reads as the rebuilt bytes, also in pieces crossing every boundary.
    TTCFace layout;
    ASSERT_EQ(collection.GetFaceLayout(row.face, layout), kTTCSuccess);
    EXPECT_EQ(factsOf(layout, layout.crc()), factsOf(ByteSpan(bytes), zlibCrc(bytes)));
    std::vector<uint8_t> scratch, joined;
    for (size_t at = 0; at < bytes.size() && layout.size() == bytes.size(); at += 7) {
      ByteSpan piece = SfntBytes(layout).read(at, std::min<size_t>(7, bytes.size() - at), scratch);
      joined.insert(joined.end(), piece.begin(), piece.end());
    }
    EXPECT_EQ(joined, bytes);
  }
}

TEST(TtcSplit, SeparatesEveryFaceAndReportsTheLastFailure) {
  test::ScratchDir good, damaged;
  test::writeFile(good.file("1.ttf"), "taken");  // face n is written to the first free name from n.ttf on
  std::vector<std::string> paths;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(test::fontPath("sfnt/DejaVuSans-3faces.ttc"), good.path(), paths),
            kTTCSuccess);
  EXPECT_EQ(paths, (std::vector<std::string>{good.file("0.ttf"), good.file("2.ttf"), good.file("3.ttf")}));
  EXPECT_EQ(zlibCrc(test::bytesOf(test::readFile(good.file("3.ttf")))), 0x369AC099u);
  // Face 0's offset table points past the end; face 1 is still written.
  const Bytes ttc = twoFaceCollection();
  test::writeFile(damaged.file("c.ttc"), text(test::patchU32(ttc, TtcBuilder::faceOffsetEntry(0), uint32_t(ttc.size()))));
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(damaged.file("c.ttc"), damaged.path(), written), kTTCDamaged);
  EXPECT_EQ(written, std::vector<std::string>{damaged.file("1.ttf")});
  // A face count far beyond the offsets present fails without walking every number.
  test::writeFile(damaged.file("d.ttc"), text(test::patchU32(ttc, 8, 0xFFFFFFFF)));
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(damaged.file("d.ttc"), good.path(), written), kTTCDamaged);
}

// A collection listing one face a million times (or claiming 2^31 - 1 faces) costs one face's
// work: the count is bounded by the offsets present, and a repeated offset is read once.
TEST(TtcSplit, RepeatedAndImpossibleFaceCountsCostOneFace) {
  TtcBuilder builder;
  const Bytes one = builder.face({{"glyf", builder.addTable(Bytes(8, 1))}}).build();
  Bytes million = test::patchU32(one, 8, 1000000);
  const uint32_t faceAt = uint32_t(12 + 4 * 1000000);
  million.insert(million.begin() + 16, 4 * (1000000 - 1), 0);
  for (size_t i = 0; i < 1000000; ++i) million = test::patchU32(std::move(million), TtcBuilder::faceOffsetEntry(i), faceAt);
  // The small file's entries after the first read its own bytes as offsets: at most one face each.
  const struct { const char* what; Bytes bytes; unsigned inFile, distinct; } rows[] = {
      {"2^31 - 1 faces in a small file", test::patchU32(one, 8, 0x7FFFFFFF), unsigned((one.size() - 13) / 4), 8},
      {"one face listed a million times", million, 1000000, 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const TrueTypeCollectionFont collection{ByteSpan(row.bytes)};
    EXPECT_EQ(collection.faceCountInFile(), row.inFile);
    EXPECT_EQ(collection.facesAtDistinctOffsets().size(), row.distinct);
  }
}

int gFailedWrites = 0;

// A full disk while splitting: the failure says which write failed and why.
TEST(TtcSplit, AFullDiskIsReportedWithItsReason) {
  test::ScratchDir out;
  gFailedWrites = 0;
  setWriteFaultForTesting([](WriteStep step, const std::string&) { return step == WriteStep::Write ? ++gFailedWrites, ENOSPC : 0; });
  std::vector<std::string> paths;
  WriteResult failure;
  const int status =
      TrueTypeCollectionFont::SeparateTTCFonts(test::fontPath("sfnt/DejaVuSans-3faces.ttc"), out.path(), paths, &failure);
  setWriteFaultForTesting(nullptr);
  EXPECT_EQ(status, kTTCFileError);
  EXPECT_TRUE(paths.empty());
  EXPECT_EQ(gFailedWrites, 3);
  EXPECT_EQ(failure.reason(), "cannot write the file: No space left on device");
}

}  // namespace
}  // namespace typeprint
