#include "analysis/sfnt_directory.h"

#include <gtest/gtest.h>

#include "builders/sfnt_builder.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::SfntBuilder;

// Found: the entry ends before the font's last byte. Valid: the table lies inside the font.
TEST(SfntDirectory, FindsAndValidatesTables) {
  const Bytes font = SfntBuilder().table("kern", 8).build();  // table at 28, font 36 bytes
  const Bytes emptyTable = SfntBuilder().table("kern", 0).build();  // the entry ends at the last byte
  const size_t offsetField = SfntBuilder::entryOffset(0) + 8, lengthField = offsetField + 4;
  const struct { const char* what; Bytes bytes; const char* tag; bool found, valid; } rows[] = {
      {"table ends at the last byte", font, "kern", true, true},
      {"absent tag", font, "glyf", false, false},
      {"entry ends at the last byte", emptyTable, "kern", false, false},
      {"entry ends one byte before the end", [&] { Bytes b = emptyTable; b.push_back(0); return b; }(), "kern", true, true},
      {"numTables negative", test::patchU16(font, 4, 0x8001), "kern", false, false},
      {"numTables past the bytes", test::patchU16(font, 4, 0x7FFF), "glyf", false, false},
      {"tag ending in a zero byte", test::patchU32(font, 12, 0x6B657200), "ker", true, true},
      {"table one byte past the end", test::patchU32(font, lengthField, 9), "kern", true, false},
      {"sum wraps", test::patchU32(test::patchU32(font, offsetField, 0xFFFFFFF0), lengthField, 0x20), "kern", true, false},
  };
  for (const auto& row : rows) {
    // Looked up in the bytes, and in the directory read once and carried with them.
    const SfntDirectory directory{SfntBytes(ByteSpan(row.bytes))};
    for (const SfntBytes& font : {SfntBytes(ByteSpan(row.bytes)), SfntBytes(ByteSpan(row.bytes)).withDirectory(directory)}) {
      SCOPED_TRACE(std::string(row.what) + (font.directory() ? ", directory carried" : ", from the bytes"));
      auto entry = FindSpecifiedTable(font, row.tag);
      ASSERT_EQ(entry.has_value(), row.found);
      if (entry) {
        EXPECT_EQ(entry->entryOffset, SfntBuilder::entryOffset(0));
        EXPECT_EQ(ValidateDirectoryEntry(&*entry, font), row.valid);
      }
    }
  }
  EXPECT_FALSE(ValidateDirectoryEntry(nullptr, ByteSpan(font)));
}

TEST(SfntDirectory, DecidesThePlatform) {
  SfntBuilder required;
  for (const char* tag : {"cmap", "head", "hhea", "hmtx", "maxp", "name", "post"}) required.table(tag, 8);
  const Bytes complete = required.build(), withOS2 = SfntBuilder(required).table("OS/2", 8).build();
  const Bytes ottoKern = test::patchU32(SfntBuilder(required).table("kern", 8).build(), 0, 0x4F54544F);
  const size_t eighthLength = SfntBuilder::entryOffset(7) + 12;
  const struct { const char* what; Bytes bytes; bool ok; const char* platform; } rows[] = {
      {"TrueType with the seven tables", complete, true, "crossplatform"},
      {"OTTO, valid kern", ottoKern, true, "crossplatform"},
      {"damaged OS/2", test::patchU32(withOS2, eighthLength, 0xFFFF), true, "mac"},
      {"no hmtx", test::patchU32(complete, SfntBuilder::entryOffset(3), 0x686D7479), true, "mac"},
      {"four bytes", test::truncated(complete, 4), false, "unset"},
  };
  for (const auto& row : rows) {
    UxString platform = "unset";
    EXPECT_EQ(GetPlatformTTF(ByteSpan(row.bytes), &platform), row.ok) << row.what;
    EXPECT_EQ(platform, row.platform) << row.what;
  }
  EXPECT_FALSE(GetPlatformTTF(ByteSpan(complete), nullptr));
}

}  // namespace
}  // namespace typeprint
