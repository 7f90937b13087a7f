#include "analysis/sfnt_directory.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::SfntBuilder;

ByteSpan span(const Bytes& b) { return ByteSpan(b); }

TEST(SfntDirectory, FindsTablesOnlyWhenTheirEntryEndsBeforeTheLastByte) {
  const Bytes twoTables = SfntBuilder().table("name", 8).table("kern", 8).build();  // 12 + 32 + 16 bytes
  const Bytes emptyTable = SfntBuilder().table("name", 0).build();                   // entry ends at byte 28
  const struct {
    const char* what;
    Bytes bytes;
    const char* tag;
    bool found;
  } rows[] = {
      {"first entry", twoTables, "name", true},
      {"second entry", twoTables, "kern", true},
      {"absent tag", twoTables, "glyf", false},
      {"tag is case-sensitive", twoTables, "NAME", false},
      {"12 bytes have no tables", test::truncated(twoTables, 12), "name", false},
      {"entry ends at the last byte", emptyTable, "name", false},
      {"entry ends one byte before the end", [&] { Bytes b = emptyTable; b.push_back(0); return b; }(), "name", true},
      {"numTables 0", test::patchU16(twoTables, 4, 0), "name", false},
      {"numTables negative", test::patchU16(twoTables, 4, 0x8001), "name", false},
      {"numTables past the bytes", test::patchU16(twoTables, 4, 0x7FFF), "glyf", false},
      {"tag ending in a zero byte", test::patchU32(twoTables, 12, 0x6E616D00), "nam", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FindSpecifiedTable(span(row.bytes), row.tag).has_value(), row.found);
  }
}

TEST(SfntDirectory, ReadsTheEntryFields) {
  SfntBuilder builder;
  builder.table("head", 54).table("kern", 10);
  const Bytes font = builder.build();
  auto entry = FindSpecifiedTable(span(font), "kern");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->offset, builder.tableOffset(1));
  EXPECT_EQ(entry->length, 10u);
  EXPECT_EQ(entry->checkSum, test::wordSum(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(entry->entryOffset, SfntBuilder::entryOffset(1));
}

TEST(SfntDirectory, ValidatesTablesAgainstTheFontSize) {
  const Bytes font = SfntBuilder().table("kern", 8).build();  // table at 28, font 36 bytes
  const size_t lengthField = SfntBuilder::entryOffset(0) + 12, offsetField = SfntBuilder::entryOffset(0) + 8;
  const struct {
    const char* what;
    Bytes bytes;
    bool valid;
  } rows[] = {
      {"intact", font, true},
      {"table ends at the last byte", test::patchU32(font, lengthField, 8), true},
      {"table one byte past the end", test::patchU32(font, lengthField, 9), false},
      {"offset past the end", test::patchU32(font, offsetField, 37), false},
      {"sum wraps around 32 bits", test::patchU32(test::patchU32(font, offsetField, 0xFFFFFFF0), lengthField, 0x20),
       false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto entry = FindSpecifiedTable(span(row.bytes), "kern");
    ASSERT_TRUE(entry);
    EXPECT_EQ(ValidateDirectoryEntry(&*entry, span(row.bytes)), row.valid);
  }
  EXPECT_FALSE(ValidateDirectoryEntry(nullptr, span(font)));
  TDirectoryEntry entry = *FindSpecifiedTable(span(font), "kern");
  EXPECT_FALSE(ValidateDirectoryEntry(&entry, SfntBytes()));
}

SfntBuilder requiredTables(uint32_t version) {
  SfntBuilder b(version);
  for (const char* tag : {"cmap", "head", "hhea", "hmtx", "maxp", "name", "post"}) b.table(tag, 8);
  return b;
}

TEST(SfntDirectory, DecidesThePlatform) {
  const Bytes complete = requiredTables(0x00010000).build();
  const Bytes withKern = requiredTables(0x4F54544F).table("kern", 8).build();
  const size_t kernLength = SfntBuilder::entryOffset(7) + 12;
  const struct {
    const char* what;
    Bytes bytes;
    const char* platform;
  } rows[] = {
      {"TrueType with the seven tables", complete, "crossplatform"},
      {"OTTO without OS/2", requiredTables(0x4F54544F).build(), "crossplatform"},
      {"valid OS/2", requiredTables(0x00010000).table("OS/2", 8).build(), "crossplatform"},
      {"damaged OS/2", test::patchU32(requiredTables(0x00010000).table("OS/2", 8).build(),
                                      SfntBuilder::entryOffset(7) + 12, 0xFFFF), "mac"},
      {"valid kern", withKern, "crossplatform"},
      {"damaged kern", test::patchU32(withKern, kernLength, 0xFFFF), "mac"},
      {"no hmtx", SfntBuilder().table("cmap", 8).table("head", 8).table("hhea", 8).table("maxp", 8)
                      .table("name", 8).table("post", 8).build(), "mac"},
      {"version true", test::patchU32(complete, 0, 0x74727565), "mac"},
      {"version ttcf", test::patchU32(complete, 0, 0x74746366), "mac"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString platform = "unset";
    EXPECT_TRUE(GetPlatformTTF(span(row.bytes), &platform));
    EXPECT_EQ(platform, row.platform);
  }
}

TEST(SfntDirectory, PlatformNeedsAnOutputAndFiveBytes) {
  const Bytes font = requiredTables(0x00010000).build();
  UxString platform = "unset";
  EXPECT_FALSE(GetPlatformTTF(span(font), nullptr));
  EXPECT_FALSE(GetPlatformTTF(SfntBytes(), &platform));
  EXPECT_FALSE(GetPlatformTTF(span(test::truncated(font, 4)), &platform));
  EXPECT_EQ(platform, "unset");
  EXPECT_TRUE(GetPlatformTTF(span(test::truncated(font, 5)), &platform));
  EXPECT_EQ(platform, "mac");
}

TEST(SfntDirectory, RealFontsAreCrossPlatform) {
  for (const char* file : {"sfnt/DejaVuSans-kern.ttf", "sfnt/DejaVuSans-GPOS.ttf", "sfnt/NimbusSans-Regular.otf"}) {
    SCOPED_TRACE(file);
    std::string bytes = test::readFile(test::fontPath(file));
    ASSERT_FALSE(bytes.empty());
    UxString platform;
    EXPECT_TRUE(GetPlatformTTF(ByteSpan(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), &platform));
    EXPECT_EQ(platform, "crossplatform");
  }
}

}  // namespace
}  // namespace typeprint
