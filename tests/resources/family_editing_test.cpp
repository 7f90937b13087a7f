// Purging and promoting families: copies of the real suitcases edited, written back into their
// container and read again, and synthetic families for the bounds of each walk. Expected values
// come from the fixtures' own bytes as the independent dumper (macdump.py) decodes them.
#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/family_editing.h"
#include "resources/fond.h"
#include "resources/resource_file.h"
#include "support/mac_fixtures.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::FondBuilder;
using test::patchU16;
using test::patchU32;
using test::ResourceForkBuilder;
using test::truncated;

using FilePtr = std::unique_ptr<TypeprintResourceFile>;

FilePtr open(const std::string& path, bool readOnly) { return TypeprintResourceFile::initWithFile(path, readOnly); }

Handle firstFamily(const FilePtr& rf) { return rf->getResourceHandleViaGet1IndResource(kTypeFOND, 1); }

Bytes bytesOf(Handle h) { return Bytes(HandleBytes(h).begin(), HandleBytes(h).end()); }

// --- A family record decoded field by field -----------------------------------------------

struct Entry {
  int size, style, id;
  bool operator==(const Entry& o) const { return size == o.size && style == o.style && id == o.id; }
};
void PrintTo(const Entry& e, std::ostream* os) { *os << "(" << e.size << "," << e.style << "," << e.id << ")"; }

struct Family {
  size_t size = 0;
  int countField = 0;
  uint32_t widthTable = 0, kerningTable = 0, styleTable = 0;
  std::vector<Entry> entries;  // the present ones
};

Family decode(const Bytes& fond) {
  Family f;
  BEReader r(fond);
  f.size = fond.size();
  f.widthTable = r.at(16, 4).u32();
  f.kerningTable = r.at(20, 4).u32();
  f.styleTable = r.at(24, 4).u32();
  f.countField = r.at(52, 2).s16();
  for (int i = 0; i <= f.countField && 60 + 6 * size_t(i) <= fond.size(); ++i) {
    BEReader e = r.at(54 + 6 * size_t(i), 6);
    int size = e.s16(), style = e.u16(), id = e.s16();
    f.entries.push_back({size, style, id});
  }
  return f;
}

// (style, pairs) of each kerning subtable.
std::vector<std::pair<int, int>> kerningSubtables(const Bytes& fond) {
  std::vector<std::pair<int, int>> subtables;
  BEReader r = BEReader(fond).from(BEReader(fond).at(20, 4).u32());
  for (int n = r.s16(); n >= 0 && r.ok(); --n) {
    int style = r.u16(), pairs = r.s16();
    if (r.ok()) subtables.push_back({style, pairs});
    r.skip(4 * size_t(pairs));
  }
  return subtables;
}

// --- Whole files ------------------------------------------------------------------------------

std::string typeText(uint32_t type) { return {char(type >> 24), char(type >> 16), char(type >> 8), char(type)}; }

// "TYPE id size crc name" for every resource except the families, in map order.
std::vector<std::string> otherResources(const FilePtr& rf) {
  std::vector<std::string> lines;
  for (int t = 1; t <= rf->count1ResTypes(); ++t) {
    uint32_t type = 0;
    rf->getResourceTypeViaGet1IndType(&type, t);
    if (type == kTypeFOND) continue;
    for (int i = 1; i <= rf->countResType(type); ++i) {
      Handle h = rf->getResourceHandleViaGet1IndResource(type, i);
      int16_t id = 0;
      std::string name;
      rf->getResInfo(h, &id, nullptr, &name);
      char crc[9];
      snprintf(crc, sizeof crc, "%08lx", crc32(0, HandleBytes(h).data, uInt(GetHandleSize(h))));
      lines.push_back(typeText(type) + " " + std::to_string(id) + " " + std::to_string(GetHandleSize(h)) + " " + crc +
                      " " + (name.empty() ? "-" : name));
    }
  }
  return lines;
}

