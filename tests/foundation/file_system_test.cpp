// File-system operations in a scratch folder: copy, move, and the trash with its naming rule.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "foundation/file_system.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::ScratchDir;
using test::writeFile;

bool there(const std::string& path) { return fs::exists(fs::symlink_status(path)); }

TEST(FileSystem, CopyAndMoveNeverReplaceUnlessAsked) {
  ScratchDir dir;
  writeFile(dir.file("a"), "alpha");
  writeFile(dir.file("b"), "beta");
  EXPECT_FALSE(OSCopyFile(dir.file("a"), dir.file("b"), false));
  EXPECT_FALSE(OSMoveFile(dir.file("a"), dir.file("b")));
  EXPECT_EQ(readFile(dir.file("b")), "beta");
  EXPECT_TRUE(OSCopyFile(dir.file("a"), dir.file("b"), true));
  EXPECT_EQ(readFile(dir.file("b")), "alpha");
  EXPECT_TRUE(OSMoveFile(dir.file("a"), dir.file("c")));
  EXPECT_FALSE(there(dir.file("a")));

  fs::create_directories(dir.file("src/x/y"));
  writeFile(dir.file("src/x/y/deep"), "2");
  fs::create_symlink("deep", dir.file("src/x/y/link"));
  ASSERT_TRUE(OSCopyFile(dir.file("src/"), dir.file("dst/"), false));
  EXPECT_EQ(readFile(dir.file("dst/x/y/deep")), "2");
  EXPECT_EQ(fs::read_symlink(dir.file("dst/x/y/link")), "deep") << "links are copied as links";
}

TEST(FileSystem, DescendantsIgnoreCase) {
  const struct { const char *file, *folder; bool inside; } rows[] = {
      {"/Fonts/A/x.otf", "/fonts/a/", true}, {"/fonts/a/x", "/fonts/a", false},
      {"/fonts/a/", "/fonts/a/", false},     {"/fonts/ab/x", "/fonts/a/", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.file) + " in " + row.folder);
    EXPECT_EQ(FileIsDescendantOfFolder(row.file, row.folder), row.inside);
  }
}

TEST(Trash, TakesTheFirstFreeNumberedName) {
  ScratchDir dir;
  std::string trash = dir.file("new/Trash");
  writeFile(dir.file("f.otf"), "new");
  ASSERT_TRUE(MoveToTrashFolder(dir.file("f.otf"), trash)) << "the trash folders are made on demand";
  writeFile(trash + "/files/f.otf.1", "older");
  writeFile(trash + "/info/g.otf.trashinfo", "");  // a stale record still reserves its name
  writeFile(dir.file("f.otf"), "newer");
  writeFile(dir.file("g.otf"), "g");
  writeFile(dir.file("a b%.otf"), "");
  const struct { const char *item, *landed; } rows[] = {
      {"f.otf", "f.otf.2"}, {"g.otf", "g.otf.1"}, {"a b%.otf", "a b%.otf"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.item);
    ASSERT_TRUE(MoveToTrashFolder(dir.file(row.item), trash));
    EXPECT_FALSE(there(dir.file(row.item)));
    EXPECT_TRUE(there(trash + "/files/" + row.landed));
    EXPECT_TRUE(there(trash + "/info/" + row.landed + ".trashinfo"));
  }
  EXPECT_EQ(readFile(trash + "/files/f.otf.2"), "newer");
  EXPECT_EQ(readFile(trash + "/files/f.otf"), "new");

  std::string info = readFile(trash + "/info/a b%.otf.trashinfo");
  std::regex layout("\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
  std::smatch match;
  ASSERT_TRUE(std::regex_match(info, match, layout)) << info;
  EXPECT_EQ(match[1].str(), dir.path() + "/a%20b%25.otf");
  EXPECT_TRUE(MoveToTrashFolder(dir.file("never-there"), trash));
}

}  // namespace
}  // namespace typeprint
