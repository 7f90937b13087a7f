// AppleSingle and AppleDouble headers; edited forks written back: resources/resource_file_test.cpp.
#include "platform/linux/apple_double.h"

#include <gtest/gtest.h>

#include "builders/apple_double_builder.h"
#include "platform/linux/mapped_file.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::AppleDoubleBuilder;
using test::Bytes;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

// Entries as the fixture set's independent dumper reports them; written back unchanged, the same bytes.
TEST(AppleDouble, ReadsAndRewritesTheFixtureFiles) {
  const struct { const char* path; uint32_t magic; size_t entries, fork; const char* codes; const char* name; } rows[] = {
      {"d-t1mac-lwfn/applesingle/C059Rom", kAppleSingleMagic, 5, 9513, "LWFNT1UT", "C059Rom"},
      {"d-t1mac-lwfn/appledouble/._C059Rom", kAppleDoubleMagic, 4, 9513, "LWFNT1UT", "C059Rom"},
      {"b-suitcase-truetype/appledouble/._DejaVuSans", kAppleDoubleMagic, 2, 53405, "FFILDMOV", ""},
      {"c-type1-family/appledouble/._NimbuSanReg", kAppleDoubleMagic, 2, 5807, "LWFNGWp1", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    auto file = MappedFile::open(test::macFixture(row.path));
    auto apple = readAppleFile(file->bytes());
    ASSERT_TRUE(apple && apple->entry(kAppleEntryResourceFork));
    EXPECT_EQ(std::make_tuple(apple->magic, apple->entries.size(), apple->entry(kAppleEntryResourceFork)->bytes.size),
              std::make_tuple(row.magic, row.entries, row.fork));
    EXPECT_EQ(std::make_pair(apple->fileType(), apple->fileCreator()),
              std::make_pair(test::fourCC(std::string(row.codes, 4)), test::fourCC(row.codes + 4)));
    const AppleEntry* name = apple->entry(kAppleEntryRealName);
    EXPECT_EQ(name ? std::string(name->bytes.begin(), name->bytes.end()) : "", row.name);
    EXPECT_EQ(writeAppleFile(*apple), copyOf(file->bytes()));
  }
}

TEST(AppleDouble, RejectsDamagedHeadersAndAcceptsShortOnes) {
  Bytes good = AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, Bytes(40, 7)).build();
  const size_t fork = AppleDoubleBuilder::descriptor(1);
  const struct { const char* what; Bytes bytes; } rows[] = {
      {"header cut at 25 bytes", test::truncated(good, 25)},
      {"wrong magic", test::patchU32(good, 0, 0x00051608)},
      {"unknown version", test::patchU32(good, 4, 0x00030000)},
      {"more descriptors than bytes", test::patchU16(good, 24, 0xFFFF)},
      {"entry runs past the end", test::patchU32(good, fork + 8, 41)},
      {"entry length wraps", test::patchU32(good, fork + 8, 0xFFFFFFF0)},
  };
  for (const auto& row : rows) EXPECT_FALSE(readAppleFile(row.bytes)) << row.what;
  // A Finder info entry shorter than type and creator gives the type alone.
  const Bytes shortInfo = AppleDoubleBuilder::appleDouble().entry(9, test::bytesOf("FFILD")).build();
  ASSERT_TRUE(readAppleFile(shortInfo));
  EXPECT_EQ(std::make_pair(readAppleFile(shortInfo)->fileType(), readAppleFile(shortInfo)->fileCreator()),
            std::make_pair(tag("FFIL"), 0u));
}

}  // namespace
}  // namespace typeprint