// The same lines from the dumper's listing of the fixture, less the removed resources.
std::vector<std::string> expectedOthers(const std::string& fixture, const std::set<std::string>& removed) {
  const auto files = test::loadMacExpectations();
  const test::ExpectedFile* file = test::findExpected(files, fixture);
  std::vector<std::string> lines;
  if (!file) return lines;
  for (const auto& r : file->resources) {
    if (r.type == "FOND" || removed.count(r.type + " " + std::to_string(r.id))) continue;
    char crc[9];
    snprintf(crc, sizeof crc, "%08x", r.crc);
    lines.push_back(r.type + " " + std::to_string(r.id) + " " + std::to_string(r.size) + " " + crc + " " + r.name);
  }
  return lines;
}

// What the dumper shows of each fixture's family before any edit.
struct OriginalFamily {
  size_t size;
  int countField;
  uint32_t widthTable, kerningTable, styleTable;
  size_t nameTableBytes;  // the style-mapping strings, length bytes included
};
const OriginalFamily kDejaVuSuitcase{1439, 5, 118, 1156, 1358, 11 + 2 + 6};
const OriginalFamily kDejaVuDfont{1415, 1, 94, 1132, 1334, 11 + 2 + 6};
const OriginalFamily kNimbusSuitcase{4548, 3, 126, 2200, 4430, 11 + 4 * 2 + 2 + 9 + 6 + 8 + 12};

const char kDejaVuAppleDouble[] = "b-suitcase-truetype/appledouble/DejaVuSans";
const char kDejaVuMacBinary[] = "b-suitcase-truetype/macbinary/DejaVuSans.bin";
const char kNimbusMacBinary[] = "c-type1-family/macbinary/NimbusSans";
const char kNimbusAppleDouble[] = "c-type1-family/appledouble/NimbusSans";
const char kDejaVuDfontPath[] = "a-dfont/DejaVuSans.dfont";

// --- Purging the real suitcases -----------------------------------------------------------

using Edit = std::function<void(TypeprintResourceFile&, Handle)>;

