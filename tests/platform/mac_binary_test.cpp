// MacBinary detection and writing: the fixtures every writer produced, one broken field per
// synthetic row, and the rule that ordinary font files are never taken for MacBinary.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "builders/mac_binary_builder.h"
#include "platform/linux/mac_binary.h"
#include "platform/linux/mapped_file.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::MacBinaryBuilder;


Bytes someBytes(size_t n, uint8_t seed) {
  Bytes b(n);
  for (size_t i = 0; i < n; ++i) b[i] = uint8_t(seed + i * 7);
  return b;
}

TEST(MacBinary, CrcMatchesTheXmodemCheckValue) {
  EXPECT_EQ(macBinaryCrc(test::bytesOf("123456789")), 0x31C3);
  EXPECT_EQ(macBinaryCrc({}), 0);
}

TEST(MacBinary, DetectsEveryFixtureWriter) {
  // Versions, codes and lengths as the fixture set's independent dumper reports them.
  const struct {
    const char* path;
    int version;
    const char* type;
    const char* creator;
    size_t dataLength, resourceLength;
    const char* macName;
  } rows[] = {
      {"d-t1mac-lwfn/macbinary/C059Rom", 2, "LWFN", "T1UT", 0, 9513, "C059Rom"},
      {"d-t1mac-lwfn/macbinary-i/C059Rom", 1, "LWFN", "T1UT", 0, 9513, "C059Rom"},
      {"d-t1mac-lwfn/macbinary-stale-crc/C059Rom", 1, "LWFN", "T1UT", 0, 9513, "C059Rom"},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", 3, "FFIL", "DMOV", 0, 53405, "DejaVuSans"},
      {"c-type1-family/macbinary/NimbuSanReg", 3, "LWFN", "GWp1", 0, 5807, "NimbuSanReg"},
      {"a-dfont/DejaVuSans.dfont.bin", 1, "dfon", "DMOV", 48369, 0, "DejaVuSans.dfont"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    auto file = MappedFile::open(test::macFixture(row.path));
    ASSERT_TRUE(file);
    auto mb = readMacBinary(file->bytes());
    ASSERT_TRUE(mb);
    EXPECT_EQ(mb->version, row.version);
    EXPECT_EQ(mb->type, test::fourCC(row.type));
    EXPECT_EQ(mb->creator, test::fourCC(row.creator));
    EXPECT_EQ(mb->dataFork.size, row.dataLength);
    EXPECT_EQ(mb->resourceFork.size, row.resourceLength);
    EXPECT_EQ(std::string(mb->macName.begin(), mb->macName.end()), row.macName);
  }
}

TEST(MacBinary, OtherFixturesAreNotMacBinary) {
  for (const char* path : {"d-t1mac-lwfn/applesingle/C059Rom", "d-t1mac-lwfn/appledouble/._C059Rom",
                           "a-dfont/DejaVuSans.dfont", "a-dfont/NimbusSans-CFF.dfont", "../sfnt/DejaVuSans-kern.ttf",
                           "../sfnt/NimbusSans-Regular.otf", "c-type1-family/appledouble/NimbuSanReg"}) {
    SCOPED_TRACE(path);
    auto file = MappedFile::open(test::macFixture(path));
    ASSERT_TRUE(file);
    EXPECT_FALSE(readMacBinary(file->bytes()));
  }
}

TEST(MacBinary, ReadsBuiltVersionsAndRejectsBrokenHeaders) {
  Bytes fork = someBytes(300, 1);
  Bytes data = someBytes(130, 9);
  Bytes v2 = MacBinaryBuilder().typeCreator("FFIL", "DMOV").dataFork(data).resourceFork(fork).build();
  const struct {
    const char* what;
    Bytes bytes;
    int version;  // 0: rejected
  } rows[] = {
      {"version I", MacBinaryBuilder().version(1).resourceFork(fork).build(), 1},
      {"version II", v2, 2},
      {"version III", MacBinaryBuilder().version(3).resourceFork(fork).build(), 3},
      {"both forks", v2, 2},
      {"II with its last padding cut off", test::truncated(v2, v2.size() - 20), 2},
      {"old version byte set", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 0, 1)), 0},
      {"byte 74 set", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 74, 1)), 0},
      {"empty name", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 1, 0)), 0},
      {"name of 64 bytes", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 1, 64)), 0},
      {"fork longer than 0x7FFFFF", MacBinaryBuilder::withFreshCrc(test::patchU32(v2, 87, 0x800000)), 0},
      {"resource fork cut short", test::truncated(v2, 128 + 256 + 299), 0},
      {"a block more than the padding", [&] { Bytes b = v2; b.resize(b.size() + 128); return b; }(), 0},
      {"shorter than a header", test::truncated(v2, 127), 0},
      {"bad CRC and byte 82 set", test::patchU8(test::patchU16(v2, 124, 0x1234), 82, 1), 0},
      {"bad CRC, byte 82 zero: version I", test::patchU16(v2, 124, 0x1234), 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto mb = readMacBinary(row.bytes);
    ASSERT_EQ(mb.has_value(), row.version != 0);
    if (!mb) continue;
    EXPECT_EQ(mb->version, row.version);
    EXPECT_EQ(Bytes(mb->resourceFork.begin(), mb->resourceFork.end()), fork);
  }
  auto both = readMacBinary(v2);
  ASSERT_TRUE(both);
  EXPECT_EQ(Bytes(both->dataFork.begin(), both->dataFork.end()), data);
  EXPECT_EQ(both->type, test::fourCC("FFIL"));
}

