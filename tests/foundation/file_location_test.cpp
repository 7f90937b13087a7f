// Path parsing rules and file and folder locations.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "foundation/errors.h"
#include "foundation/file_location.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using Parser = UxFileSystemParser;
using test::ScratchDir;

std::string thrown(const std::function<void()>& call) {
  try {
    call();
  } catch (const UXFileSystemException& e) {
    return e.what();
  }
  return "(nothing thrown)";
}

TEST(PathParsing, ExtensionsAndComponents) {
  const struct { const char* path; bool has; const char *ext, *changed; } rows[] = {  // changed: to "otf"
      {"/x/archive.tar.gz", true, "tar.gz", "/x/archive.otf"}, {"/a.b/c", false, "", "/a.b/c.otf"},
      {"name.", true, "", "name.otf"},                         {"/dir/.hidden", true, "hidden", "/dir/.otf"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    UxString ext("stale"), changed;
    EXPECT_EQ(Parser::GetExtension(row.path, ext), row.has);
    EXPECT_EQ(std::string(ext), row.ext);
    Parser::ChangeExtension(row.path, "otf", changed);
    EXPECT_EQ(std::string(changed), row.changed);
  }
  const struct { const char *path, *parent, *name; } paths[] = {
      {"/a/b/", "/a/", ""}, {"b", "", "b"}, {"/", "/", ""}, {"/a/b", "/a/", "b"}, {"//", "/", ""}};
  for (const auto& row : paths) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(std::string(Parser::GetPathDeletingLastPathComponent(row.path)), row.parent);
    UxString name;
    EXPECT_EQ(Parser::GetFileName(row.path, name), row.name[0] != '\0');
    EXPECT_EQ(std::string(name), row.name);
  }
}

TEST(PathParsing, BootVolumeAndIllegalCharacters) {
  const struct { const char* path; bool boot; } volumes[] = {
      {"/Users/x", true}, {"/Volumes/Data/x", false}, {"/VolumesX/y", true}};
  for (const auto& row : volumes) {
    SCOPED_TRACE(row.path);
    short volume = 5;
    EXPECT_EQ(Parser::IsPathOnBootVolume(row.path, volume), row.boot);
    EXPECT_EQ(volume, 0);
  }
  const struct { std::string in, out; } names[] = {
      {".a:b", "_a_b"}, {"\"/\\[]:;=,\r\n\t()<>&|", std::string(18, '_')}, {std::string("a\0b", 3), "a_b"},
      {"caf\xC3\xA9 1.b", "caf\xC3\xA9 1.b"}};
  for (const auto& row : names) {
    SCOPED_TRACE(row.in);
    UxString name(row.in);
    Parser::ReplaceIllegalFilenameChars(&name);
    EXPECT_EQ(std::string(name), row.out);
  }
}

TEST(FileLocation, ResolvesItemsInExistingFoldersOnly) {
  ScratchDir dir;
  UxFileSpecification inFolder(dir.file("new.otf")), inMissing(dir.file("missing/new.otf"));
  EXPECT_EQ(std::string(inFolder.GetFullPath()), dir.file("new.otf"));
  EXPECT_FALSE(inMissing.IsValid());
  EXPECT_EQ(thrown([&] { inMissing = UxString(dir.file("missing/new.otf")); }),
            "Path not found in UxFileSpecification::GetName:-36");

  UxDirectorySpecification folder(dir.path()), parent;
  EXPECT_EQ(std::string(folder.GetFullPath()), dir.path() + "/") << "folders end with the delimiter";
  UxFileSpecification(folder, "f.otf").GetParentDirectory(parent);
  EXPECT_EQ(parent, folder);
  for (const char* bad : {"", "..", "a/b"}) EXPECT_FALSE(UxFileSpecification(folder, bad).IsValid()) << bad;
  EXPECT_EQ(thrown([] { UxFileSpecification("/").GetName(); }), "Bad filename in UxFileSpecification::GetName:-37");
  EXPECT_EQ(thrown([] { UxDirectorySpecification("/").GetName(); }),
            "Bad filename in UxDirectorySpecification::GetName:-37");
}

}  // namespace
}  // namespace typeprint
