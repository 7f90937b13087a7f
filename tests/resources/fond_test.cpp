// The family record reader: style indexes, Pascal strings, association entries with their
// bounds, and the PostScript name of a face from real and synthetic families.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "builders/fond_builder.h"
#include "resources/fond.h"
#include "resources/resource_file.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::FondBuilder;

struct HandleDisposer {
  void operator()(char** h) const { DisposeHandle(h); }
};
using OwnedHandle = std::unique_ptr<char*, HandleDisposer>;

OwnedHandle handleOf(const Bytes& bytes) { return OwnedHandle(NewHandleFromBytes(bytes)); }

std::string pascalText(const unsigned char* p) { return std::string(reinterpret_cast<const char*>(p + 1), p[0]); }

std::string psName(const Bytes& fond, uint16_t style, size_t capacity = kStr255Capacity) {
  auto h = handleOf(fond);
  unsigned char out[kStr255Capacity] = {};
  GetPrinterFontNameFromResource(h.get(), style, out, capacity);
  return pascalText(out);
}

TEST(Fond, StyleIndexCountsTheStyleBits) {
  const struct { uint16_t style; int index; } rows[] = {
      {0x00, 0},  {0x01, 1},  {0x02, 2},  {0x03, 3},
      {0x04, 0},   // underline is ignored
      {0x08, 4},  {0x10, 8},  {0x20, 16}, {0x40, 32},
      {0x60, 16},  // extend counts only without condense
      {0x7F, 31}, {0x5B, 47}, {0xFF00, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.style);
    EXPECT_EQ(GetStyleIndex(row.style), row.index);
  }
}

