#include "analysis/sfnt_directory.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::SfntBuilder;

TEST(SfntDirectory, FindsTablesOnlyWhenTheirEntryEndsBeforeTheLastByte) {
  SfntBuilder builder;
  const Bytes twoTables = builder.table("name", 8).table("kern", 10).build();
  const Bytes emptyTable = SfntBuilder().table("name", 0).build();  // the entry ends at the last byte
  const struct {
    const char* what;
    Bytes bytes;
    const char* tag;
    bool found;
  } rows[] = {
      {"absent tag", twoTables, "glyf", false},
      {"tag is case-sensitive", twoTables, "NAME", false},
      {"12 bytes have no tables", test::truncated(twoTables, 12), "name", false},
      {"entry ends at the last byte", emptyTable, "name", false},
      {"entry ends one byte before the end", [&] { Bytes b = emptyTable; b.push_back(0); return b; }(), "name", true},
      {"numTables negative", test::patchU16(twoTables, 4, 0x8001), "name", false},
      {"numTables past the bytes", test::patchU16(twoTables, 4, 0x7FFF), "glyf", false},
      {"tag ending in a zero byte", test::patchU32(twoTables, 12, 0x6E616D00), "nam", true},
  };
  for (const auto& row : rows) EXPECT_EQ(FindSpecifiedTable(ByteSpan(row.bytes), row.tag).has_value(), row.found) << row.what;
  auto entry = FindSpecifiedTable(ByteSpan(twoTables), "kern");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->offset, builder.tableOffset(1));
  EXPECT_EQ(entry->length, 10u);
  EXPECT_EQ(entry->checkSum, test::wordSum(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(entry->entryOffset, SfntBuilder::entryOffset(1));
}

TEST(SfntDirectory, ValidatesTablesAgainstTheFontSize) {
  const Bytes font = SfntBuilder().table("kern", 8).build();  // table at 28, font 36 bytes
  const size_t offsetField = SfntBuilder::entryOffset(0) + 8, lengthField = offsetField + 4;
  const struct {
    const char* what;
    Bytes bytes;
    bool valid;
  } rows[] = {
      {"table ends at the last byte", font, true},
      {"table one byte past the end", test::patchU32(font, lengthField, 9), false},
      {"offset past the end", test::patchU32(font, offsetField, 37), false},
      {"sum wraps around 32 bits", test::patchU32(test::patchU32(font, offsetField, 0xFFFFFFF0), lengthField, 0x20),
       false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto entry = FindSpecifiedTable(ByteSpan(row.bytes), "kern");
    ASSERT_TRUE(entry);
    EXPECT_EQ(ValidateDirectoryEntry(&*entry, ByteSpan(row.bytes)), row.valid);
    EXPECT_FALSE(ValidateDirectoryEntry(&*entry, SfntBytes()));
  }
  EXPECT_FALSE(ValidateDirectoryEntry(nullptr, ByteSpan(font)));
}

SfntBuilder requiredTables(uint32_t version) {
  SfntBuilder b(version);
  for (const char* tag : {"cmap", "head", "hhea", "hmtx", "maxp", "name", "post"}) b.table(tag, 8);
  return b;
}

TEST(SfntDirectory, DecidesThePlatform) {
  const Bytes complete = requiredTables(0x00010000).build();
  const size_t eighthLength = SfntBuilder::entryOffset(7) + 12;
  const Bytes withOS2 = requiredTables(0x00010000).table("OS/2", 8).build();
  const Bytes withKern = requiredTables(0x4F54544F).table("kern", 8).build();
  const struct {
    const char* what;
    Bytes bytes;
    bool ok;
    const char* platform;
  } rows[] = {
      {"TrueType with the seven tables", complete, true, "crossplatform"},
      {"OTTO, valid kern", withKern, true, "crossplatform"},
      {"valid OS/2", withOS2, true, "crossplatform"},
      {"damaged OS/2", test::patchU32(withOS2, eighthLength, 0xFFFF), true, "mac"},
      {"damaged kern", test::patchU32(withKern, eighthLength, 0xFFFF), true, "mac"},
      {"no hmtx", test::patchU32(complete, SfntBuilder::entryOffset(3), 0x686D7479), true, "mac"},
      {"version true", test::patchU32(complete, 0, 0x74727565), true, "mac"},
      {"five bytes", test::truncated(complete, 5), true, "mac"},
      {"four bytes", test::truncated(complete, 4), false, "unset"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString platform = "unset";
    EXPECT_EQ(GetPlatformTTF(ByteSpan(row.bytes), &platform), row.ok);
    EXPECT_EQ(platform, row.platform);
  }
  EXPECT_FALSE(GetPlatformTTF(ByteSpan(complete), nullptr));
}

}  // namespace
}  // namespace typeprint
