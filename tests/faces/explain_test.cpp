// Why a file gave no face: one damaged file per parser, each refused with its own reason, and
// the decisions recorded for files that do give faces.
#include "api/explain.h"

#include <gtest/gtest.h>

#include "builders/apple_double_builder.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/ttc_builder.h"
#include "support/mac_fixtures.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;

std::string traceText(const Explanation& e) {
  std::string all;
  for (const DiagnosticEntry& entry : e.trace) all += describe(entry) + "\n";
  return all;
}

TEST(Explain, EachDamagedFileGivesItsParsersReason) {
  const Bytes named = test::SfntBuilder().table("head", 8).table("name", 40).build();
  const size_t nameEntry = test::SfntBuilder::entryOffset(1);
  test::TtcBuilder ttc;
  ttc.face({{"head", ttc.addTable(Bytes(8))}});
  const Bytes map = test::ResourceForkBuilder().add("FOND", 128, Bytes(60)).build();
  const Bytes damagedMap = test::patchU16(map, test::ResourceForkBuilder().add("FOND", 128, Bytes(60)).layout().typeList,
                                          0x7FFF);
  // One name record (family name) whose 0x100 bytes of string lie past the end of the font.
  const Bytes farString = test::SfntBuilder().table("head", 8).table("name", Bytes{0, 0, 0, 1, 0, 18, 0, 1, 0, 0, 0, 0,
                                                                                    0, 1, 1, 0, 0, 0}).build();
  const Bytes family = test::FondBuilder().entry(0, 0, 500).build();
  // `alsoTraced`: a refusal met on the way, before the one that ended the walk.
  const struct { const char* name; Bytes bytes; Bytes companion; const char* reason; const char* alsoTraced = nullptr; } rows[] = {
      {"picture.png", {0x89, 'P', 'N', 'G', 0x0D, 0x0A}, {}, "kind: not a font: first bytes 89 50 4E 47 (at 0x0)"},
      {"tiny", {'a', 'b'}, {}, "kind: not a font: a data fork of 2 bytes and no resource fork"},
      {"short.ttf", Bytes(10, 0), {}, "name table: a font of 10 bytes is too short for a table directory"},
      {"noname.ttf", test::SfntBuilder().table("head", 8).build(), {},
       "name table: no name table in the table directory"},
      {"farname.ttf", test::patchU32(named, nameEntry + 8, 0x1234), {},
       "name table: name table offset 0x1234, length 0x28, beyond the font's 0x5C bytes (at 0x1C)",
       "sfnt table: 'name' table at 0x1234, 0x28 bytes, runs past the font's 0x5C bytes (at 0x1C)"},
      {"notables.ttf", test::patchU16(named, 4, 0), {}, "sfnt directory: the table directory lists 0 tables (at 0x4)"},
      {"farstring.ttf", farString, {}, "name table: none of the 1 name records gives a name",
       "name table: name record 1 string of 256 bytes runs past the font's 0x"},
      {"blank.ttf", named, {}, "name table: none of the "},
      {"cut.ttc", test::patchU32(ttc.build(), test::TtcBuilder::faceOffsetEntry(0), 0x10000), {},
       "collection: face 0 at 0x10000 lies beyond the file's 0x34 bytes (at 0xC)"},
      {"broken.dfont", damagedMap, {}, "data fork as resource map: type list count 32768 exceeds the map's"},
      {"Suitcase", {}, test::AppleDoubleBuilder::appleDouble().entry(2, damagedMap).build(),
       "resource map: type list count 32768 exceeds the map's"},
      {"Printer", {}, test::AppleDoubleBuilder::appleDouble().entry(2, test::ResourceForkBuilder().add("POST", 501, {1, 0}).build()).build(),
       "kind: a printer font file without families: its faces are read through the suitcase that names it"},
      {"single", test::patchU32(test::AppleDoubleBuilder::appleSingle().entry(1, Bytes(4)).build(),
                                test::AppleDoubleBuilder::descriptor(0) + 8, 0xFFFF), {},
       "container: AppleSingle/AppleDouble entry 1 at 0x26, 0xFFFF bytes, runs past the file's 0x2A bytes (at 0x1A)"},
      {"Empty", {}, test::AppleDoubleBuilder::appleDouble().entry(2, test::ResourceForkBuilder().add("FOND", 128,
           test::FondBuilder().entry(0, 0, 500).build()).build()).build(),
       "kind: the family has no outline or bitmap resource for this face"},
      {"Cut", {}, test::AppleDoubleBuilder::appleDouble().entry(2, test::ResourceForkBuilder().add("FOND", 128,
           test::patchU16(family, 52, 2)).build()).build(),
       "family: the family lists 3 entries, its "},
      {"._Font", {0, 5, 22, 7}, {}, "file: it holds another file's fork or Finder information, not a font of its own"},
      {"missing.ttf", {}, {}, "file: cannot read the file: No such file or directory"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    test::ScratchDir dir;
    if (std::string(row.name) != "missing.ttf") test::writeFile(dir.file(row.name), std::string(row.bytes.begin(), row.bytes.end()));
    if (!row.companion.empty())
      test::writeFile(dir.file(std::string("._") + row.name), std::string(row.companion.begin(), row.companion.end()));
    const Explanation e = explainIdentification(dir.file(row.name));
    ASSERT_FALSE(e.faces);
    ASSERT_TRUE(e.refusal);
    EXPECT_EQ(describe(*e.refusal).rfind(row.reason, 0), 0u) << describe(*e.refusal) << "\n" << traceText(e);
    if (row.alsoTraced) EXPECT_NE(traceText(e).find(row.alsoTraced), std::string::npos) << traceText(e);
  }
}

TEST(Explain, FacesComeWithTheDecisionsTaken) {
  const struct { std::string path; std::vector<std::string> steps; } rows[] = {
      {test::fontPath("sfnt/DejaVuSans-kern.ttf"),
       {"forks: a plain file: data fork", "kind: TrueType, from the extension .ttf"}},
      {test::macFixture("c-type1-family/appledouble/NimbusSans"),
       {"forks: an AppleDouble companion", "resource map: ", "kind: PostScript, from the face's resources",
        "printer file: style 0: looked for ", "face: family "}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    const Explanation e = explainIdentification(row.path);
    ASSERT_TRUE(e.faces);
    EXPECT_FALSE(e.refusal);
    const std::string trace = traceText(e);
    size_t at = 0;
    for (const std::string& step : row.steps) {
      at = trace.find(step, at);
      EXPECT_NE(at, std::string::npos) << step << " in order in\n" << trace;
    }
  }
  // Nothing is recorded for a call that is not explained.
  EXPECT_EQ(DiagnosticLog::current(), nullptr);
}

}  // namespace
}  // namespace typeprint
