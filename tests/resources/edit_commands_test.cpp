// The command-line purge and promote, run as a user would on copies of the real suitcases: what
// they write, what they refuse, and that the input and any failed copy are left as they were.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "resources/fond.h"
#include "resources/resource_file.h"
#include "support/mac_fixtures.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;

const std::string kTool = std::string(TYPEPRINT_BINARY_DIR) + "/stage/bin/typeprint";

int run(const std::string& arguments) {
  const int status = std::system((kTool + " " + arguments + " >/dev/null 2>&1").c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::map<std::string, std::string> snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::recursive_directory_iterator(dir))
    if (e.is_regular_file()) files[e.path().lexically_relative(dir).string()] = test::readFile(e.path().string());
  return files;
}

struct Outcome {
  std::vector<int16_t> nfnts, sfnts;
  std::string familyName;
  std::vector<int> entryStyles;
};

Outcome read(const std::string& path) {
  Outcome o;
  auto rf = TypeprintResourceFile::initWithFile(path, true);
  if (!rf) return o;
  o.nfnts = rf->getSortedResIDsForType(kTypeNFNT);
  o.sfnts = rf->getSortedResIDsForType(kTypeSfnt);
  Handle fond = rf->getResourceHandleViaGet1IndResource(kTypeFOND, 1);
  rf->getResInfo(fond, nullptr, nullptr, &o.familyName);
  for (const FondEntry& e : fondEntries(HandleBytes(fond))) o.entryStyles.push_back(e.style);
  return o;
}

TEST(EditCommands, EditCopiesAndRefusesCleanly) {
  if (!fs::exists(kTool)) GTEST_SKIP() << "the typeprint tool is not built";
  const struct {
    const char* what;
    const char* fixture;
    std::string arguments;  // FILE stands for the copied fixture, OUT for a new path beside it
    int status;
    std::vector<std::string> newFiles;  // in the folder afterwards
    const char* edited;                 // the file to read back; null when nothing was written
    std::vector<int16_t> nfnts, sfnts;
    const char* familyName;
    std::vector<int> entryStyles;
  } rows[] = {
      {"purge into OUT, companion and all", "b-suitcase-truetype/appledouble/DejaVuSans", "purge --keep-style 1 FILE OUT",
       0, {"._OUT", "OUT"}, "OUT", {13492, 13493}, {13491}, "DejaVu Sans", {1, 1, 1}},
      {"purge into FILE.edited", "b-suitcase-truetype/macbinary/DejaVuSans.bin", "purge --keep-style 0 FILE", 0,
       {"DejaVuSans.bin.edited"}, "DejaVuSans.bin.edited", {13490, 13491}, {13490}, "DejaVu Sans", {0, 0, 0}},
      {"promote in place", "c-type1-family/macbinary/NimbusSans", "promote --style 3 --in-place FILE", 0, {},
       "NimbusSans", {7260, 7261, 7262, 7263}, {}, "NimbusSans-BoldItalic", {0, 1, 2, 0}},
      {"promote a chosen family", "a-dfont/DejaVuSans.dfont", "promote --style=1 --family 13490 FILE OUT", 0, {"OUT"},
       "OUT", {}, {13490, 13491}, "DejaVuSans-Bold", {0, 0}},
      {"no family has the style", "b-suitcase-truetype/appledouble/DejaVuSans", "purge --keep-style 4 FILE OUT", 1, {},
       nullptr, {}, {}, nullptr, {}},
      {"no such family", "a-dfont/DejaVuSans.dfont", "promote --style 1 --family 7 FILE OUT", 1, {}, nullptr, {}, {},
       nullptr, {}},
      {"no family at all, fork in .AppleDouble/", "d-t1mac-lwfn/netatalk/C059Rom", "purge --keep-style 0 FILE OUT", 1,
       {}, nullptr, {}, {}, nullptr, {}},
      {"OUT exists", "a-dfont/DejaVuSans.dfont", "promote --style 1 FILE FILE", 1, {}, nullptr, {}, {}, nullptr, {}},
      {"no style given", "a-dfont/DejaVuSans.dfont", "promote FILE OUT", 2, {}, nullptr, {}, {}, nullptr, {}},
      {"OUT with --in-place", "a-dfont/DejaVuSans.dfont", "purge --keep-style 0 --in-place FILE OUT", 2, {}, nullptr, {},
       {}, nullptr, {}},
      {"unknown option", "a-dfont/DejaVuSans.dfont", "purge --keep 0 FILE", 2, {}, nullptr, {}, {}, nullptr, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir scratch;
    const std::string file = test::copyMacFixture(row.fixture, scratch.path());
    const auto before = snapshot(scratch.path());
    std::string arguments = row.arguments;
    for (auto [word, path] : {std::pair<std::string, std::string>{"FILE", file}, {"OUT", scratch.file("OUT")}})
      for (size_t at = 0; (at = arguments.find(word, at)) != std::string::npos; at += path.size())
        arguments.replace(at, word.size(), path);
    EXPECT_EQ(run(arguments), row.status);

    auto after = snapshot(scratch.path());
    std::vector<std::string> added;
    for (const auto& [name, bytes] : after) {
      if (!before.count(name)) {
        added.push_back(name);
      } else if (row.edited == nullptr || name.find(row.edited) == std::string::npos) {
        EXPECT_EQ(bytes, before.at(name)) << name << " changed";
      }
    }
    EXPECT_EQ(added, row.newFiles);
    if (!row.edited) continue;
    const Outcome o = read(scratch.file(row.edited));
    EXPECT_EQ(o.nfnts, row.nfnts);
    EXPECT_EQ(o.sfnts, row.sfnts);
    EXPECT_EQ(o.familyName, row.familyName);
    EXPECT_EQ(o.entryStyles, row.entryStyles);
  }
}

}  // namespace
}  // namespace typeprint
