// File-system operations in a scratch folder: copy, move, delete, folder trees, the trash and
// its naming rule, locks, sizes and dates.
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

TEST(FileSystem, CopyNeverReplacesUnlessAsked) {
  ScratchDir dir;
  writeFile(dir.file("a"), "alpha");
  writeFile(dir.file("b"), "beta");
  EXPECT_TRUE(OSCopyFile(dir.file("a"), dir.file("c"), false));
  EXPECT_EQ(readFile(dir.file("c")), "alpha");
  EXPECT_FALSE(OSCopyFile(dir.file("a"), dir.file("b"), false));
  EXPECT_EQ(readFile(dir.file("b")), "beta");
  EXPECT_TRUE(OSCopyFile(dir.file("a"), dir.file("b"), true));
  EXPECT_EQ(readFile(dir.file("b")), "alpha");
  EXPECT_FALSE(OSCopyFile(dir.file("missing"), dir.file("d"), true));
  EXPECT_FALSE(there(dir.file("d")));
}

TEST(FileSystem, CopiesAndRemovesWholeTrees) {
  ScratchDir dir;
  fs::create_directories(dir.file("src/x/y"));
  writeFile(dir.file("src/top"), "1");
  writeFile(dir.file("src/x/y/deep"), "2");
  fs::create_symlink("top", dir.file("src/link"));
  ASSERT_TRUE(OSCopyFile(dir.file("src/"), dir.file("dst/"), false));
  EXPECT_EQ(readFile(dir.file("dst/x/y/deep")), "2");
  EXPECT_EQ(fs::read_symlink(dir.file("dst/link")), "top") << "links are copied as links";

  EXPECT_TRUE(OSRemoveDirectoryTree(dir.file("dst"), true));
  EXPECT_TRUE(fs::is_empty(dir.file("dst")));
  EXPECT_TRUE(OSRemoveDirectoryTree(dir.file("src")));
  EXPECT_FALSE(there(dir.file("src")));
  EXPECT_FALSE(OSRemoveDirectoryTree(dir.file("src"))) << "already gone";
}

TEST(FileSystem, MoveRenamesButNeverReplaces) {
  ScratchDir dir;
  writeFile(dir.file("a"), "alpha");
  writeFile(dir.file("b"), "beta");
  EXPECT_FALSE(OSMoveFile(dir.file("a"), dir.file("b")));
  EXPECT_EQ(readFile(dir.file("a")), "alpha");
  EXPECT_EQ(readFile(dir.file("b")), "beta");
  EXPECT_TRUE(OSMoveFile(dir.file("a"), dir.file("c")));
  EXPECT_FALSE(there(dir.file("a")));
  EXPECT_EQ(readFile(dir.file("c")), "alpha");
}

