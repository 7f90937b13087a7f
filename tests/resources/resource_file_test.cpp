// The resource file object over real files in every container form: what it reads, the files it
// refuses, and edits written back.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <set>

#include "builders/resource_fork_builder.h"
#include "platform/linux/fork_writer.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::openResourceFile;

std::string line(const std::string& type, int id, size_t size, uint32_t crc, const std::string& name) {
  char hex[9];
  snprintf(hex, sizeof hex, "%08x", crc);
  return type + " " + std::to_string(id) + " " + std::to_string(size) + " " + hex + " " + (name.empty() ? "-" : name);
}

// The first resource of type `removed` is removed, of `renamed` renamed, of `rewritten` lengthened.
struct Edit { uint32_t removed, renamed, rewritten; };

// One line per resource in map order; with `edit`, as the file should read once it is applied.
std::vector<std::string> listing(const ResourceFile& rf, const Edit* edit = nullptr) {
  std::vector<std::string> lines;
  for (int t = 1; t <= rf.countTypes(); ++t) {
    const uint32_t type = rf.typeAt(t);
    for (int i = 1; i <= rf.count(type); ++i) {
      Resource r = rf.at(type, i);
      EXPECT_EQ(r->type, type);
      int16_t id = r->id;
      std::string name = r->hasName ? r->name : std::string();
      Bytes data(r->data().begin(), r->data().end());
      const bool first = edit && i == 1;
      if (first && type == edit->removed) continue;
      if (first && type == edit->renamed) id = int16_t(id + 1000), name = "Edited name";
      if (first && type == edit->rewritten) data.insert(data.end(), {0, 0, 'Z'});
      const std::string typeText{char(type >> 24), char(type >> 16), char(type >> 8), char(type)};
      lines.push_back(line(typeText, id, data.size(), uint32_t(crc32(0, data.data(), uInt(data.size()))), name));
    }
  }
  return lines;
}

void applyEdits(ResourceFile& rf, const Edit& edit) {
  ASSERT_TRUE(rf.remove(rf.at(edit.removed, 1)));
  Resource renamed = rf.at(edit.renamed, 1);
  const std::string name = "Edited name";
  ASSERT_TRUE(rf.setInfo(renamed, int16_t(renamed->id + 1000), &name));
  Resource rewritten = rf.at(edit.rewritten, 1);
  Bytes data(rewritten->data().begin(), rewritten->data().end());
  data.insert(data.end(), {0, 0, 'Z'});
  ASSERT_TRUE(rf.replaceData(rewritten, data));
}

// Every fixture, in each of its container forms, reads as the dumper listed it, and every form
// of one file (fixture folder and name, less ".bin") gives the same resources.
TEST(ResourceFile, ReadsEveryFixtureAsTheIndependentDumperDoes) {
  const auto files = test::loadMacExpectations();
  ASSERT_GE(files.size(), 20u);
  std::map<std::string, std::vector<std::string>> byFile;
  for (const auto& file : files) {
    SCOPED_TRACE(file.path);
    auto rf = openResourceFile(test::macFixture(file.path));
    ASSERT_EQ(bool(rf), file.mapSource != "none");
    if (!rf) continue;
    EXPECT_EQ(rf->isDataFork(), file.mapSource == "data");
    EXPECT_EQ(rf->forks().type, file.type == "-" ? 0 : test::fourCC(file.type));
    EXPECT_EQ(rf->forks().creator, file.creator == "-" ? 0 : test::fourCC(file.creator));
    std::vector<std::string> expected;
    std::set<std::string> has;  // "TYPE" and "TYPE id"
    for (const auto& r : file.resources) {
      expected.push_back(line(r.type, r.id, r.size, r.crc, r.name));
      has.insert({r.type, r.type + " " + std::to_string(r.id)});
      EXPECT_EQ(dataOf(rf->find(test::fourCC(r.type), int16_t(r.id))).size, r.size);
    }
    EXPECT_EQ(listing(*rf), expected);
    const fs::path p(file.path);
    const std::string name = p.filename().string(), key = p.begin()->string() + " " + name.substr(0, name.find(".bin"));
    EXPECT_EQ(byFile.try_emplace(key, listing(*rf)).first->second, listing(*rf));
    EXPECT_EQ(rf->hasFamilies(), has.count("FOND") == 1);
    EXPECT_EQ(rf->hasPrinterResources(), has.count("POST") == 1);
    EXPECT_EQ(rf->hasBitmapFonts(), has.count("NFNT") == 1);
    EXPECT_EQ(rf->isPrinterFont(), has.count("POST 501") == 1);
    EXPECT_FALSE(rf->hasType1Outline());  // no fixture has typ1 outlines
  }
}

