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
  std::mt19937 random(20240601);
  for (size_t size : {1u, 17u, 255u, 100003u}) {
    Bytes data(size);
    for (uint8_t& b : data) b = uint8_t(random());
    const uint32_t start = uint32_t(random()), split = uint32_t(size / 3);
    const uint32_t head = CChecksum::icrc(data.data(), split, start);
    EXPECT_EQ(CChecksum::icrc(data.data() + split, size - split, head), zlibCrc(start, data)) << size;
    const uint32_t a = CChecksum::icrc(data.data(), split, 0), b = CChecksum::icrc(data.data() + split, size - split, 0);
    EXPECT_EQ(CChecksum::combine(a, b, size - split), zlibCrc(0, data)) << size;
  }
  EXPECT_EQ(CChecksum::zeros(0x1234, 1000), zlibCrc(0x1234, Bytes(1000, 0)));
}

// The word sum the plain way: each byte shifted into its place in its word.
uint32_t referenceWordSum(uint32_t sum, const uint8_t* bytes, size_t size) {
  for (size_t i = 0; i < size; ++i) sum += uint32_t(bytes[i]) << (24 - 8 * (i % 4));
  return sum;
}

TEST(Checksums, WordSumMatchesThePlainSumAtEveryLengthAndAlignment) {
  const Bytes words{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 1, 0xAB};
  EXPECT_EQ(ChecksumLongAlignedData(2, words), 0xAB000002u);
  std::mt19937 random(77);
  Bytes noise(40010), ones(40010, 0xFF);
  for (uint8_t& b : noise) b = uint8_t(random());
  const struct { const char* what; const Bytes& bytes; } fills[] = {{"random bytes", noise}, {"all 0xFF, wrapping", ones}};
  for (const auto& fill : fills) {
    for (size_t size : {0u, 1u, 3u, 4u, 5u, 15u, 16u, 17u, 31u, 32u, 33u, 63u, 64u, 65u, 127u, 128u, 129u, 4099u, 16384u, 40001u}) {
      for (size_t start = 0; start < 4; ++start) {
        SCOPED_TRACE(std::string(fill.what) + ", " + std::to_string(size) + " bytes from " + std::to_string(start));
        const uint8_t* bytes = fill.bytes.data() + start;
        EXPECT_EQ(ChecksumLongAlignedData(0x9E3779B9, ByteSpan(bytes, size)), referenceWordSum(0x9E3779B9, bytes, size));
        uint32_t sum = 1, crc = 1;
        WordSumAndCrc(ByteSpan(bytes, size), &sum, &crc);
        EXPECT_EQ(std::make_pair(sum, crc), std::make_pair(referenceWordSum(0, bytes, size), zlibCrc(0, Bytes(bytes, bytes + size))));
      }
    }
  }
}

TEST(Checksums, KerningChecksumFallsBackToGlyfAndNeedsAValidTable) {  // real fonts: font_data_test.cpp
  const Bytes kern{0, 0, 0, 5, 0, 0, 0, 6}, glyf{1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0};
  const struct { const char* what; Bytes font; bool ok; uint32_t checksum; } rows[] = {
      {"no kern or GPOS: glyf", SfntBuilder().table("glyf", glyf).table("head", 8).build(), true, 0x06000000},
      {"kern ending at the last byte is empty", SfntBuilder().table("glyf", glyf).table("kern", kern).unpaddedEnd().build(),
       true, 0},
      {"kern outside the font", test::patchU32(SfntBuilder().table("kern", kern).build(), 24, 0x1000), false, 0x5EED},
  };
  for (const auto& row : rows) {
    uint32_t checksum = 0x5EED;
    EXPECT_EQ(GetTrueTypeKerningTableChecksum(ByteSpan(row.font), &checksum), row.ok) << row.what;
    EXPECT_EQ(checksum, row.checksum) << row.what;
  }
}

TEST(Checksums, FileCrcCoversTheDataForkThenTheResourceFork) {
  uint32_t crc = 0x6CEF5D8F;  // already the file's CRC (Python's zlib.crc32): false, nothing changed
  EXPECT_FALSE(CChecksum::CalculateFileChecksum(test::fontPath("sfnt/DejaVuSans-kern.ttf"), &crc, nullptr));
  const Bytes data = test::bytesOf("data"), resource = test::bytesOf("rsrc!");
  FileForks forks;
  forks.dataFork = ByteSpan(data);
  forks.resourceFork = ByteSpan(resource);
  uint32_t dataFork = 0;
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(&forks, &crc, &dataFork));
  EXPECT_EQ(dataFork, zlibCrc(0, data));
  EXPECT_EQ(crc, zlibCrc(0, test::bytesOf("datarsrc!")));
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(&forks, &crc, nullptr));  // unchanged, but a resource fork
}

}  // namespace
}  // namespace typeprint
