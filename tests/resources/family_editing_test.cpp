// Purging and promoting families: copies of the real suitcases edited, written back and read
// again, synthetic families for the bounds of each walk, and the command-line edits.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <zlib.h>

#include <filesystem>
#include <functional>
#include <map>
#include <set>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/family_editing.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::FondBuilder;
using test::ResourceForkBuilder;

using FilePtr = std::unique_ptr<TypeprintResourceFile>;
FilePtr open(const std::string& path, bool readOnly) { return TypeprintResourceFile::initWithFile(path, readOnly); }
Handle firstFamily(const FilePtr& rf) { return rf->getResourceHandleViaGet1IndResource(kTypeFOND, 1); }
Bytes bytesOf(Handle h) { return Bytes(HandleBytes(h).begin(), HandleBytes(h).end()); }

struct Entry { int16_t size, style, id; };

// `before` less `removed` association entries, `kept` standing in their place: the count field
// lowered, the tables after the entries moved down and their offsets with them (to no less than 0).
Bytes purged(const Bytes& before, const std::vector<Entry>& kept, size_t removed) {
  if (before.size() < 54) return before;
  const size_t shift = 6 * removed;
  Bytes out(before.begin(), before.begin() + 54);
  for (size_t at : {16, 20, 24}) {
    const uint32_t offset = BEReader(before).at(at, 4).u32();
    out = test::patchU32(out, at, offset < shift ? 0 : uint32_t(offset - shift));
  }
  out = test::patchU16(out, 52, uint16_t(BEReader(before).at(52, 2).s16() - int(removed)));
  for (const Entry& e : kept)
    for (int16_t v : {e.size, e.style, e.id}) out.insert(out.end(), {uint8_t(uint16_t(v) >> 8), uint8_t(v)});
  out.insert(out.end(), before.begin() + long(std::min(before.size(), 54 + 6 * (kept.size() + removed))), before.end());
  return out;
}

// "TYPE id crc name" for every resource but the families and those in `skipped` ("TYPE id").
std::vector<std::string> otherResources(const FilePtr& rf, const std::set<std::string>& skipped = {}) {
  std::vector<std::string> lines;
  for (int t = 1; t <= rf->count1ResTypes(); ++t) {
    uint32_t type = 0;
    rf->getResourceTypeViaGet1IndType(&type, t);
    for (int i = 1; type != kTypeFOND && i <= rf->countResType(type); ++i) {
      Handle h = rf->getResourceHandleViaGet1IndResource(type, i);
      int16_t id = 0;
      std::string name;
      rf->getResInfo(h, &id, nullptr, &name);
      const std::string key = std::string{char(type >> 24), char(type >> 16), char(type >> 8), char(type)} + " " + std::to_string(id);
      if (!skipped.count(key)) lines.push_back(key + " " + std::to_string(crc32(0, HandleBytes(h).data, uInt(GetHandleSize(h)))) + " " + name);
    }
  }
  return lines;
}

// `before` promoted: the styles of the entries and kerning subtables replaced; in the style table
// the index bytes and the old strings (`stringBytes` of them) zeroed, one string `name` in their place.
Bytes promoted(const Bytes& before, const std::vector<int>& entryStyles, const std::vector<int>& kerningStyles,
               const std::string& name, size_t stringBytes) {
  Bytes out = before;
  for (size_t i = 0; i < entryStyles.size(); ++i) out = test::patchU16(out, 54 + 6 * i + 2, uint16_t(entryStyles[i]));
  BEReader kern(before);
  kern.seek(kern.at(20, 4).u32() + 2);
  for (int style : kerningStyles) {  // each subtable: style, pair count, 4-byte pairs
    out = test::patchU16(out, kern.position(), uint16_t(style));
    kern.skip(2);
    kern.skip(4 * size_t(kern.s16()));
  }
  const size_t table = BEReader(before).at(24, 4).u32();
  std::fill(out.begin() + long(table) + 10, out.begin() + long(table + 60 + stringBytes), 0);
  out = test::patchU16(out, table + 58, 1);
  out[table + 60] = uint8_t(name.size());
  std::copy(name.begin(), name.end(), out.begin() + long(table) + 61);
  return out;
}

using Edit = std::function<void(TypeprintResourceFile&, Handle)>;
Edit promote(short style) { return [style](TypeprintResourceFile& rf, Handle fond) { promoteFOND(rf, fond, style); }; }
Edit purgeFrom(std::set<short> styles, bool fonts) {
  return [=](TypeprintResourceFile& rf, Handle fond) { purgeFromFOND(rf, fond, styles, fonts); };
}

