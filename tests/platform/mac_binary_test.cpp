// MacBinary: the fixtures every writer produced, one broken field per row, and ordinary files.
#include "platform/linux/mac_binary.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "builders/mac_binary_builder.h"
#include "platform/linux/mapped_file.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::MacBinaryBuilder;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

// Versions, codes and lengths as the fixtures' independent dumper reports them (a wrong CRC reads II
// and III as I). Rewritten, a file keeps name, codes and Finder flags; unchanged, it stays the same.
TEST(MacBinary, ReadsAndRewritesEveryFixtureWriter) {
  const struct { const char* path; int version; const char* codes; size_t data, fork; const char* name; } rows[] = {
      {"d-t1mac-lwfn/macbinary/C059Rom", 2, "LWFNT1UT", 0, 9513, "C059Rom"},
      {"d-t1mac-lwfn/macbinary-i/C059Rom", 1, "LWFNT1UT", 0, 9513, "C059Rom"},
      {"d-t1mac-lwfn/macbinary-stale-crc/C059Rom", 1, "LWFNT1UT", 0, 9513, "C059Rom"},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", 3, "FFILDMOV", 0, 53405, "DejaVuSans"},
      {"a-dfont/DejaVuSans.dfont.bin", 1, "dfonDMOV", 48369, 0, "DejaVuSans.dfont"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    auto file = MappedFile::open(test::macFixture(row.path));
    auto mb = readMacBinary(file->bytes());
    ASSERT_TRUE(mb && mb->version == row.version);
    EXPECT_EQ(std::make_pair(mb->type, mb->creator), std::make_pair(test::fourCC(std::string(row.codes, 4)), test::fourCC(row.codes + 4)));
    EXPECT_EQ(std::make_pair(mb->dataFork.size, mb->resourceFork.size), std::make_pair(row.data, row.fork));
    EXPECT_EQ(std::string(mb->macName.begin(), mb->macName.end()), row.name);
    const Bytes fork(1000, 3), out = writeMacBinary(*mb, mb->dataFork, fork);
    auto again = readMacBinary(out);
    ASSERT_TRUE(again && again->version == (row.version == 3 ? 3 : 2));
    EXPECT_EQ(std::make_pair(copyOf(again->dataFork), copyOf(again->resourceFork)), std::make_pair(copyOf(mb->dataFork), fork));
    EXPECT_TRUE(std::equal(out.begin() + 1, out.begin() + 82, mb->header.begin() + 1));
    if (row.version == 2) {
      EXPECT_EQ(writeMacBinary(*mb, mb->dataFork, mb->resourceFork), copyOf(file->bytes()));
    }
  }
}

TEST(MacBinary, DetectionIsStrict) {
  const Bytes fork(300, 1), data(130, 9);
  const Bytes v2 = MacBinaryBuilder().typeCreator("FFIL", "DMOV").dataFork(data).resourceFork(fork).build();
  const struct { const char* what; Bytes bytes; int version; } rows[] = {  // version 0: rejected
      {"II with its last padding cut off", test::truncated(v2, v2.size() - 20), 2},
      {"old version byte set", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 0, 1)), 0},
      {"byte 74 set", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 74, 1)), 0},
      {"name of 64 bytes", MacBinaryBuilder::withFreshCrc(test::patchU8(v2, 1, 64)), 0},
      {"fork longer than 0x7FFFFF", MacBinaryBuilder::withFreshCrc(test::patchU32(v2, 87, 0x800000)), 0},
      {"resource fork cut short", test::truncated(v2, 128 + 256 + 299), 0},
      {"a block more than the padding", [&] { Bytes b = v2; b.resize(b.size() + 128); return b; }(), 0},
      {"bad CRC and byte 82 set", test::patchU8(test::patchU16(v2, 124, 0x1234), 82, 1), 0},
      {"bad CRC, byte 82 zero: version I", test::patchU16(v2, 124, 0x1234), 1},
  };
  for (const auto& row : rows) {
    auto mb = readMacBinary(row.bytes);
    ASSERT_EQ(mb ? mb->version : 0, row.version) << row.what;
    if (mb) {
      EXPECT_EQ(std::make_pair(copyOf(mb->dataFork), copyOf(mb->resourceFork)), std::make_pair(data, fork));
    }
  }
  // Ordinary font files and other containers are never taken for MacBinary.
  std::vector<std::string> paths{test::macFixture("d-t1mac-lwfn/applesingle/C059Rom"), test::macFixture("a-dfont/DejaVuSans.dfont")};
  std::error_code ec;
  for (const std::string& root : {test::fontPath("sfnt"), std::string("/usr/share/fonts")})
    for (auto it = std::filesystem::recursive_directory_iterator(root, ec); !ec && it != decltype(it)(); it.increment(ec))
      if (it->is_regular_file(ec)) paths.push_back(it->path().string());
  for (const std::string& path : paths) {
    auto file = MappedFile::open(path);
    if (file) {
      EXPECT_FALSE(readMacBinary(file->bytes())) << path;
    }
  }
}

}  // namespace
}  // namespace typeprint
