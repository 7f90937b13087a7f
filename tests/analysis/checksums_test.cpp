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

const uint8_t* bytesOf(const char* s) { return reinterpret_cast<const uint8_t*>(s); }

TEST(Checksums, CrcOfTheCheckString) {
  EXPECT_EQ(CChecksum::icrc(bytesOf("123456789"), 9, 0), 0xCBF43926u);
  EXPECT_EQ(CChecksum::icrc(bytesOf("56789"), 5, CChecksum::icrc(bytesOf("1234"), 4, 0)), 0xCBF43926u);
  EXPECT_EQ(CChecksum::icrc(nullptr, 0, 0x12345678), 0x12345678u);
}

TEST(Checksums, CrcAgreesWithZlibOnRandomBuffersAndContinuation) {
  std::mt19937 random(20240601);
  for (size_t size : {1u, 3u, 15u, 16u, 17u, 63u, 64u, 255u, 4096u, 100003u}) {
    SCOPED_TRACE(size);
    Bytes data(size);
    for (uint8_t& b : data) b = uint8_t(random());
    const uint32_t zlibWhole = uint32_t(crc32(0, data.data(), uInt(size)));
    EXPECT_EQ(CChecksum::icrc(data.data(), size, 0), zlibWhole);
    size_t split = size / 3;
    uint32_t start = uint32_t(random());
    EXPECT_EQ(CChecksum::icrc(data.data() + split, size - split, CChecksum::icrc(data.data(), split, start)),
              uint32_t(crc32(start, data.data(), uInt(size))));
    // Combining the CRCs of two halves gives the CRC of the whole.
    uint32_t a = CChecksum::icrc(data.data(), split, 0), b = CChecksum::icrc(data.data() + split, size - split, 0);
    EXPECT_EQ(CChecksum::combine(a, b, size - split), zlibWhole);
  }
  Bytes zeros(1000, 0);
  EXPECT_EQ(CChecksum::zeros(0x1234, 1000), uint32_t(crc32(0x1234, zeros.data(), 1000)));
}

TEST(Checksums, WordSums) {
  const struct {
    const char* what;
    uint32_t start;
    Bytes data;
    uint32_t sum;
  } rows[] = {
      {"empty", 7, {}, 7},
      {"one word", 0, {0x01, 0x02, 0x03, 0x04}, 0x01020304},
      {"two words", 1, {0, 0, 0, 1, 0, 0, 0, 2}, 4},
      {"wraps", 2, {0xFF, 0xFF, 0xFF, 0xFF}, 1},
      {"partial last word padded", 0, {0, 0, 0, 1, 0xAB}, 0xAB000001},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ChecksumLongAlignedData(row.start, ByteSpan(row.data)), row.sum);
  }
}

TEST(Checksums, KerningChecksumOfSyntheticFonts) {
  const Bytes kern8{0, 0, 0, 5, 0, 0, 0, 6};
  const Bytes kern6{0, 0, 0, 5, 0, 0};
  const Bytes glyf{1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0};
  const Bytes withKern8 = SfntBuilder().table("kern", kern8).table("glyf", glyf).build();
  const size_t kernEntry = SfntBuilder::entryOffset(0);
  const struct {
    const char* what;
    Bytes font;
    bool ok;
    uint32_t checksum;
  } rows[] = {
      {"kern of 8 bytes: its word sum", withKern8, true, 11},
      {"kern of 6 bytes: the stored checkSum",
       test::patchU32(SfntBuilder().table("kern", kern6).table("glyf", glyf).build(), kernEntry + 4, 0xDEADBEEF),
       true, 0xDEADBEEF},
      {"no kern: GPOS", SfntBuilder().table("GPOS", kern8).table("glyf", glyf).build(), true, 11},
      {"no kern or GPOS: glyf", SfntBuilder().table("glyf", glyf).table("head", 8).build(), true, 0x06000000},
      {"kern ending at the last byte", SfntBuilder().table("glyf", glyf).table("kern", kern8).unpaddedEnd().build(),
       true, 0},
      {"kern at offset 0", test::patchU32(withKern8, kernEntry + 8, 0), true, 0},
      {"kern outside the font", test::patchU32(withKern8, kernEntry + 12, 0x1000), false, 0x5EED},
      {"no table at all", SfntBuilder().table("head", 8).build(), false, 0x5EED},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    uint32_t checksum = 0x5EED;
    EXPECT_EQ(GetTrueTypeKerningTableChecksum(ByteSpan(row.font), &checksum), row.ok);
    EXPECT_EQ(checksum, row.checksum);
  }
}