TEST(FamilyEditing, EditedSuitcasesReadBackAsExpected) {
  const char* dejaVuAppleDouble = "b-suitcase-truetype/appledouble/DejaVuSans";
  const char* dejaVuMacBinary = "b-suitcase-truetype/macbinary/DejaVuSans.bin";
  const char* nimbus = "c-type1-family/appledouble/NimbusSans";
  const std::vector<Entry> dejaVuPlain = {{0, 0, 13490}, {10, 0, 13490}, {12, 0, 13491}};
  const size_t dejaVuStrings = 11 + 2 + 6, nimbusStrings = 11 + 4 * 2 + 2 + 9 + 6 + 8 + 12;  // from the dumper
  // `gone`: other resources removed; `family`: the family afterwards, from the one before.
  const struct { const char* what; const char* fixture; Edit edit; std::set<std::string> gone;
                 std::function<Bytes(const Bytes&)> family; const char* familyName; } rows[] = {
      {"all but plain, then the fonts no entry names", dejaVuAppleDouble,
       [](TypeprintResourceFile& rf, Handle fond) {
         purgeAllButFromFOND(rf, 0, fond);
         EXPECT_TRUE(purgeAllButOfType(rf, {13490, 13491}, kTypeNFNT));
         EXPECT_TRUE(purgeAllButOfType(rf, {13490}, kTypeSfnt));
       },
       {"sfnt 13491", "NFNT 13492", "NFNT 13493"}, [&](const Bytes& b) { return purged(b, dejaVuPlain, 3); }, "DejaVu Sans"},
      // NFNT 13491 is the plain 12 pt strike; it goes because it shares its ID with the bold outline.
      {"bold entries with their fonts", dejaVuMacBinary, purgeFrom({1}, true),
       {"sfnt 13491", "NFNT 13491", "NFNT 13492", "NFNT 13493"}, [&](const Bytes& b) { return purged(b, dejaVuPlain, 3); },
       "DejaVu Sans"},
      {"dfont without its plain entry, the outline kept", "a-dfont/DejaVuSans.dfont", purgeFrom({0}, false), {},
       [](const Bytes& b) { return purged(b, {{0, 1, 13491}}, 1); }, "DejaVu Sans"},
      {"promote bold", dejaVuAppleDouble, promote(1), {},
       [&](const Bytes& b) { return promoted(b, {0, 0, 0, 0, 0, 0}, {1, 0}, "DejaVuSans-Bold", dejaVuStrings); },
       "DejaVuSans-Bold"},
      {"promote bold italic", nimbus, promote(3), {},
       [&](const Bytes& b) { return promoted(b, {0, 1, 2, 0}, {1, 1, 1, 0}, "NimbusSans-BoldItalic", nimbusStrings); },
       "NimbusSans-BoldItalic"},
      {"promote plain: the family keeps its name", dejaVuMacBinary, promote(0), {},
       [&](const Bytes& b) { return promoted(b, {0, 1, 0, 1, 0, 1}, {0, 1}, "DejaVuSans", dejaVuStrings); }, "DejaVu Sans"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto original = open(test::macFixture(row.fixture), true);
    const Bytes before = bytesOf(firstFamily(original));
    test::ScratchDir scratch;
    const std::string path = test::copyMacFixture(row.fixture, scratch.path());
    {
      auto rf = open(path, false);
      ASSERT_TRUE(rf);
      row.edit(*rf, firstFamily(rf));
    }  // closing writes the file
    auto rf = open(path, true);
    ASSERT_TRUE(rf);
    EXPECT_EQ(otherResources(rf), otherResources(original, row.gone));
    EXPECT_EQ(bytesOf(firstFamily(rf)), row.family(before));
    std::string name;
    rf->getResInfo(firstFamily(rf), nullptr, nullptr, &name);
    EXPECT_EQ(name, row.familyName);
  }
}

// Plain, bold and italic faces; PostScript names Base, Base-Bold, Base-Italic.
const FondBuilder kThreeStyles = FondBuilder().entry(0, 0, 1).entry(0, 1, 2).entry(10, 0, 3).entry(10, 1, 4)
                                     .entry(10, 2, 5).kerning(0, 1).kerning(1, 2)
                                     .postScriptNames("Base", {{1, "-Bold"}, {2, "-Italic"}});

TEST(FamilyEditing, EditsStayWithinTheFamily) {
  const Bytes family = test::patchU32(kThreeStyles.build(), 16, 200);  // a glyph-width offset, to see it lowered
  const std::vector<Entry> bold = {{0, 1, 2}, {10, 1, 4}};
  const auto keep = [](short style) { return [style](TypeprintResourceFile& rf, Handle fond) { purgeAllButFromFOND(rf, style, fond); }; };
  const size_t names = kThreeStyles.layout().styleTable + 60;
  const Bytes manyStrings = test::patchU16(family, names - 2, 200);
  const FondBuilder kernOnly = FondBuilder().entry(0, 1, 1).kerning(1, 2).kerning(5, 3);
  const Bytes cut = test::truncated(kernOnly.build(), kernOnly.build().size() - 4);
  const struct { const char* what; Bytes bytes; Edit edit; Bytes expected; const char* name = "Family"; } rows[] = {
      {"keep bold", family, keep(1), purged(family, bold, 3)},
      {"a style the family lacks", family, keep(8), purged(family, {}, 5)},
      {"offsets smaller than the shift floor at 0", test::patchU32(test::patchU32(family, 16, 4), 20, 0), keep(1),
       purged(test::patchU32(test::patchU32(family, 16, 4), 20, 0), bold, 3)},
      {"count beyond the data: only entries within it", test::patchU16(test::truncated(family, 54 + 18), 52, 9), keep(1),
       purged(test::patchU16(test::truncated(family, 54 + 18), 52, 9), {{0, 1, 2}}, 2)},
      {"family of 53 bytes", test::truncated(family, 53), keep(1), test::truncated(family, 53)},
      // The count claims 200 strings; the erasing walk stops at the end of the family.
      {"string count past the data", manyStrings, promote(1),
       promoted(manyStrings, {0, 0, 0, 0, 2}, {1, 0}, "Base-Bold", family.size() - names), "Base-Bold"},
      // The second kerning subtable lacks 4 bytes: the walk stops before it; no style table, no name.
      {"kerning subtable cut short", cut, promote(1),
       test::patchU16(test::patchU16(cut, 54 + 2, 0), kernOnly.layout().kernTable + 2, 0)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "built.dfont", ResourceForkBuilder().add("FOND", 128, row.bytes, "Family").build());
    ASSERT_TRUE(rf);
    Handle fond = getHandleOfTypeAndIndex(rf.get(), kTypeFOND, 1);
    row.edit(test::object(rf), fond);  // checked in memory
    EXPECT_EQ(bytesOf(fond), row.expected);
    std::string name;
    EXPECT_TRUE(GetResInfo(fond, nullptr, nullptr, &name) && name == row.name) << name;
  }
}

std::map<std::string, std::string> snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::recursive_directory_iterator(dir))
    if (e.is_regular_file()) files[e.path().lexically_relative(dir).string()] = test::readFile(e.path().string());
  return files;
}