TEST(Fond, PascalStringsRespectTheirCapacity) {
  const unsigned char abc[] = {3, 'a', 'b', 'c'};
  const struct { size_t capacity; std::string copied; } rows[] = {
      {1, ""}, {2, "a"}, {3, "ab"}, {4, "abc"}, {5, "abc"}, {256, "abc"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.capacity);
    unsigned char dst[8] = {7, 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    CopyPascalString(abc, dst, row.capacity);
    EXPECT_EQ(pascalText(dst), row.copied);
    unsigned char joined[16] = {2, 'x', 'y'};
    AppendPascalString(joined, abc, row.capacity + 2);  // the same room after "xy"
    EXPECT_EQ(pascalText(joined), "xy" + row.copied);
  }
  unsigned char untouched[2] = {1, 'q'};
  CopyPascalString(abc, untouched, 0);
  EXPECT_EQ(pascalText(untouched), "q");
  CopyPascalString(nullptr, untouched, 2);
  EXPECT_EQ(pascalText(untouched), "");
  // A full destination takes nothing more.
  unsigned char full[4] = {3, 'a', 'b', 'c'};
  AppendPascalString(full, abc, 4);
  EXPECT_EQ(pascalText(full), "abc");
}

TEST(Fond, AsciiLimitReplacesUnprintableBytes) {
  const unsigned char mixed[] = {6, 31, ' ', '~', 127, 0xA9, 'A'};
  unsigned char dst[kStr255Capacity];
  CopyPascalStringAsciiLimit(mixed, dst, sizeof dst);
  EXPECT_EQ(pascalText(dst), "? ~??A");
  CopyPascalStringAsciiLimit(dst, dst, 3);  // in place, cut
  EXPECT_EQ(pascalText(dst), "? ");
}

TEST(Fond, IndexedStringsStopAtTheEndOfTheTable) {
  const Bytes table = {2, 'a', 'b', 0, 3, 'x', 'y', 'z', 5, 'c', 'u'};
  const struct { int n; std::string text; } rows[] = {
      {1, "ab"}, {2, ""}, {3, "xyz"},
      {4, "cu"},  // claims 5 bytes, 2 are there
      {5, ""}, {0, ""}, {-1, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.n);
    unsigned char dst[kStr255Capacity] = {9};
    GetIndStyleName(table, row.n, dst, sizeof dst);
    EXPECT_EQ(pascalText(dst), row.text);
  }
}

TEST(Fond, OnlyEntriesWithinTheDataArePresent) {
  const Bytes three = FondBuilder().entry(0, 0, 100).entry(12, 1, 101).entry(10, 2, 102).build();
  const struct { const char* what; Bytes bytes; size_t claimed, present; } rows[] = {
      {"whole", three, 3, 3},
      {"last entry cut by one byte", test::truncated(three, 54 + 18 - 1), 3, 2},
      {"last entry ends at the end", test::truncated(three, 54 + 12), 3, 2},
      {"count claims more than fit", test::patchU16(three, 52, 40), 41, 3},
      {"count field of -1", test::patchU16(three, 52, 0xFFFF), 0, 0},
      {"count field of -2", test::patchU16(three, 52, 0xFFFE), 0, 0},
      {"53 bytes", test::truncated(three, 53), 0, 0},
      {"54 bytes, no entry fits", test::truncated(three, 54), 3, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(fondClaimedEntryCount(row.bytes), row.claimed);
    EXPECT_EQ(fondEntries(row.bytes).size(), row.present);
  }
  auto entries = fondEntries(three);
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[1].pointSize, 12);
  EXPECT_EQ(entries[1].style, 1);
  EXPECT_EQ(entries[1].resID, 101);
  EXPECT_TRUE(entries[0].isOutline());
}

TEST(Fond, DoubleByteFamiliesAreMarkedByWordOrID) {
  const struct { const char* what; Bytes bytes; bool doubleByte; } rows[] = {
      {"roman", FondBuilder().familyID(128).entry(0, 0, 1).build(), false},
      {"international word set", FondBuilder().intl1(1).entry(0, 0, 1).build(), true},
      {"first Japanese ID", FondBuilder().familyID(16384).entry(0, 0, 1).build(), true},
      {"last Japanese ID", FondBuilder().familyID(16895).entry(0, 0, 1).build(), true},
      {"ID below", FondBuilder().familyID(16383).entry(0, 0, 1).build(), false},
      {"ID above", FondBuilder().familyID(16896).entry(0, 0, 1).build(), false},
      {"51 bytes", test::truncated(FondBuilder().intl1(1).entry(0, 0, 1).build(), 51), false},
      {"52 bytes", test::truncated(FondBuilder().intl1(1).entry(0, 0, 1).build(), 52), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(fondIsDoubleByte(row.bytes), row.doubleByte);
  }
}

TEST(Fond, PostScriptNamesOfTheFixtureFamily) {
  // Names from the fixture README (style-mapping strings of the Nimbus Sans suitcase).
  void* rf = AllocateResourceFile(test::macFixture("c-type1-family/macbinary/NimbusSans").c_str(), true);
  ASSERT_TRUE(rf);
  Handle fond = getHandleOfTypeAndIndex(rf, kTypeFOND, 1);
  Bytes bytes(HandleBytes(fond).begin(), HandleBytes(fond).end());
  FreeResourceFile(rf);
  const struct { uint16_t style; const char* name; } rows[] = {
      {0, "NimbusSans-Regular"}, {1, "NimbusSans-Bold"}, {2, "NimbusSans-Italic"}, {3, "NimbusSans-BoldItalic"},
      {4, "NimbusSans-Regular"},  // underline shares plain's index
      {8, "NimbusSans-Regular"},  // index 4 holds string 2, the plain list
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.style);
    EXPECT_EQ(psName(bytes, row.style), row.name);
  }
  EXPECT_EQ(psName(bytes, 3, 12), "NimbusSans-");
}

TEST(Fond, PostScriptNamesOfDamagedStyleTables) {
  const Bytes fond = FondBuilder()
                         .entry(0, 0, 1)
                         .styleStrings({test::bytesOf("Base"), {4}, {4, 5}, test::bytesOf("-Bold"),
                                        test::bytesOf("Oblique"), {0xA9, 0x01}, {8}, {'-', 0xA9}})
                         .styleIndex(0, 0)
                         .styleIndex(1, 2)
                         .styleIndex(2, 3)
                         .styleIndex(3, 1)
                         .styleIndex(4, 9)
                         .styleIndex(8, 6)
                         .styleIndex(16, 7)
                         .build();
  const size_t table = FondBuilder()
                           .entry(0, 0, 1)
                           .styleStrings({test::bytesOf("Base")})
                           .layout()
                           .styleTable;
  const struct { const char* what; Bytes bytes; uint16_t style; std::string name; } rows[] = {
      {"index 0 leaves the base", fond, 0, "Base"},
      {"one suffix", fond, 1, "Base-Bold"},
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
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(psName(row.bytes, row.style), row.name);
  }
}

}  // namespace
}  // namespace typeprint