TEST(ResourceFile, SortedIdsIndexBoundsAndTheTypeOneHeader) {
  test::ScratchDir dir;
  auto rf = test::writeAndOpen(dir, "f.dfont", test::ResourceForkBuilder()
                                                   .add("NFNT", 300, {1}).add("NFNT", -5, {2}).add("NFNT", 128, {3})
                                                   .add("NFNT", 128, {4}).add("sfnt", 2, test::bytesOf("typ"))
                                                   .add("sfnt", 1, test::bytesOf("typ1")).build());
  ASSERT_TRUE(rf);
  EXPECT_EQ(rf->sortedIDs(kTypeNFNT), (std::vector<int16_t>{-5, 128, 300}));
  EXPECT_EQ(rf->count(kTypeNFNT), 4);
  for (int index : {-1, 0, 5}) EXPECT_FALSE(rf->at(kTypeNFNT, index)) << index;
  // Of two resources with one ID the first is found.
  EXPECT_EQ(rf->find(kTypeNFNT, 128)->data().data[0], 3);
  EXPECT_EQ(rf->at(kTypeNFNT, 3), rf->find(kTypeNFNT, 128));
  EXPECT_EQ(rf->typeAt(3), 0u);
  EXPECT_FALSE(rf->hasType1Outline());  // the first sfnt alone counts, and "typ" is short
  auto typ1 = test::writeAndOpen(dir, "g.dfont", test::ResourceForkBuilder().add("sfnt", 1, test::bytesOf("typ1")).build());
  EXPECT_TRUE(typ1->hasType1Outline());
}

TEST(ResourceFile, FilesWithoutAMapAreRefused) {
  EXPECT_FALSE(openResourceFile(test::macFixture("../sfnt/missing.ttf")));
  EXPECT_FALSE(openResourceFile(test::macFixture("d-t1mac-lwfn/appledouble/._C059Rom")));  // a companion
}

// Every file below `dir`, with its bytes.
std::map<std::string, std::string> snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::recursive_directory_iterator(dir))
    if (e.is_regular_file()) files[e.path().lexically_relative(dir).string()] = test::readFile(e.path().string());
  return files;
}

// What an edit leaves alone: the container, the codes, where the map lives, a data fork.
std::string containerState(const test::ResourceFilePtr& rf) {
  const FileForks& f = rf->forks();
  return std::to_string(int(f.source)) + " " + std::to_string(f.type) + " " + std::to_string(f.creator) + " " +
         (rf->isDataFork() ? "data map" : std::string(f.dataFork.begin(), f.dataFork.end()));
}

TEST(ResourceFile, EditsAreWrittenBackIntoEveryContainerForm) {
  const Edit lwfn{tag("T1UT"), tag("POST"), tag("ICN#")}, dfont{tag("sfnt"), tag("FOND"), tag("FOND")};
  const struct { const char* path; Edit edit; } rows[] = {
      {"d-t1mac-lwfn/macbinary/C059Rom", lwfn},           {"d-t1mac-lwfn/macbinary-i/C059Rom", lwfn},
      {"d-t1mac-lwfn/macbinary-stale-crc/C059Rom", lwfn}, {"d-t1mac-lwfn/applesingle/C059Rom", lwfn},
      {"d-t1mac-lwfn/appledouble/C059Rom", lwfn},         {"d-t1mac-lwfn/netatalk/C059Rom", lwfn},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", {tag("NFNT"), tag("FOND"), tag("sfnt")}},
      {"c-type1-family/appledouble/NimbusSans", {tag("NFNT"), tag("FOND"), tag("FOND")}},
      {"a-dfont/DejaVuSans.dfont", dfont},                {"a-dfont/DejaVuSans.dfont.bin", dfont},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    test::ScratchDir scratch;
    const std::string path = test::copyMacFixture(row.path, scratch.path());
    const auto original = snapshot(scratch.path());
    // Nothing is written by a read-only open (0), an open without edits (1; a rewrite would also
    // correct the stale CRC), or a write that fails before the rename (2).
    for (int attempt = 0; attempt < 3; ++attempt) {
      if (attempt == 2)
        setWriteFaultForTesting([](WriteStep step, const std::string&) { return step == WriteStep::Rename ? EIO : 0; });
      {
        auto rf = openResourceFile(path, attempt == 0);
        ASSERT_TRUE(rf);
        if (attempt != 1) applyEdits(*rf, row.edit);
        EXPECT_EQ(rf->update(), attempt == 1);
      }  // closing does not try again
      setWriteFaultForTesting(nullptr);
      EXPECT_EQ(snapshot(scratch.path()), original) << "attempt " << attempt;
    }
    std::vector<std::string> expected;
    std::string state;
    {
      auto rf = openResourceFile(path, false);
      expected = listing(*rf, &row.edit);
      state = containerState(rf);
      applyEdits(*rf, row.edit);
    }  // closing writes the changes
    auto rf = openResourceFile(path);
    ASSERT_TRUE(rf);
    EXPECT_EQ(listing(*rf), expected);
    EXPECT_EQ(containerState(rf), state);
    auto after = snapshot(scratch.path());  // the same files, no temporary ones left
    EXPECT_TRUE(std::equal(after.begin(), after.end(), original.begin(), original.end(),
                           [](const auto& a, const auto& b) { return a.first == b.first; }));
  }
}

}  // namespace
}  // namespace typeprint