// Stored checkSums and word sums from fontTools (reader.tables[tag]) and Python struct.
TEST(Checksums, KerningChecksumOfRealFonts) {
  const struct {
    std::string path;
    uint32_t checksum;
  } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"), 0xFA0DFAA2},
      {test::fontPath("sfnt/DejaVuSans-DSIG.ttf"), 0xFA0DFAA2},
      {test::fontPath("sfnt/DejaVuSans-GPOS.ttf"), 0x1F2A260E},     // GPOS of 622 bytes: stored value
      {test::fontPath("sfnt/NimbusSans-Regular.otf"), 0xE20DF8BA},  // GPOS of 690 bytes: stored value
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 0x0C99083B},
      {"/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf", 0x6830EF48},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    std::string bytes = test::readFile(row.path);
    if (bytes.empty()) {
      std::cerr << "skipped, not installed: " << row.path << "\n";
      continue;
    }
    uint32_t checksum = 0;
    EXPECT_TRUE(GetTrueTypeKerningTableChecksum(
        ByteSpan(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), &checksum));
    EXPECT_EQ(checksum, row.checksum);
  }
}

// File CRCs from Python's zlib.crc32 over the whole file.
TEST(Checksums, WholeFileCrc) {
  const struct {
    std::string path;
    uint32_t crc;
  } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"), 0x6CEF5D8F},
      {test::fontPath("sfnt/DejaVuSans-3faces.ttc"), 0x8ECF61E2},
      {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 0xD74C30B5},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    if (test::readFile(row.path).empty()) continue;
    uint32_t crc = 0, dataFork = 0;
    EXPECT_TRUE(CChecksum::CalculateFileChecksum(row.path, &crc, &dataFork));
    EXPECT_EQ(crc, row.crc);
    EXPECT_EQ(dataFork, row.crc);
  }
}

TEST(Checksums, WholeFileCrcWithoutAResourceForkCountsOnlyWhenItChanged) {
  const std::string path = test::fontPath("sfnt/DejaVuSans-kern.ttf");
  uint32_t crc = 0x6CEF5D8F;  // already the file's CRC
  EXPECT_FALSE(CChecksum::CalculateFileChecksum(path, &crc, nullptr));
  EXPECT_EQ(crc, 0x6CEF5D8Fu);

  test::ScratchDir dir;
  test::writeFile(dir.file("empty"), "");
  crc = 0;
  EXPECT_FALSE(CChecksum::CalculateFileChecksum(dir.file("empty"), &crc, nullptr));
  crc = 5;
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(dir.file("empty"), &crc, nullptr));
  EXPECT_EQ(crc, 0u);
  crc = 5;
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(dir.file("missing"), &crc, nullptr));
  EXPECT_EQ(crc, 0u);
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(path, nullptr, nullptr));
}

TEST(Checksums, WholeFileCrcCoversTheResourceForkAfterTheDataFork) {
  const Bytes data{'d', 'a', 't', 'a'}, resource{'r', 's', 'r', 'c', '!'};
  FileForks forks;
  forks.dataFork = ByteSpan(data);
  forks.resourceFork = ByteSpan(resource);
  uint32_t crc = 0, dataFork = 0;
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(&forks, &crc, &dataFork));
  EXPECT_EQ(dataFork, uint32_t(crc32(0, data.data(), 4)));
  EXPECT_EQ(crc, uint32_t(crc32(0, reinterpret_cast<const Bytef*>("datarsrc!"), 9)));
  // With a resource fork the result is true even when nothing changed.
  EXPECT_TRUE(CChecksum::CalculateFileChecksum(&forks, &crc, nullptr));
}

}  // namespace
}  // namespace typeprint