TEST(FamilyEditing, PurgedSuitcasesReadBackAsExpected) {
  const struct {
    const char* what;
    const char* fixture;
    OriginalFamily original;
    Edit edit;
    std::vector<Entry> kept;
    std::set<std::string> removed;
  } rows[] = {
      {"all but plain, then the fonts no entry names", kDejaVuAppleDouble, kDejaVuSuitcase,
       [](TypeprintResourceFile& rf, Handle fond) {
         purgeAllButFromFOND(rf, 0, fond);
         EXPECT_TRUE(purgeAllButOfType(rf, {13490, 13491}, kTypeNFNT));
         EXPECT_TRUE(purgeAllButOfType(rf, {13490}, kTypeSfnt));
       },
       {{0, 0, 13490}, {10, 0, 13490}, {12, 0, 13491}},
       {"sfnt 13491", "NFNT 13492", "NFNT 13493"}},
      // NFNT 13491 is the plain 12 pt strike; it goes because it shares its ID with the bold
      // outline.
      {"bold entries with their fonts", kDejaVuMacBinary, kDejaVuSuitcase,
       [](TypeprintResourceFile& rf, Handle fond) { purgeFromFOND(rf, fond, {1}, true); },
       {{0, 0, 13490}, {10, 0, 13490}, {12, 0, 13491}},
       {"sfnt 13491", "NFNT 13491", "NFNT 13492", "NFNT 13493"}},
      {"bold entries only", kDejaVuMacBinary, kDejaVuSuitcase,
       [](TypeprintResourceFile& rf, Handle fond) { purgeFromFOND(rf, fond, {1}, false); },
       {{0, 0, 13490}, {10, 0, 13490}, {12, 0, 13491}},
       {}},
      {"every bitmap, the family untouched", kDejaVuAppleDouble, kDejaVuSuitcase,
       [](TypeprintResourceFile& rf, Handle) { EXPECT_TRUE(purgeAllButOfType(rf, {}, kTypeNFNT)); },
       {{0, 0, 13490}, {0, 1, 13491}, {10, 0, 13490}, {10, 1, 13492}, {12, 0, 13491}, {12, 1, 13493}},
       {"NFNT 13490", "NFNT 13491", "NFNT 13492", "NFNT 13493"}},
      {"Type 1 family down to italic", kNimbusMacBinary, kNimbusSuitcase,
       [](TypeprintResourceFile& rf, Handle fond) {
         purgeAllButFromFOND(rf, 2, fond);
         EXPECT_TRUE(purgeAllButOfType(rf, {7262}, kTypeNFNT));
       },
       {{12, 2, 7262}},
       {"NFNT 7260", "NFNT 7261", "NFNT 7263"}},
      {"Type 1 family without plain and bold italic", kNimbusAppleDouble, kNimbusSuitcase,
       [](TypeprintResourceFile& rf, Handle fond) { purgeFromFOND(rf, fond, {0, 3}, true); },
       {{12, 1, 7261}, {12, 2, 7262}},
       {"NFNT 7260", "NFNT 7263"}},
      {"dfont without its plain face", kDejaVuDfontPath, kDejaVuDfont,
       [](TypeprintResourceFile& rf, Handle fond) { purgeFromFOND(rf, fond, {0}, true); },
       {{0, 1, 13491}},
       {"sfnt 13490"}},
      {"a style the family lacks empties it", kDejaVuDfontPath, kDejaVuDfont,
       [](TypeprintResourceFile& rf, Handle fond) { purgeAllButFromFOND(rf, 4, fond); },
       {},
       {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const Bytes before = bytesOf(firstFamily(open(test::macFixture(row.fixture), true)));
    ASSERT_EQ(before.size(), row.original.size);
    test::ScratchDir scratch;
    const std::string path = test::copyMacFixture(row.fixture, scratch.path());
    ForkSource source;
    {
      auto rf = open(path, false);
      ASSERT_TRUE(rf);
      source = rf->forks().source;
      row.edit(*rf, firstFamily(rf));
    }  // closing writes the file

    auto rf = open(path, true);
    ASSERT_TRUE(rf);
    EXPECT_EQ(rf->forks().source, source);
    EXPECT_EQ(otherResources(rf), expectedOthers(row.fixture, row.removed));
    const Bytes after = bytesOf(firstFamily(rf));
    const Family family = decode(after);
    const size_t originalEntries = size_t(row.original.countField) + 1;
    const size_t shift = 6 * (originalEntries - row.kept.size());
    EXPECT_EQ(family.entries, row.kept);
    EXPECT_EQ(family.countField, int(row.kept.size()) - 1);
    EXPECT_EQ(family.size, row.original.size - shift);
    EXPECT_EQ(family.widthTable, row.original.widthTable - shift);
    EXPECT_EQ(family.kerningTable, row.original.kerningTable - shift);
    EXPECT_EQ(family.styleTable, row.original.styleTable - shift);
    // The rest of the header is as it was, and the tables moved down unchanged.
    EXPECT_EQ(Bytes(after.begin(), after.begin() + 16), Bytes(before.begin(), before.begin() + 16));
    EXPECT_EQ(Bytes(after.begin() + 28, after.begin() + 52), Bytes(before.begin() + 28, before.begin() + 52));
    EXPECT_EQ(Bytes(after.begin() + 54 + 6 * long(row.kept.size()), after.end()),
              Bytes(before.begin() + 54 + 6 * long(originalEntries), before.end()));
  }
}

// --- Promoting the real suitcases ---------------------------------------------------------

TEST(FamilyEditing, PromotedSuitcasesReadBackAsExpected) {
  const struct {
    const char* fixture;
    OriginalFamily original;
    short style;
    const char* familyName;  // the family resource's name afterwards
    const char* postScriptName;
    std::vector<int> entryStyles;
    std::vector<std::pair<int, int>> kerning;
  } rows[] = {
      {kDejaVuAppleDouble, kDejaVuSuitcase, 1, "DejaVuSans-Bold", "DejaVuSans-Bold", {0, 0, 0, 0, 0, 0}, {{1, 29}, {0, 19}}},
      {kDejaVuDfontPath, kDejaVuDfont, 1, "DejaVuSans-Bold", "DejaVuSans-Bold", {0, 0}, {{1, 29}, {0, 19}}},
      {kNimbusMacBinary, kNimbusSuitcase, 3, "NimbusSans-BoldItalic", "NimbusSans-BoldItalic", {0, 1, 2, 0},
       {{1, 133}, {1, 141}, {1, 142}, {0, 137}}},
      // Style 0 keeps the family's name.
      {kDejaVuMacBinary, kDejaVuSuitcase, 0, "DejaVu Sans", "DejaVuSans", {0, 1, 0, 1, 0, 1}, {{0, 29}, {1, 19}}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.fixture) + " style " + std::to_string(row.style));
    const Bytes before = bytesOf(firstFamily(open(test::macFixture(row.fixture), true)));
    test::ScratchDir scratch;
    const std::string path = test::copyMacFixture(row.fixture, scratch.path());
    {
      auto rf = open(path, false);
      ASSERT_TRUE(rf);
      promoteFOND(*rf, firstFamily(rf), row.style);
    }
    auto rf = open(path, true);
    ASSERT_TRUE(rf);
    EXPECT_EQ(otherResources(rf), expectedOthers(row.fixture, {}));
    Handle fond = firstFamily(rf);
    std::string name;
    rf->getResInfo(fond, nullptr, nullptr, &name);
    EXPECT_EQ(name, row.familyName);

    const Bytes after = bytesOf(fond);
    ASSERT_EQ(after.size(), before.size());
    std::vector<int> styles;
    for (const Entry& e : decode(after).entries) styles.push_back(e.style);
    EXPECT_EQ(styles, row.entryStyles);
    EXPECT_EQ(kerningSubtables(after), row.kerning);

    // The name table holds the one name; the index table and the rest of the old strings are
    // zero; what follows the old strings is untouched.
    const size_t table = row.original.styleTable;
    const std::string ps = row.postScriptName;
    BEReader r(after);
    EXPECT_EQ(Bytes(after.begin() + long(table) + 10, after.begin() + long(table) + 58), Bytes(48, 0));
    EXPECT_EQ(r.at(table + 58, 2).u16(), 1);
    EXPECT_EQ(r.at(table + 60, 1).u8(), ps.size());
    const size_t stringsEnd = table + 60 + row.original.nameTableBytes;
    EXPECT_EQ(Bytes(after.begin() + long(table) + 61, after.begin() + long(table) + 61 + long(ps.size())),
              Bytes(ps.begin(), ps.end()));
    EXPECT_EQ(Bytes(after.begin() + long(table) + 61 + long(ps.size()), after.begin() + long(stringsEnd)),
              Bytes(stringsEnd - (table + 61 + ps.size()), 0));
    EXPECT_EQ(Bytes(after.begin() + long(stringsEnd), after.end()), Bytes(before.begin() + long(stringsEnd), before.end()));

    // Every style of the family now has that PostScript name.
    for (uint16_t style = 0; style < 4; ++style) {
      unsigned char built[257];
      GetPrinterFontNameFromResource(fond, style, built, sizeof built);
      EXPECT_EQ(std::string(reinterpret_cast<char*>(built + 1), built[0]), ps);
    }
  }
}

TEST(FamilyEditing, ReadOnlyFilesTakeTheEditsButAreNotWritten) {
  test::ScratchDir scratch;
  const std::string path = test::copyMacFixture(kDejaVuAppleDouble, scratch.path());
  const std::string companion = scratch.file("._DejaVuSans");
  const std::string bytesBefore = test::readFile(companion);
  {
    auto rf = open(path, true);
    ASSERT_TRUE(rf);
    Handle fond = firstFamily(rf);
    purgeFromFOND(*rf, fond, {0}, true);
    promoteFOND(*rf, fond, 1);
    EXPECT_EQ(decode(bytesOf(fond)).entries.size(), 3u);  // edited in memory
    EXPECT_EQ(rf->countResType(kTypeNFNT), 2);
    EXPECT_FALSE(rf->updateResFile());
  }
  EXPECT_EQ(test::readFile(companion), bytesBefore);
  EXPECT_EQ(fs::file_size(path), 0u);
}

// --- Resources by type and ID -------------------------------------------------------------

// A data-fork resource file written from `fork` into the scratch folder, opened read/write.
FilePtr openBuilt(const test::ScratchDir& scratch, const Bytes& fork) {
  const std::string path = scratch.file("built.dfont");
  test::writeFile(path, std::string(fork.begin(), fork.end()));
  return open(path, false);
}

// "id:first byte" of each resource of a type, in map order.
std::vector<std::string> idsAndData(const FilePtr& rf, uint32_t type) {
  std::vector<std::string> out;
  for (int i = 1; i <= rf->countResType(type); ++i) {
    Handle h = rf->getResourceHandleViaGet1IndResource(type, i);
    int16_t id = 0;
    rf->getResInfo(h, &id, nullptr, nullptr);
    out.push_back(std::to_string(id) + ":" + std::to_string(HandleBytes(h).data[0]));
  }
  return out;
}

TEST(FamilyEditing, PurgeAllButOfTypeKeepsOneResourcePerKeptId) {
  // NFNT 5 appears twice: only the first one in map order can be kept.
  const Bytes fork = ResourceForkBuilder()
                         .add("NFNT", 5, {1})
                         .add("NFNT", 7, {2})
                         .add("NFNT", 5, {3})
                         .add("NFNT", -2, {4})
                         .add("sfnt", 5, {5})
                         .build();
  const struct {
    const char* what;
    uint32_t type;
    std::set<int16_t> keep;
    bool removed;
    std::vector<std::string> nfnts;
  } rows[] = {
      {"keep 5: the second 5 goes", kTypeNFNT, {5}, true, {"5:1"}},
      {"keep 5, 7 and -2", kTypeNFNT, {5, 7, -2}, true, {"5:1", "7:2", "-2:4"}},
      {"keep nothing", kTypeNFNT, {}, true, {}},
      {"keep an absent ID only", kTypeNFNT, {99}, true, {}},
      {"another type is untouched", kTypeSfnt, {5}, false, {"5:1", "7:2", "5:3", "-2:4"}},
      {"an absent type", kTypeFONT, {}, false, {"5:1", "7:2", "5:3", "-2:4"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir scratch;
    {
      auto rf = openBuilt(scratch, fork);
      ASSERT_TRUE(rf);
      EXPECT_EQ(purgeAllButOfType(*rf, row.keep, row.type), row.removed);
    }
    auto rf = open(scratch.file("built.dfont"), true);
    ASSERT_TRUE(rf);
    EXPECT_EQ(idsAndData(rf, kTypeNFNT), row.nfnts);
    EXPECT_EQ(idsAndData(rf, kTypeSfnt), std::vector<std::string>{"5:5"});
  }
}

TEST(FamilyEditing, PurgeResourceRemovesOneResource) {
  test::ScratchDir scratch;
  auto rf = openBuilt(scratch, ResourceForkBuilder().add("NFNT", 5, {1}).add("sfnt", 5, {2}).build());
  ASSERT_TRUE(rf);
  EXPECT_FALSE(purgeResource(*rf, kTypeNFNT, 6));
  EXPECT_FALSE(purgeResource(*rf, kTypeFONT, 5));
  EXPECT_TRUE(purgeResource(*rf, kTypeNFNT, 5));
  EXPECT_FALSE(purgeResource(*rf, kTypeNFNT, 5));
  EXPECT_EQ(rf->countResType(kTypeNFNT), 0);
  EXPECT_EQ(idsAndData(rf, kTypeSfnt), std::vector<std::string>{"5:2"});
}

// --- Synthetic families: the bounds of each walk ------------------------------------------

// A family built into a resource file of its own; the edits are checked on the handle.
struct BuiltFamily {
  test::ScratchDir scratch;
  FilePtr rf;
  Handle fond = nullptr;
  explicit BuiltFamily(const Bytes& family, const std::string& name = "Family") {
    rf = openBuilt(scratch, ResourceForkBuilder().add("FOND", 128, family, name).build());
    if (rf) fond = firstFamily(rf);
  }
};

// Plain, bold and italic faces; PostScript names Base, Base-Bold, Base-Italic.
const FondBuilder kThreeStyles = FondBuilder()
                                     .entry(0, 0, 1)
                                     .entry(0, 1, 2)
                                     .entry(10, 0, 3)
                                     .entry(10, 1, 4)
                                     .entry(10, 2, 5)
                                     .kerning(0, 1)
                                     .kerning(1, 2)
                                     .postScriptNames("Base", {{1, "-Bold"}, {2, "-Italic"}});

TEST(FamilyEditing, EntryRemovalStaysWithinTheFamily) {
  // The builder writes no glyph-width table; an offset is set anyway, to see it lowered.
  const size_t widths = 200;
  const Bytes family = patchU32(kThreeStyles.build(), 16, widths);
  const FondBuilder::Layout l = kThreeStyles.layout();
  const struct {
    const char* what;
    Bytes bytes;
    short keep;
    int countField;  // afterwards
    std::vector<Entry> entries;
    uint32_t widthTable, kerningTable, styleTable;
    size_t size;
  } rows[] = {
      {"keep bold", family, 1, 1, {{0, 1, 2}, {10, 1, 4}}, uint32_t(widths - 18), uint32_t(l.kernTable - 18),
       uint32_t(l.styleTable - 18), family.size() - 18},
      {"a style the family lacks", family, 8, -1, {}, uint32_t(widths - 30), uint32_t(l.kernTable - 30),
       uint32_t(l.styleTable - 30), family.size() - 30},
      {"offsets smaller than the shift floor at 0", patchU32(patchU32(family, 16, 4), 20, 0), 1, 1,
       {{0, 1, 2}, {10, 1, 4}}, 0, 0, uint32_t(l.styleTable - 18), family.size() - 18},
      // The count claims 10 entries; only the 3 within the data are walked.
      {"count beyond the data", patchU16(truncated(family, 54 + 6 * 3), 52, 9), 1, 7, {{0, 1, 2}},
       uint32_t(widths - 12), uint32_t(l.kernTable - 12), uint32_t(l.styleTable - 12), 54 + 6},
      {"negative count", patchU16(family, 52, 0xFFFE), 1, -2, {}, uint32_t(widths), uint32_t(l.kernTable),
       uint32_t(l.styleTable), family.size()},
      {"family of 53 bytes", truncated(family, 53), 1, 0, {}, uint32_t(widths), uint32_t(l.kernTable),
       uint32_t(l.styleTable), 53},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    BuiltFamily built(row.bytes);
    ASSERT_TRUE(built.fond);
    purgeAllButFromFOND(*built.rf, row.keep, built.fond);
    const Bytes after = bytesOf(built.fond);
    const Family f = decode(after);
    EXPECT_EQ(f.size, row.size);
    if (row.size < 54) {
      EXPECT_EQ(after, row.bytes);
      continue;
    }
    EXPECT_EQ(f.countField, row.countField);
    EXPECT_EQ(f.entries, row.entries);
    EXPECT_EQ(f.widthTable, row.widthTable);
    EXPECT_EQ(f.kerningTable, row.kerningTable);
    EXPECT_EQ(f.styleTable, row.styleTable);
  }
}

TEST(FamilyEditing, PromotionStaysWithinTheFamily) {
  const FondBuilder kernOnly = FondBuilder().entry(0, 1, 1).kerning(1, 2).kerning(5, 3);
  // Style 1 names AB followed by string 3 four times.
  const FondBuilder longName =
      FondBuilder().entry(0, 1, 1).styleStrings({test::bytesOf("AB"), Bytes{3, 3, 3, 3}, test::bytesOf("-Long")}).styleIndex(1, 2);
  const size_t names = kThreeStyles.layout().styleTable + 60;
  const Bytes family = kThreeStyles.build();
  const struct {
    const char* what;
    Bytes bytes;
    short style;
    std::string familyName;
    std::vector<int> entryStyles;
    std::vector<std::pair<int, int>> kerning;
    Bytes nameTable;  // from the first string to the end of the family
  } rows[] = {
      {"italic", family, 2, "Base-Italic", {0, 1, 0, 1, 0}, {{1, 1}, {1, 2}},
       test::patchU8(Bytes(family.size() - names, 0), 0, 11)},
      // The count claims 200 strings; the erasing walk stops at the end of the family.
      {"string count past the data", patchU16(family, kThreeStyles.layout().styleTable + 58, 200), 1, "Base-Bold",
       {0, 0, 0, 0, 2}, {{1, 1}, {0, 2}}, test::patchU8(Bytes(family.size() - names, 0), 0, 9)},
      // 4 + 4 * 3 bytes are missing from the second kerning subtable: the walk stops before it.
      {"kerning subtable cut short", truncated(kernOnly.build(), kernOnly.build().size() - 4), 1, "Family", {0},
       {{0, 2}, {5, 3}}, {}},
      {"a name that does not fit is not written", longName.build(), 1, "AB-Long-Long-Long-Long", {0}, {},
       Bytes(longName.build().size() - longName.layout().styleTable - 60, 0)},
      {"entries claimed beyond the data are not restyled", patchU16(truncated(kernOnly.build(), 60), 52, 4), 1,
       "Family", {1}, {}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    BuiltFamily built(row.bytes);
    ASSERT_TRUE(built.fond);
    promoteFOND(*built.rf, built.fond, row.style);
    std::string name;
    built.rf->getResInfo(built.fond, nullptr, nullptr, &name);
    EXPECT_EQ(name, row.familyName);
    const Bytes after = bytesOf(built.fond);
    ASSERT_EQ(after.size(), row.bytes.size());
    std::vector<int> styles;
    for (const Entry& e : decode(after).entries) styles.push_back(e.style);
    EXPECT_EQ(styles, row.entryStyles);
    if (decode(after).kerningTable != 0 && decode(after).kerningTable < after.size()) {
      EXPECT_EQ(kerningSubtables(after), row.kerning);
    }
    const uint32_t styleTable = decode(after).styleTable;
    if (styleTable == 0) continue;
    EXPECT_EQ(BEReader(after).at(styleTable + 58, 2).u16(), 1);
    Bytes nameTable(after.begin() + styleTable + 60, after.end());
    Bytes expected = row.nameTable;
    // The written name, when there is one, follows its length byte.
    for (size_t i = 0; expected.size() > 0 && i < expected[0]; ++i) expected[1 + i] = uint8_t(row.familyName[i]);
    EXPECT_EQ(nameTable, expected);
  }
}

TEST(FamilyEditing, NullAndEmptyFamiliesAreLeftAlone) {
  BuiltFamily built(Bytes{});
  ASSERT_TRUE(built.fond);
  purgeAllButFromFOND(*built.rf, 0, built.fond);
  purgeFromFOND(*built.rf, built.fond, {0}, true);
  promoteFOND(*built.rf, built.fond, 1);
  purgeAllButFromFOND(*built.rf, 0, nullptr);
  purgeFromFOND(*built.rf, nullptr, {0}, true);
  promoteFOND(*built.rf, nullptr, 1);
  EXPECT_EQ(GetHandleSize(built.fond), 0u);
  EXPECT_TRUE(built.rf->updateResFile());  // nothing changed, nothing to write
  EXPECT_EQ(test::readFile(built.scratch.file("built.dfont")),
            [] {
              Bytes b = ResourceForkBuilder().add("FOND", 128, {}, "Family").build();
              return std::string(b.begin(), b.end());
            }());
}

}  // namespace
}  // namespace typeprint