// The command-line purge and promote: what they write and refuse; the input is left as it was.
TEST(EditCommands, EditCopiesAndRefusesCleanly) {
  const std::string tool = std::string(TYPEPRINT_BINARY_DIR) + "/stage/bin/typeprint";
  if (!fs::exists(tool)) GTEST_SKIP() << "the typeprint tool is not built";
  // FILE stands for the copied fixture, OUT for a new path beside it; `edited` is the file to read
  // back (none when nothing may be written), with its bitmap IDs and family name.
  const struct { const char* fixture; std::string arguments; int status; std::vector<std::string> newFiles;
                 const char* edited; std::vector<int16_t> nfnts = {}; std::string familyName = {}; } rows[] = {
      {"b-suitcase-truetype/appledouble/DejaVuSans", "purge --keep-style 1 FILE OUT", 0, {"._OUT", "OUT"}, "OUT",
       {13492, 13493}, "DejaVu Sans"},
      {"c-type1-family/macbinary/NimbusSans", "promote --style 3 --in-place FILE", 0, {}, "NimbusSans",
       {7260, 7261, 7262, 7263}, "NimbusSans-BoldItalic"},
      {"b-suitcase-truetype/appledouble/DejaVuSans", "purge --keep-style 4 FILE OUT", 1, {}, nullptr},  // no such style
      {"a-dfont/DejaVuSans.dfont", "promote --style 1 FILE FILE", 1, {}, nullptr},           // OUT exists
      {"a-dfont/DejaVuSans.dfont", "promote FILE OUT", 2, {}, nullptr},                      // no style
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.arguments);
    test::ScratchDir scratch;
    const std::string file = test::copyMacFixture(row.fixture, scratch.path());
    const auto before = snapshot(scratch.path());
    std::string arguments = row.arguments;
    for (auto [word, path] : {std::pair<std::string, std::string>{"FILE", file}, {"OUT", scratch.file("OUT")}})
      for (size_t at = 0; (at = arguments.find(word, at)) != std::string::npos; at += path.size())
        arguments.replace(at, word.size(), path);
    const int status = std::system((tool + " " + arguments + " >/dev/null 2>&1").c_str());
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, row.status);
    std::vector<std::string> added;
    for (const auto& [name, bytes] : snapshot(scratch.path())) {
      if (!before.count(name)) added.push_back(name);
      const bool mayChange = !before.count(name) || (row.edited && name.find(row.edited) != std::string::npos);
      EXPECT_TRUE(mayChange || bytes == before.at(name)) << name << " changed";
    }
    EXPECT_EQ(added, row.newFiles);
    if (!row.edited) continue;
    auto rf = TypeprintResourceFile::initWithFile(scratch.file(row.edited), true);
    ASSERT_TRUE(rf);
    EXPECT_EQ(rf->getSortedResIDsForType(kTypeNFNT), row.nfnts);
    std::string familyName;
    rf->getResInfo(rf->getResourceHandleViaGet1IndResource(kTypeFOND, 1), nullptr, nullptr, &familyName);
    EXPECT_EQ(familyName, row.familyName);
  }
}

}  // namespace
}  // namespace typeprint