TEST(FileSystem, DeleteRemovesLockedFilesAndFolders) {
  ScratchDir dir;
  writeFile(dir.file("locked"), "x");
  fs::permissions(dir.file("locked"), fs::perms::owner_read);
  fs::create_directories(dir.file("tree/sub"));
  writeFile(dir.file("tree/sub/f"), "x");
  const struct {
    const char* name;
  } rows[] = {{"locked"}, {"tree"}, {"never-there"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_TRUE(DeleteFile(dir.file(row.name), false));
    EXPECT_FALSE(there(dir.file(row.name)));
  }
  writeFile(dir.file("plain"), "x");
  EXPECT_EQ(OSRemoveFile(dir.file("plain"), true), 0);
  EXPECT_FALSE(there(dir.file("plain")));
}

TEST(FileSystem, FolderCreationAndEmptiness) {
  ScratchDir dir;
  EXPECT_TRUE(MakeFullPath(dir.file("a/b/c/")));
  EXPECT_TRUE(fs::is_directory(dir.file("a/b/c")));
  EXPECT_TRUE(MakeFullPath(dir.file("p/q/file.otf")));
  EXPECT_TRUE(fs::is_directory(dir.file("p/q")));
  EXPECT_FALSE(there(dir.file("p/q/file.otf"))) << "the last component is a file name";
  EXPECT_TRUE(OSCreateDir(dir.file("a")));

  fs::create_directory(dir.file("h"));
  writeFile(dir.file("h/.hidden"), "");
  const struct {
    const char* folder;
    bool ignoreHidden, empty;
  } rows[] = {{"a/b/c", false, true}, {"a", false, false}, {"h", false, false}, {"h", true, true}, {"zz", false, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.folder);
    EXPECT_EQ(FolderIsEmpty(dir.file(row.folder), row.ignoreHidden), row.empty);
  }
  EXPECT_FALSE(DeleteIfEmpty(dir.file("a")));
  EXPECT_TRUE(DeleteIfEmpty(dir.file("a/b/c")));
}

TEST(FileSystem, DeleteEmptyParentFoldersStopsAtTheRoot) {
  ScratchDir dir;
  fs::create_directories(dir.file("root/a/b/c"));
  fs::create_directories(dir.file("root/k/l"));
  writeFile(dir.file("root/k/keep"), "");
  const struct {
    const char* file;
    int removed;
    const char* survivor;
  } rows[] = {{"root/a/b/c/gone.otf", 3, "root"}, {"root/k/l/gone.otf", 1, "root/k"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    EXPECT_EQ(DeleteEmptyParentFolders(dir.file(row.file), dir.file("root")), row.removed);
    EXPECT_TRUE(fs::is_directory(dir.file(row.survivor)));
  }
}

TEST(FileSystem, DescendantsIgnoreCase) {
  const struct {
    const char *file, *folder;
    bool inside;
  } rows[] = {
      {"/Fonts/A/x.otf", "/fonts/a/", true}, {"/fonts/a/x", "/fonts/a", false}, {"/fonts/a", "/fonts/a/", false},
      {"/fonts/a/", "/fonts/a/", false},     {"/fonts/ab/x", "/fonts/a/", false}, {"/x", "/", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.file) + " in " + row.folder);
    EXPECT_EQ(FileIsDescendantOfFolder(row.file, row.folder), row.inside);
  }
}

TEST(FileSystem, NameEditsAndTilde) {
  const struct {
    const char *path, *namePart, *extracted, *ext, *renamed, *replaced;
  } rows[] = {
      {"/a/b.tar.gz", "b.tar.gz", "b", "tar.gz", "/a/c.tar.gz", "/a/c"},
      {"/a.d/b", "b", "b", "", "/a.d/c", "/a.d/c"},
      {"b.otf", "b.otf", "b", "otf", "c.otf", "c"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(std::string(GetFileNamePart(row.path)), row.namePart);
    EXPECT_EQ(std::string(ExtractFileNamePart(row.path)), row.extracted);
    EXPECT_EQ(std::string(GetFileExtension(row.path)), row.ext);
    EXPECT_EQ(std::string(ReplaceFileNamePart(row.path, "c")), row.renamed);
    EXPECT_EQ(std::string(ReplaceLastPathComponent(row.path, "c")), row.replaced);
  }
  EXPECT_EQ(std::string(SetFileExtension("/a/b.ttf", "otf")), "/a/b.otf");

  std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
  if (!home.empty() && home[0] == '/') {
    EXPECT_EQ(std::string(ExpandTildeInPath("~")), home);
    EXPECT_EQ(std::string(ExpandTildeInPath("~/Fonts")), home + "/Fonts");
  }
  EXPECT_EQ(std::string(ExpandTildeInPath("~no-such-user-here/x")), "~no-such-user-here/x");
  EXPECT_EQ(std::string(ExpandTildeInPath("/a/~")), "/a/~");
}

TEST(FileSystem, BundlesByExtension) {
  ScratchDir dir;
  for (const char* name : {"X.app", "My.Font.app", "X.APP", "Plug.prefPane"}) fs::create_directory(dir.file(name));
  writeFile(dir.file("Z.bundle"), "");
  const struct {
    const char* name;
    bool bundle;
  } rows[] = {{"X.app", true},     {"X.app/", true},     {"My.Font.app", false}, {"X.APP", false},
              {"Plug.prefPane", true}, {"Z.bundle", true}, {"Gone.app", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(IsPathAMacBundle(dir.file(row.name)), row.bundle);
  }
}

TEST(Trash, TakesTheFirstFreeNumberedName) {
  ScratchDir dir;
  std::string trash = dir.file("Trash");
  fs::create_directories(trash + "/files");
  fs::create_directories(trash + "/info");
  writeFile(trash + "/files/f.otf", "old");
  writeFile(trash + "/files/f.otf.1", "older");
  writeFile(trash + "/info/g.otf.trashinfo", "");  // a stale record still reserves its name
  writeFile(dir.file("f.otf"), "new");
  writeFile(dir.file("g.otf"), "g");
  writeFile(dir.file("a b%.otf"), "");
  const struct {
    const char *item, *landed;
  } rows[] = {{"f.otf", "f.otf.2"}, {"g.otf", "g.otf.1"}, {"a b%.otf", "a b%.otf"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.item);
    ASSERT_TRUE(MoveToTrashFolder(dir.file(row.item), trash));
    EXPECT_FALSE(there(dir.file(row.item)));
    EXPECT_TRUE(there(trash + "/files/" + row.landed));
    EXPECT_TRUE(there(trash + "/info/" + row.landed + ".trashinfo"));
  }
  EXPECT_EQ(readFile(trash + "/files/f.otf.2"), "new");
  EXPECT_EQ(readFile(trash + "/files/f.otf"), "old");

  std::string info = readFile(trash + "/info/a b%.otf.trashinfo");
  std::regex layout("\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
  std::smatch match;
  ASSERT_TRUE(std::regex_match(info, match, layout)) << info;
  EXPECT_EQ(match[1].str(), dir.path() + "/a%20b%25.otf");

  EXPECT_TRUE(MoveToTrashFolder(dir.file("never-there"), trash));
}

TEST(Trash, CreatesItsFolders) {
  ScratchDir dir;
  writeFile(dir.file("f.otf"), "x");
  EXPECT_TRUE(MoveToTrashFolder(dir.file("f.otf"), dir.file("new/Trash")));
  EXPECT_EQ(readFile(dir.file("new/Trash/files/f.otf")), "x");
}

TEST(FileSystem, LocksSizesAndDates) {
  ScratchDir dir;
  writeFile(dir.file("f"), std::string(1234, 'x'));
  UxFileSpecification file(dir.file("f"));
  EXPECT_EQ(UxFileSystem::GetFileSize(file), 1234u);
  EXPECT_EQ(UxFileSystem::GetFileSize(UxFileSpecification(dir.file("none"))), 0u);

  EXPECT_FALSE(UxFileSystem::IsLockedFile(file));
  EXPECT_TRUE(UxFileSystem::SetReadOnly(file, true));
  EXPECT_TRUE(UxFileSystem::IsLockedFile(file));
  EXPECT_TRUE(UnlockFile(file.GetFullPath()));
  EXPECT_FALSE(UxFileSystem::IsLockedFile(file));

  int64_t seconds = 0;
  EXPECT_TRUE(UxFileSystem::SetFileModDate(file, 1000000000));
  EXPECT_TRUE(UxFileSystem::GetFileModDate(file, seconds));
  EXPECT_EQ(seconds, 1000000000);

  UxDirectorySpecification folder(dir.path());
  EXPECT_TRUE(UxFileSystem::IsValidDirectory(folder));
  EXPECT_FALSE(UxFileSystem::IsRootDirectory(folder));
  EXPECT_TRUE(UxFileSystem::IsRootDirectory(UxDirectorySpecification("/")));
  UxFileSpecification moved(folder, "g");
  EXPECT_TRUE(UxFileSystem::CanMoveFile(file, moved));
  EXPECT_TRUE(UxFileSystem::MoveFile(file, moved));
  EXPECT_FALSE(UxFileSystem::CanMoveFile(file, moved));
  EXPECT_TRUE(UxFileSystem::IsValidFile(moved));
}

}  // namespace
}  // namespace typeprint
