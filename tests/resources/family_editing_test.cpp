// Purging and promoting families: copies of the real suitcases edited, written back and read
// again, synthetic families for the bounds of each walk, and the command-line edits.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
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

using FilePtr = std::unique_ptr<ResourceFile>;
FilePtr open(const std::string& path, bool readOnly) { return ResourceFile::open(path, readOnly); }
Resource firstFamily(const FilePtr& rf) { return rf->at(kTypeFOND, 1); }
std::string nameOf(Resource r) { return r->hasName ? r->name : std::string(); }

// The facts an edit changes: the entry count field, the width, kerning and style-table offsets,
// the entries (size/style/id), the kerning subtable styles, and the style table's string count,
// first string and whether any index byte is set. Reading stops at the end of the family.
std::string facts(Resource fond) {
  const BEReader all(fond->data());
  std::ostringstream out;
  const int count = all.at(52, 2).s16();
  out << count << " |";
  for (size_t at : {16, 20, 24}) out << " " << all.at(at, 4).u32();
  out << " |";
  BEReader r = all.from(54);
  for (int i = 0; i <= count && r.remaining() >= 6; ++i) out << " " << r.s16() << "/" << r.s16() << "/" << r.s16();
  out << " | kern";
  r = all.from(all.at(20, 4).u32());
  for (int n = all.at(20, 4).u32() ? r.s16() + 1 : 0; n > 0 && r.remaining() >= 4; --n) {
    out << " " << r.s16();
    r.skip(4 * size_t(r.s16()));
  }
  out << " | styles";
  const uint32_t styles = all.at(24, 4).u32();
  if (styles == 0 || !all.at(styles, 60).ok()) return out.str();
  r = all.from(styles + 10);
  const std::vector<uint8_t> indexes = r.bytes(48);
  const int strings = r.s16();
  const std::vector<uint8_t> first = r.bytes(r.u8());
  out << " " << strings << " " << std::string(first.begin(), first.end());
  if (std::any_of(indexes.begin(), indexes.end(), [](uint8_t i) { return i != 0; })) out << " indexed";
  return out.str();
}

// "TYPE id crc name" for every resource but the families and those in `skipped` ("TYPE id").
std::vector<std::string> otherResources(const FilePtr& rf, const std::set<std::string>& skipped = {}) {
  std::vector<std::string> lines;
  for (int t = 1; t <= rf->countTypes(); ++t) {
    const uint32_t type = rf->typeAt(t);
    for (int i = 1; type != kTypeFOND && i <= rf->count(type); ++i) {
      Resource r = rf->at(type, i);
      const std::string key = std::string{char(type >> 24), char(type >> 16), char(type >> 8), char(type)} + " " + std::to_string(r->id);
      if (!skipped.count(key)) lines.push_back(key + " " + std::to_string(crc32(0, r->data().data, uInt(r->data().size))) + " " + nameOf(r));
    }
  }
  return lines;
}

using Edit = std::function<void(ResourceFile&, Resource)>;
Edit promote(short style) { return [style](ResourceFile& rf, Resource fond) { promoteFOND(rf, fond, style); }; }
Edit purgeFrom(std::set<short> styles, bool fonts) {
  return [=](ResourceFile& rf, Resource fond) { purgeFromFOND(rf, fond, styles, fonts); };
}

