// Path parsing rules, file and folder locations, folder enumeration and standard folders.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "foundation/errors.h"
#include "foundation/file_location.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using Parser = UxFileSystemParser;
using test::ScratchDir;
using test::writeFile;

// Sets an environment variable for one scope and puts the old value back.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value) : name_(name) {
    const char* old = std::getenv(name);
    had_ = old != nullptr;
    if (had_) old_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedEnv() {
    if (had_) setenv(name_, old_.c_str(), 1);
    else unsetenv(name_);
  }

 private:
  const char* name_;
  bool had_;
  std::string old_;
};

TEST(PathParsing, Extensions) {
  const struct {
    const char* path;
    bool has;
    const char* ext;
    const char* changed;  // ChangeExtension(path, "otf")
  } rows[] = {
      {"/x/archive.tar.gz", true, "tar.gz", "/x/archive.otf"},
      {"/a.b/c", false, "", "/a.b/c.otf"},
      {"", false, "", ".otf"},
      {"noext", false, "", "noext.otf"},
      {"name.", true, "", "name.otf"},
      {"/dir/.hidden", true, "hidden", "/dir/.otf"},
      {"/a/b.c/", false, "", "/a/b.c/.otf"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    size_t pos = 7;
    EXPECT_EQ(Parser::HasExtension(row.path, pos), row.has);
    if (!row.has) {
      EXPECT_EQ(pos, std::string::npos);
    }
    UxString ext("stale");
    EXPECT_EQ(Parser::GetExtension(row.path, ext), row.has);
    EXPECT_EQ(std::string(ext), row.ext);
    UxString changed;
    Parser::ChangeExtension(row.path, "otf", changed);
    EXPECT_EQ(std::string(changed), row.changed);
  }
}

TEST(PathParsing, Components) {
  const struct {
    const char *path, *parent, *name;
  } rows[] = {
      {"/a/b/", "/a/", ""}, {"b", "", "b"},   {"/", "/", ""},       {"", "", ""},
      {"/a", "/", "a"},     {"a/b", "a/", "b"}, {"/a/b", "/a/", "b"}, {"//", "/", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(std::string(Parser::GetPathDeletingLastPathComponent(row.path)), row.parent);
    EXPECT_STREQ(Parser::FindFileName(row.path), row.name);
    UxString name;
    EXPECT_EQ(Parser::GetFileName(row.path, name), row.name[0] != '\0');
    EXPECT_EQ(std::string(name), row.name);
  }
  EXPECT_EQ(Parser::FindFileName(nullptr), nullptr);
  UxString s("/a");
  Parser::AddDelimiter(s);
  Parser::AddDelimiter(s);
  EXPECT_EQ(std::string(s), "/a/");
  EXPECT_FALSE(Parser::EndsWithDelimiter(""));
}

TEST(PathParsing, BootVolume) {
  const struct {
    const char* path;
    bool boot;
  } rows[] = {{"/Users/x", true}, {"/Volumes/", true},  {"/Volumes/Data/x", false},
              {"/Volumes/D", false}, {"/VolumesX/y", true}, {"", true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    short volume = 5;
    EXPECT_EQ(Parser::IsPathOnBootVolume(row.path, volume), row.boot);
    EXPECT_EQ(volume, 0);
  }
}

TEST(PathParsing, IllegalFilenameChars) {
  const struct {
    std::string in, out;
  } rows[] = {
      {".a:b", "_a_b"},
      {"a.b", "a.b"},
      {"\"/\\[]:;=,\r\n\t()<>&|", std::string(18, '_')},
      {std::string("a\0b", 3), "a_b"},
      {"caf\xC3\xA9 1", "caf\xC3\xA9 1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.in);
    UxString name(row.in);
    Parser::ReplaceIllegalFilenameChars(&name);
    EXPECT_EQ(std::string(name), row.out);
  }
}

TEST(FileLocation, ResolvesExistingItemsAndItemsInExistingFolders) {
  ScratchDir dir;
  writeFile(dir.file("f.otf"), "x");
  const struct {
    std::string path;
    bool valid;
  } rows[] = {
      {dir.file("f.otf"), true},
      {dir.file("new.otf"), true},
      {dir.file("missing/new.otf"), false},
      {"", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    UxFileSpecification location(row.path);
    EXPECT_EQ(location.IsValid(), row.valid);
    EXPECT_EQ(std::string(location.GetFullPath()), row.valid ? row.path : "");
    if (!row.valid) {
      try {
        location = UxString(row.path);
        ADD_FAILURE() << "no exception";
      } catch (const UXFileSystemException& e) {
        EXPECT_STREQ(e.what(), "Path not found in UxFileSpecification::GetName:-36");
        EXPECT_EQ(e.code(), -36);
      }
    }
  }
  UxString relative("some/file");
  Parser::ExpandPartialPath(relative);
  EXPECT_EQ(std::string(relative), std::filesystem::current_path().string() + "/some/file");
}

TEST(FileLocation, NamesAndParents) {
  ScratchDir dir;
  UxDirectorySpecification folder(dir.path());
  ASSERT_TRUE(folder.IsValid());
  EXPECT_EQ(std::string(folder.GetFullPath()), dir.path() + "/") << "folders end with the delimiter";

  UxFileSpecification file(folder, "f.otf");
  EXPECT_EQ(std::string(file.GetName()), "f.otf");
  UxDirectorySpecification parent;
  file.GetParentDirectory(parent);
  EXPECT_EQ(parent, folder);
  EXPECT_EQ(std::string(folder.GetName()), std::filesystem::path(dir.path()).filename().string());

  char buffer[64];
  std::string name = "f.otf";
  EXPECT_FALSE(file.GetNameUTF8(buffer, name.size()));
  EXPECT_TRUE(file.GetNameUTF8(buffer, name.size() + 1));
  EXPECT_STREQ(buffer, "f.otf");

  for (const char* bad : {"", ".", "..", "a/b"}) {
    SCOPED_TRACE(bad);
    EXPECT_FALSE(UxFileSpecification(folder, bad).IsValid());
  }
}

TEST(FileLocation, BadNamesThrow) {
  const struct {
    const char* what;
    void (*call)();
    const char* message;
  } rows[] = {
      {"invalid file", [] { UxFileSpecification().GetName(); }, "Bad filename in UxFileSpecification::GetName:-37"},
      {"file path ending in /", [] { UxFileSpecification("/").GetName(); },
       "Bad filename in UxFileSpecification::GetName:-37"},
      {"root folder", [] { UxDirectorySpecification("/").GetName(); },
       "Bad filename in UxDirectorySpecification::GetName:-37"},
      {"invalid folder", [] { UxDirectorySpecification().GetName(); },
       "Bad filename in UxDirectorySpecification::GetName:-37"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    try {
      row.call();
      ADD_FAILURE() << "no exception";
    } catch (const UXFileSystemException& e) {
      EXPECT_STREQ(e.what(), row.message);
      EXPECT_EQ(e.code(), -37);
    }
  }
  UxDirectorySpecification root("/"), above;
  EXPECT_FALSE(root.GetParentDirectory(above));
  EXPECT_FALSE(above.IsValid());
}

TEST(FileLocation, TypeAndCreator) {
  ScratchDir dir;
  writeFile(dir.file("plain.ttf"), "data");
  uint32_t type = 1, creator = 1;
  EXPECT_EQ(UxFileSpecification(dir.file("plain.ttf")).MacGetTypeAndCreator(type, creator), 0);
  EXPECT_EQ(type, 0u) << "a plain Linux file has no type";
  EXPECT_EQ(creator, 0u);
  EXPECT_EQ(UxFileSpecification(dir.file("absent.ttf")).MacGetTypeAndCreator(type, creator), -43);
  EXPECT_EQ(type, tag("TEXT"));
  EXPECT_EQ(creator, tag("ttxt"));
}

TEST(FileFind, ListsEveryEntryWithDots) {
  ScratchDir dir;
  writeFile(dir.file("a"), "");
  writeFile(dir.file("b.otf"), "");
  std::filesystem::create_directory(dir.file("sub"));
  UxFileFind find;
  ASSERT_TRUE(find.FindFile(dir.path()));
  std::set<std::string> names, folders, dots;
  while (find.FindNextFile()) {
    names.insert(find.GetFileName());
    EXPECT_EQ(std::string(find.GetFilePath()), dir.path() + "/" + std::string(find.GetFileName()));
    if (find.IsDirectory()) folders.insert(find.GetFileName());
    if (find.IsDots()) dots.insert(find.GetFileName());
  }
  EXPECT_EQ(names, (std::set<std::string>{".", "..", "a", "b.otf", "sub"}));
  EXPECT_EQ(folders, (std::set<std::string>{".", "..", "sub"}));
  EXPECT_EQ(dots, (std::set<std::string>{".", ".."}));
  EXPECT_FALSE(UxFileFind().FindFile(dir.file("missing")));
}

TEST(StandardFolders, FollowTheXdgConventions) {
  ScratchDir home;
  std::filesystem::create_directories(home.file("config"));
  std::filesystem::create_directories(home.file("data"));
  std::filesystem::create_directories(home.file("Docs"));
  writeFile(home.file("config/user-dirs.dirs"), "# written by xdg-user-dirs-update\nXDG_DOCUMENTS_DIR=\"$HOME/Docs\"\n");
  ScopedEnv h("HOME", home.path()), c("XDG_CONFIG_HOME", home.file("config")), d("XDG_DATA_HOME", home.file("data")),
      t("TMPDIR", home.path());
  const struct {
    uint32_t type;
    bool create;
    long result;
    std::string path;
  } rows[] = {
      {Parser::kPreferencesFolderType, false, 0, home.file("config/")},
      {Parser::kApplicationSupportFolderType, false, 0, home.file("data/")},
      {Parser::kDocumentsFolderType, false, 0, home.file("Docs/")},
      {Parser::kDesktopFolderType, false, -43, ""},
      {Parser::kDesktopFolderType, true, 0, home.file("Desktop/")},
      {Parser::kTemporaryFolderType, false, 0, home.path() + "/"},
      {Parser::kTrashFolderType, true, 0, home.file("data/Trash/")},
      {tag("zzzz"), false, -1, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    UxString out;
    EXPECT_EQ(Parser::MacGetStandardFolder(row.type, 0, out, row.create), row.result);
    EXPECT_EQ(std::string(out), row.path);
  }
  UxDirectorySpecification docs;
  EXPECT_TRUE(Parser::GetUserDocumentsDirectory(docs));
  EXPECT_EQ(std::string(docs.GetFullPath()), home.file("Docs/"));
}

}  // namespace
}  // namespace typeprint
