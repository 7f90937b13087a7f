// Where a file's data fork, resource fork and Finder type/creator live on Linux. Every reader of
// "the data fork" or "the resource fork" goes through openForks, so a font inside a container
// reads exactly like the same font in a plain file.
//
// For a path P = D/N the places are tried in this order, one function each:
//   1. P itself is a MacBinary I/II/III or AppleSingle container;
//   2. an AppleDouble companion: D/._N (macOS on foreign disks and in zip archives), then
//      D/.AppleDouble/N (netatalk);
//   3. the other places Linux tools leave forks: D/%N (AppleDouble, the Linux HFS driver),
//      D/.resource/N (bare fork, CAP), D/resource.frk/N (bare fork, PC Exchange on FAT disks),
//      and the mirror unzip leaves in an ancestor folder A: A/__MACOSX/<path from A to D>/._N;
//   4. otherwise P is a plain file with no resource fork.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/be_reader.h"
#include "platform/linux/mapped_file.h"

namespace typeprint {

// Where the forks of a file were found.
enum class ForkSource {
  Plain,        // an ordinary file: no resource fork
  MacBinary,    // the file is a MacBinary I/II/III container
  AppleSingle,  // the file is an AppleSingle container
  AppleDouble,  // the file plus an AppleDouble companion
  BareFork,     // the file plus a bare resource fork stored beside it
};

struct FileForks {
  std::shared_ptr<const MappedFile> file;       // the path itself, mapped once
  std::shared_ptr<const MappedFile> companion;  // the file holding the resource fork, when separate
  ByteSpan dataFork;
  ByteSpan resourceFork;  // empty when there is none
  uint32_t type = 0;      // Finder type and creator; 0 for a plain Linux file
  uint32_t creator = 0;
  ForkSource source = ForkSource::Plain;
  std::string companionPath;  // the file the resource fork came from, when separate

  // The size the Finder shows: both forks together.
  uint64_t finderSize() const { return uint64_t(dataFork.size) + resourceFork.size; }
};

// Opens the forks of the file at `path`; nothing when the file cannot be read.
std::optional<FileForks> openForks(const std::string& path);

// While one is alive on a thread, openForks on that thread reads each folder it looks in once
// (one readdir, kept for the cache's life) and tries only the places that folder and its
// ancestors show to exist, so that a plain file costs no failed lookup whatever its depth. For
// walks over many files that do not change meanwhile; without one, every place is tried.
class ForkLookupCache {
 public:
  ForkLookupCache();
  ~ForkLookupCache();
  ForkLookupCache(const ForkLookupCache&) = delete;
  ForkLookupCache& operator=(const ForkLookupCache&) = delete;

  struct Folders;

 private:
  std::unique_ptr<Folders> folders_;
  Folders* outer_;  // the cache this one hides on its thread, restored when it goes
};

// True for files that only hold another file's forks or Finder info (`._N`, anything inside
// `.AppleDouble/`, `.resource/`, `.finderinfo/`, `resource.frk/` or `__MACOSX/`, and `%N` beside
// an N): a directory walk must not take them for fonts of their own.
bool isForkCompanion(const std::string& path);

// The places, each on its own. Each returns the forks when its place holds them, else nothing.
std::optional<FileForks> forksFromContainer(std::shared_ptr<const MappedFile> file);
std::optional<FileForks> forksFromDotUnderscore(std::shared_ptr<const MappedFile> file);
std::optional<FileForks> forksFromNetatalk(std::shared_ptr<const MappedFile> file);
std::optional<FileForks> forksFromPercentDouble(std::shared_ptr<const MappedFile> file);
std::optional<FileForks> forksFromResourceFolder(std::shared_ptr<const MappedFile> file);
std::optional<FileForks> forksFromResourceFrk(std::shared_ptr<const MappedFile> file);
std::optional<FileForks> forksFromMacosxMirror(std::shared_ptr<const MappedFile> file);

}  // namespace typeprint
