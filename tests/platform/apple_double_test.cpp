// AppleSingle and AppleDouble: the fixtures of two writers, damaged headers, and writing back.
#include <gtest/gtest.h>

#include <string>

#include "builders/apple_double_builder.h"
#include "platform/linux/apple_double.h"
#include "platform/linux/mapped_file.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::AppleDoubleBuilder;
using test::Bytes;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

TEST(AppleDouble, ReadsTheFixtureFiles) {
  // Entry layouts as the fixture set's independent dumper reports them.
  const struct {
    const char* path;
    uint32_t magic;
    size_t entryCount;
    size_t resourceFork;
    const char* type;
    const char* creator;
    const char* realName;  // entry 3; "" when absent
  } rows[] = {
      {"d-t1mac-lwfn/applesingle/C059Rom", kAppleSingleMagic, 5, 9513, "LWFN", "T1UT", "C059Rom"},
      {"d-t1mac-lwfn/appledouble/._C059Rom", kAppleDoubleMagic, 4, 9513, "LWFN", "T1UT", "C059Rom"},
      {"d-t1mac-lwfn/netatalk/.AppleDouble/C059Rom", kAppleDoubleMagic, 4, 9513, "LWFN", "T1UT", "C059Rom"},
      {"b-suitcase-truetype/appledouble/._DejaVuSans", kAppleDoubleMagic, 2, 53405, "FFIL", "DMOV", ""},
      {"c-type1-family/appledouble/._NimbuSanReg", kAppleDoubleMagic, 2, 5807, "LWFN", "GWp1", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    auto file = MappedFile::open(test::macFixture(row.path));
    ASSERT_TRUE(file);
    auto apple = readAppleFile(file->bytes());
    ASSERT_TRUE(apple);
    EXPECT_EQ(apple->magic, row.magic);
    EXPECT_EQ(apple->entries.size(), row.entryCount);
    ASSERT_TRUE(apple->entry(kAppleEntryResourceFork));
    EXPECT_EQ(apple->entry(kAppleEntryResourceFork)->bytes.size, row.resourceFork);
    EXPECT_EQ(apple->fileType(), test::fourCC(row.type));
    EXPECT_EQ(apple->fileCreator(), test::fourCC(row.creator));
    const AppleEntry* name = apple->entry(kAppleEntryRealName);
    EXPECT_EQ(name ? std::string(name->bytes.begin(), name->bytes.end()) : "", row.realName);
  }
}

TEST(AppleDouble, RejectsDamagedHeaders) {
  Bytes good = AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, Bytes(40, 7)).build();
  ASSERT_TRUE(readAppleFile(good));
  const struct {
    const char* what;
    Bytes bytes;
  } rows[] = {
      {"empty file", {}},
      {"header cut at 25 bytes", test::truncated(good, 25)},
      {"wrong magic", test::patchU32(good, 0, 0x00051608)},
      {"unknown version", test::patchU32(good, 4, 0x00030000)},
      {"more descriptors than bytes", test::patchU16(good, 24, 0xFFFF)},
      {"entry starts past the end", test::patchU32(good, AppleDoubleBuilder::descriptor(1) + 4, uint32_t(good.size() + 1))},
      {"entry runs past the end", test::patchU32(good, AppleDoubleBuilder::descriptor(1) + 8, 41)},
      {"entry length wraps", test::patchU32(good, AppleDoubleBuilder::descriptor(1) + 8, 0xFFFFFFF0)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_FALSE(readAppleFile(row.bytes));
  }
}

TEST(AppleDouble, AcceptsVersionOneAndMissingEntries) {
  const Bytes v1Bytes = AppleDoubleBuilder::appleSingle().version(0x00010000).entry(1, Bytes(3, 1)).build();
  auto v1 = readAppleFile(v1Bytes);
  ASSERT_TRUE(v1);
  EXPECT_TRUE(v1->isAppleSingle());
  EXPECT_EQ(v1->fileType(), 0u);
  EXPECT_EQ(v1->entry(kAppleEntryResourceFork), nullptr);
  // A Finder info entry shorter than type and creator gives no codes.
  const Bytes shortBytes = AppleDoubleBuilder::appleDouble().entry(9, Bytes{'F', 'F', 'I', 'L', 'D'}).build();
  auto shortInfo = readAppleFile(shortBytes);
  ASSERT_TRUE(shortInfo);
  EXPECT_EQ(shortInfo->fileType(), tag("FFIL"));
  EXPECT_EQ(shortInfo->fileCreator(), 0u);
}

TEST(AppleDouble, WritingUnchangedEntriesReproducesTheFixtures) {
  for (const char* path : {"d-t1mac-lwfn/applesingle/C059Rom", "d-t1mac-lwfn/appledouble/._C059Rom",
                           "b-suitcase-truetype/appledouble/._DejaVuSans"}) {
    SCOPED_TRACE(path);
    auto file = MappedFile::open(test::macFixture(path));
    auto apple = readAppleFile(file->bytes());
    ASSERT_TRUE(apple);
    EXPECT_EQ(writeAppleFile(*apple), copyOf(file->bytes()));
  }
}

TEST(AppleDouble, ReplacingAnEntryKeepsTheOthers) {
  auto file = MappedFile::open(test::macFixture("d-t1mac-lwfn/applesingle/C059Rom"));
  auto apple = readAppleFile(file->bytes());
  ASSERT_TRUE(apple);
  Bytes fork(77, 5), data{1, 2, 3}, comment = test::bytesOf("comment");
  AppleFile edited = *apple;
  edited.setEntry(kAppleEntryResourceFork, fork);
  edited.setEntry(kAppleEntryDataFork, data);
  edited.setEntry(4, comment);
  Bytes written = writeAppleFile(edited);
  auto again = readAppleFile(written);
  ASSERT_TRUE(again);
  ASSERT_EQ(again->entries.size(), apple->entries.size() + 1);
  for (size_t i = 0; i < apple->entries.size(); ++i) {
    SCOPED_TRACE(apple->entries[i].id);
    EXPECT_EQ(again->entries[i].id, apple->entries[i].id);
    uint32_t id = apple->entries[i].id;
    Bytes expected = id == kAppleEntryResourceFork ? fork : id == kAppleEntryDataFork ? data : copyOf(apple->entries[i].bytes);
    EXPECT_EQ(copyOf(again->entries[i].bytes), expected);
  }
  EXPECT_EQ(copyOf(again->entry(4)->bytes), comment);
  EXPECT_EQ(copyOf(again->filler), copyOf(apple->filler));
}

}  // namespace
}  // namespace typeprint
