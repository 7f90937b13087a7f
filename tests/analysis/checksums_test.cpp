#include "analysis/checksums.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

#include "builders/sfnt_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::SfntBuilder;

uint32_t zlibCrc(uint32_t start, const Bytes& b) { return uint32_t(crc32(start, b.data(), uInt(b.size()))); }

TEST(Checksums, CrcAgreesWithZlibOnRandomBuffersAndContinuation) {
  EXPECT_EQ(CChecksum::icrc(test::asciiBytes("123456789"), 0), 0xCBF43926u);
  std::mt19937 random(20240601);
  for (size_t size : {1u, 3u, 16u, 17u, 255u, 100003u}) {
    SCOPED_TRACE(size);
    Bytes data(size);
    for (uint8_t& b : data) b = uint8_t(random());
    const uint32_t start = uint32_t(random()), split = uint32_t(size / 3);
    const uint32_t head = CChecksum::icrc(data.data(), split, start);
    EXPECT_EQ(CChecksum::icrc(data.data() + split, size - split, head), zlibCrc(start, data));
    const uint32_t a = CChecksum::icrc(data.data(), split, 0), b = CChecksum::icrc(data.data() + split, size - split, 0);
    EXPECT_EQ(CChecksum::combine(a, b, size - split), zlibCrc(0, data));
  }
  EXPECT_EQ(CChecksum::zeros(0x1234, 1000), zlibCrc(0x1234, Bytes(1000, 0)));
}

TEST(Checksums, KerningChecksumOfSyntheticFonts) {
  EXPECT_EQ(ChecksumLongAlignedData(2, ByteSpan(Bytes{0xFF, 0xFF, 0xFF, 0xFF})), 1u);       // wraps
  EXPECT_EQ(ChecksumLongAlignedData(0, ByteSpan(Bytes{0, 0, 0, 1, 0xAB})), 0xAB000001u);  // last word padded
  const Bytes kern{0, 0, 0, 5, 0, 0, 0, 6}, glyf{1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0};
  const Bytes withKern = SfntBuilder().table("kern", kern).table("glyf", glyf).build();
  const struct { const char* what; Bytes font; bool ok; uint32_t checksum; } rows[] = {
      {"kern of 8 bytes: its word sum", withKern, true, 11},
      {"no kern or GPOS: glyf", SfntBuilder().table("glyf", glyf).table("head", 8).build(), true, 0x06000000},
      {"kern ending at the last byte counts as empty",
       SfntBuilder().table("glyf", glyf).table("kern", kern).unpaddedEnd().build(), true, 0},
      {"kern outside the font", test::patchU32(withKern, SfntBuilder::entryOffset(0) + 12, 0x1000), false, 0x5EED},
      {"no table at all", SfntBuilder().table("head", 8).build(), false, 0x5EED},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    uint32_t checksum = 0x5EED;
    EXPECT_EQ(GetTrueTypeKerningTableChecksum(ByteSpan(row.font), &checksum), row.ok);
    EXPECT_EQ(checksum, row.checksum);
  }
}

// Kerning checksums: the stored checkSum (fontTools) where the table's length is no multiple of
// four, else the word sum (Python struct). File CRCs: Python's zlib.crc32 over the file.
TEST(Checksums, KerningChecksumAndFileCrcOfRealFonts) {
  const struct { std::string path; uint32_t kerning, crc; } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"), 0xFA0DFAA2, 0x6CEF5D8F},
      {test::fontPath("sfnt/DejaVuSans-DSIG.ttf"), 0xFA0DFAA2, 0x6044FE9C},
      {test::fontPath("sfnt/DejaVuSans-GPOS.ttf"), 0x1F2A260E, 0x94A13172},     // GPOS of 622 bytes
      {test::fontPath("sfnt/NimbusSans-Regular.otf"), 0xE20DF8BA, 0x7400DF99},  // GPOS of 690 bytes
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 0x0C99083B, 0xD74C30B5},
      {"/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf", 0x6830EF48, 0x2D33C23B},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    const std::string text = test::readFile(row.path);
    if (text.empty()) continue;  // a Debian font that is not installed
    uint32_t kerning = 0, crc = 0, dataFork = 0;
    EXPECT_TRUE(GetTrueTypeKerningTableChecksum(ByteSpan(Bytes(text.begin(), text.end())), &kerning));
    EXPECT_EQ(kerning, row.kerning);
    EXPECT_TRUE(CChecksum::CalculateFileChecksum(row.path, &crc, &dataFork));
    EXPECT_EQ(crc, row.crc);
    EXPECT_EQ(dataFork, row.crc);
  }
}

TEST(Checksums, FileCrcIsTrueOnlyWhenItChangedOrAResourceForkFollows) {
  const std::string path = test::fontPath("sfnt/DejaVuSans-kern.ttf");
  uint32_t crc = 0x6CEF5D8F;  // already the file's CRC
  EXPECT_FALSE(CChecksum::CalculateFileChecksum(path, &crc, nullptr));
  crc = 5;
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(path + ".missing", &crc, nullptr));
  EXPECT_EQ(crc, 0u);
  const Bytes data = test::asciiBytes("data"), resource = test::asciiBytes("rsrc!");
  FileForks forks;
  forks.dataFork = ByteSpan(data);
  forks.resourceFork = ByteSpan(resource);
  uint32_t dataFork = 0;
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(&forks, &crc, &dataFork));
  EXPECT_EQ(dataFork, zlibCrc(0, data));
  EXPECT_EQ(crc, zlibCrc(0, test::asciiBytes("datarsrc!")));
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(&forks, &crc, nullptr));  // unchanged, but a resource fork
}

}  // namespace
}  // namespace typeprint