// Expected facts from the fixture dumper: DejaVu suitcase offsets 118/1156/1358, the dfont's
// 94/1132/1334, Nimbus 126/2200/4430; each removed entry moves the tables 6 bytes down.
TEST(FamilyEditing, EditedSuitcasesReadBackAsExpected) {
  const char* dejaVuAppleDouble = "b-suitcase-truetype/appledouble/DejaVuSans";
  const char* dejaVuMacBinary = "b-suitcase-truetype/macbinary/DejaVuSans.bin";
  const char* dejaVuPlain = "2 | 100 1138 1340 | 0/0/13490 10/0/13490 12/0/13491 | kern 0 1 | styles 3 DejaVuSans indexed";
  // `gone`: other resources removed.
  const struct { const char* what; const char* fixture; Edit edit; std::set<std::string> gone; const char* facts;
                 const char* familyName; } rows[] = {
      {"all but plain, then the fonts no entry names", dejaVuAppleDouble,
       [](ResourceFile& rf, Resource fond) {
         purgeAllButFromFOND(rf, 0, fond);
         EXPECT_TRUE(purgeAllButOfType(rf, {13490, 13491}, kTypeNFNT));
         EXPECT_TRUE(purgeAllButOfType(rf, {13490}, kTypeSfnt));
       },
       {"sfnt 13491", "NFNT 13492", "NFNT 13493"}, dejaVuPlain, "DejaVu Sans"},
      // NFNT 13491 is the plain 12 pt strike; it goes because it shares its ID with the bold outline.
      {"bold entries with their fonts", dejaVuMacBinary, purgeFrom({1}, true),
       {"sfnt 13491", "NFNT 13491", "NFNT 13492", "NFNT 13493"}, dejaVuPlain, "DejaVu Sans"},
      {"dfont without its plain entry, the outline kept", "a-dfont/DejaVuSans.dfont", purgeFrom({0}, false), {},
       "0 | 88 1126 1328 | 0/1/13491 | kern 0 1 | styles 3 DejaVuSans indexed", "DejaVu Sans"},
      {"promote bold", dejaVuAppleDouble, promote(1), {},
       "5 | 118 1156 1358 | 0/0/13490 0/0/13491 10/0/13490 10/0/13492 12/0/13491 12/0/13493 | kern 1 0 | styles 1 "
       "DejaVuSans-Bold", "DejaVuSans-Bold"},
      {"promote bold italic", "c-type1-family/appledouble/NimbusSans", promote(3), {},
       "3 | 126 2200 4430 | 12/0/7260 12/1/7261 12/2/7262 12/0/7263 | kern 1 1 1 0 | styles 1 NimbusSans-BoldItalic",
       "NimbusSans-BoldItalic"},
      {"promote plain: the family keeps its name", dejaVuMacBinary, promote(0), {},
       "5 | 118 1156 1358 | 0/0/13490 0/1/13491 10/0/13490 10/1/13492 12/0/13491 12/1/13493 | kern 0 1 | styles 1 "
       "DejaVuSans", "DejaVu Sans"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto original = open(test::macFixture(row.fixture), true);
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
    EXPECT_EQ(facts(firstFamily(rf)), row.facts);
    EXPECT_EQ(nameOf(firstFamily(rf)), row.familyName);
  }
}

// Plain, bold and italic faces; PostScript names Base, Base-Bold, Base-Italic (five strings). The
// kerning table lands at 84, the style table at 106.
const FondBuilder kThreeStyles = FondBuilder().entry(0, 0, 1).entry(0, 1, 2).entry(10, 0, 3).entry(10, 1, 4)
                                     .entry(10, 2, 5).kerning(0, 1).kerning(1, 2)
                                     .postScriptNames("Base", {{1, "-Bold"}, {2, "-Italic"}});

TEST(FamilyEditing, EditsStayWithinTheFamily) {
  const Bytes family = test::patchU32(kThreeStyles.build(), 16, 200);  // a glyph-width offset, to see it lowered
  const auto keep = [](short style) { return [style](ResourceFile& rf, Resource fond) { purgeAllButFromFOND(rf, style, fond); }; };
  const FondBuilder kernOnly = FondBuilder().entry(0, 1, 1).kerning(1, 2).kerning(5, 3);
  // `facts` empty: the family is left as it was.
  const struct { const char* what; Bytes bytes; Edit edit; const char* facts; const char* name = "Family"; } rows[] = {
      {"keep bold", family, keep(1), "1 | 182 66 88 | 0/1/2 10/1/4 | kern 0 1 | styles 5 Base indexed"},
      {"a style the family lacks", family, keep(8), "-1 | 170 54 76 | | kern 0 1 | styles 5 Base indexed"},
      {"offsets smaller than the shift floor at 0", test::patchU32(test::patchU32(family, 16, 4), 20, 0), keep(1),
       "1 | 0 0 88 | 0/1/2 10/1/4 | kern | styles 5 Base indexed"},
      {"count beyond the data: only entries within it", test::patchU16(test::truncated(family, 54 + 18), 52, 9), keep(1),
       "7 | 188 72 94 | 0/1/2 | kern | styles"},
      {"family of 53 bytes", test::truncated(family, 53), keep(1), ""},
      // The count claims 200 strings; the erasing walk stops at the end of the family.
      {"string count past the data", test::patchU16(family, 106 + 58, 200), promote(1),
       "4 | 200 84 106 | 0/0/1 0/0/2 10/0/3 10/0/4 10/2/5 | kern 1 0 | styles 1 Base-Bold", "Base-Bold"},
      // The second kerning subtable lacks 4 bytes: the walk stops before it; no style table, no name.
      {"kerning subtable cut short", test::truncated(kernOnly.build(), kernOnly.build().size() - 4), promote(1),
       "0 | 0 60 0 | 0/0/1 | kern 0 5 | styles"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    auto rf = test::writeAndOpen(dir, "built.dfont", ResourceForkBuilder().add("FOND", 128, row.bytes, "Family").build());
    ASSERT_TRUE(rf);
    Resource fond = firstFamily(rf);
    row.edit(*rf, fond);  // checked in memory
    if (*row.facts) EXPECT_EQ(facts(fond), row.facts);
    else EXPECT_EQ(Bytes(fond->data().begin(), fond->data().end()), row.bytes);
    EXPECT_EQ(nameOf(fond), row.name);
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
    auto rf = open(scratch.file(row.edited), true);
    ASSERT_TRUE(rf);
    EXPECT_EQ(rf->sortedIDs(kTypeNFNT), row.nfnts);
    EXPECT_EQ(nameOf(firstFamily(rf)), row.familyName);
  }
}

}  // namespace
}  // namespace typeprint
