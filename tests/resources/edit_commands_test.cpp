// The command-line purge and promote on copies of the real suitcases: what they write, what they
// refuse, and that the input and any failed copy are left as they were.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <map>

#include "resources/resource_file.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::recursive_directory_iterator(dir))
    if (e.is_regular_file()) files[e.path().lexically_relative(dir).string()] = test::readFile(e.path().string());
  return files;
}

TEST(EditCommands, EditCopiesAndRefusesCleanly) {
  const std::string tool = std::string(TYPEPRINT_BINARY_DIR) + "/stage/bin/typeprint";
  if (!fs::exists(tool)) GTEST_SKIP() << "the typeprint tool is not built";
  // FILE stands for the copied fixture, OUT for a new path beside it; `edited` is the file to read
  // back (none when nothing may be written), with its bitmap IDs and family name.
  const struct { const char* fixture; std::string arguments; int status; std::vector<std::string> newFiles;
                 const char* edited; std::vector<int16_t> nfnts; std::string familyName; } rows[] = {
      {"b-suitcase-truetype/appledouble/DejaVuSans", "purge --keep-style 1 FILE OUT", 0, {"._OUT", "OUT"}, "OUT",
       {13492, 13493}, "DejaVu Sans"},
      {"c-type1-family/macbinary/NimbusSans", "promote --style 3 --in-place FILE", 0, {}, "NimbusSans",
       {7260, 7261, 7262, 7263}, "NimbusSans-BoldItalic"},
      {"b-suitcase-truetype/appledouble/DejaVuSans", "purge --keep-style 4 FILE OUT", 1, {}, nullptr},  // no such style
      {"d-t1mac-lwfn/netatalk/C059Rom", "purge --keep-style 0 FILE OUT", 1, {}, nullptr},  // no family
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
      else if (!row.edited || name.find(row.edited) == std::string::npos) EXPECT_EQ(bytes, before.at(name)) << name;
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