TEST(MacBinary, WritingKeepsTheHeaderAndFixesLengthsAndCrc) {
  for (const char* path : {"d-t1mac-lwfn/macbinary/C059Rom", "d-t1mac-lwfn/macbinary-i/C059Rom",
                           "d-t1mac-lwfn/macbinary-stale-crc/C059Rom", "b-suitcase-truetype/macbinary/DejaVuSans.bin",
                           "a-dfont/DejaVuSans.dfont.bin"}) {
    SCOPED_TRACE(path);
    auto file = MappedFile::open(test::macFixture(path));
    ASSERT_TRUE(file);
    auto original = readMacBinary(file->bytes());
    ASSERT_TRUE(original);
    Bytes newFork = someBytes(1000, 3);
    Bytes out = writeMacBinary(*original, original->dataFork, newFork);
    auto again = readMacBinary(out);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->version, original->version == 3 ? 3 : 2);
    EXPECT_EQ(macBinaryCrc(ByteSpan(out).sub(0, 124)), (out[124] << 8) | out[125]);
    EXPECT_EQ(Bytes(again->resourceFork.begin(), again->resourceFork.end()), newFork);
    EXPECT_EQ(Bytes(again->dataFork.begin(), again->dataFork.end()),
              Bytes(original->dataFork.begin(), original->dataFork.end()));
    EXPECT_EQ(again->type, original->type);
    EXPECT_EQ(again->creator, original->creator);
    // Name, codes and Finder flags (bytes 1..82) are kept as they were.
    EXPECT_TRUE(std::equal(out.begin() + 1, out.begin() + 82, original->header.begin() + 1));
    EXPECT_EQ(out.size() % 128, 0u);
  }
}

TEST(MacBinary, RewritingUnchangedForksReproducesAValidFile) {
  for (const char* path : {"d-t1mac-lwfn/macbinary/C059Rom", "b-suitcase-truetype/macbinary/DejaVuSans.bin"}) {
    SCOPED_TRACE(path);
    auto file = MappedFile::open(test::macFixture(path));
    auto original = readMacBinary(file->bytes());
    ASSERT_TRUE(original);
    Bytes out = writeMacBinary(*original, original->dataFork, original->resourceFork);
    EXPECT_EQ(out, Bytes(file->bytes().begin(), file->bytes().end()));
  }
}

TEST(MacBinary, NeverFiresOnInstalledFonts) {
  const std::filesystem::path root("/usr/share/fonts");
  std::error_code ec;
  if (!std::filesystem::is_directory(root, ec)) GTEST_SKIP() << "no /usr/share/fonts";
  size_t checked = 0;
  for (auto it = std::filesystem::recursive_directory_iterator(root, ec); !ec && it != decltype(it)(); it.increment(ec)) {
    if (!it->is_regular_file(ec)) continue;
    auto file = MappedFile::open(it->path().string());
    if (!file) continue;
    ++checked;
    EXPECT_FALSE(readMacBinary(file->bytes())) << it->path();
  }
  if (checked == 0) GTEST_SKIP() << "no readable fonts";
}

}  // namespace
}  // namespace typeprint
