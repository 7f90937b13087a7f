// The family record reader: style indexes, Pascal strings, association entries and PostScript
// names of faces, over synthetic families cut or damaged.
#include <gtest/gtest.h>

#include "builders/fond_builder.h"
#include "resources/fond.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::FondBuilder;

std::string pascalText(const unsigned char* p) { return std::string(reinterpret_cast<const char*>(p + 1), p[0]); }

std::string psName(const Bytes& fond, uint16_t style, size_t capacity = kStr255Capacity) {
  unsigned char out[kStr255Capacity] = {};
  GetPrinterFontNameFromResource(fond, style, out, capacity);
  return pascalText(out);
}

TEST(Fond, StyleIndexesAndPascalStrings) {
  // Underline (4) is ignored; extend (0x40) counts only without condense (0x20).
  const struct { uint16_t style; int index; } rows[] = {
      {0x03, 3}, {0x04, 0}, {0x08, 4}, {0x60, 16}, {0x40, 32}, {0x7F, 31}, {0x5B, 47}, {0xFF00, 0}};
  for (const auto& row : rows) EXPECT_EQ(GetStyleIndex(row.style), row.index) << row.style;
  const unsigned char abc[] = {3, 'a', 'b', 'c'};
  for (const auto& [capacity, copied] : {std::pair<size_t, std::string>{1, ""}, {3, "ab"}, {4, "abc"}, {256, "abc"}}) {
    unsigned char dst[8] = {7, 'x', 'x', 'x', 'x', 'x', 'x', 'x'}, joined[16] = {2, 'x', 'y'};
    CopyPascalString(abc, dst, capacity);
    AppendPascalString(joined, abc, capacity + 2);  // the same room after "xy"
    EXPECT_EQ(pascalText(dst), copied) << capacity;
    EXPECT_EQ(pascalText(joined), "xy" + copied) << capacity;
  }
  unsigned char mixed[] = {6, 31, ' ', '~', 127, 0xA9, 'A'};
  CopyPascalStringAsciiLimit(mixed, mixed, 6);  // in place, cut, unprintable bytes replaced
  EXPECT_EQ(pascalText(mixed), "? ~??");
}

TEST(Fond, EntriesAndDoubleByteMarksWithinTheData) {
  const Bytes three = FondBuilder().entry(0, 0, 100).entry(12, 1, 101).entry(10, 2, 102).build();
  const struct { const char* what; Bytes bytes; size_t claimed, present; } rows[] = {
      {"last entry cut by one byte", test::truncated(three, 54 + 18 - 1), 3, 2},
      {"count claims more than fit", test::patchU16(three, 52, 40), 41, 3},
      {"count field of -1", test::patchU16(three, 52, 0xFFFF), 0, 0},
      {"53 bytes", test::truncated(three, 53), 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(fondClaimedEntryCount(row.bytes), row.claimed) << row.what;
    EXPECT_EQ(fondEntries(row.bytes).size(), row.present) << row.what;
  }
  const struct { int16_t familyID, intl1; size_t size; bool doubleByte; } marks[] = {
      {128, 1, 60, true}, {16383, 0, 60, false}, {16384, 0, 60, true}, {16895, 0, 60, true}, {16896, 0, 60, false},
      {128, 1, 51, false}};
  for (const auto& row : marks) {
    const Bytes fond = test::truncated(FondBuilder().familyID(row.familyID).intl1(row.intl1).entry(0, 0, 1).build(), row.size);
    EXPECT_EQ(fondIsDoubleByte(fond), row.doubleByte) << row.familyID << " " << row.intl1 << " " << row.size;
  }
}

TEST(Fond, PostScriptNamesOfDamagedStyleTables) {
  // Strings: 1 base, 2 and 3 lists, 4 and 5 suffixes, 6 a list naming no string, 7 an unprintable
  // suffix; string 8 claims more bytes than are left.
  const Bytes fond = FondBuilder()
                         .entry(0, 0, 1)
                         .styleStrings({test::bytesOf("Base"), {4}, {4, 5}, test::bytesOf("-Bold"),
                                        test::bytesOf("Oblique"), {0xA9, 0x01}, {8}, {'-', 0xA9}})
                         .styleIndex(1, 2).styleIndex(2, 3).styleIndex(3, 1).styleIndex(4, 9).styleIndex(8, 6).styleIndex(16, 7)
                         .build();
  const size_t table = FondBuilder().entry(0, 0, 1).styleStrings({test::bytesOf("Base")}).layout().styleTable;
  const struct { const char* what; Bytes bytes; uint16_t style; std::string name; } rows[] = {
      {"index 0 leaves the base", fond, 0, "Base"},
      {"two suffixes", fond, 2, "Base-BoldOblique"},
      {"index 1 is the base", fond, 3, "Base"},
      {"index past the string count", fond, 8 /* index 4 */, "Base"},
      {"list naming a missing string, then the base", fond, 0x10 /* index 8 */, "BaseBase"},
      {"unprintable suffix byte", fond, 0x20 /* index 16 */, "Base-?"},
      {"no style table", test::patchU32(fond, 24, 0), 1, ""},
      {"table offset past the end", test::patchU32(fond, 24, uint32_t(fond.size())), 1, ""},
      {"table offset so its strings start at the end", test::patchU32(fond, 24, uint32_t(fond.size() - 60)), 1, ""},
      {"base name runs past the end", test::truncated(fond, table + 60 + 3), 1, ""},
      {"family of 51 bytes", test::truncated(fond, 51), 1, ""},
  };
  for (const auto& row : rows) EXPECT_EQ(psName(row.bytes, row.style), row.name) << row.what;
  EXPECT_EQ(psName(fond, 2, 8), "Base-Bo");  // cut to the room given
  unsigned char dst[kStr255Capacity];
  const Bytes strings{2, 'a', 'b', 5, 'c', 'u'};
  GetIndStyleName(strings, 2, dst, sizeof dst);  // claims 5 bytes, 2 are there
  EXPECT_EQ(pascalText(dst), "cu");
}

}  // namespace
}  // namespace typeprint
