#include "platform/linux/fork_locator.h"

#include <dirent.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>

#include "base/diagnostics.h"
#include "platform/linux/apple_double.h"
#include "platform/linux/mac_binary.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;

// Ancestors searched for a __MACOSX mirror; deeper trees are not what unzip leaves.
constexpr int kMaxMirrorDepth = 32;

struct PathParts {
  fs::path folder;
  std::string name;
};

PathParts splitPath(const std::string& path) {
  fs::path p(path);
  fs::path folder = p.parent_path();
  return {folder.empty() ? fs::path(".") : folder, p.filename().string()};
}

FileForks plainForks(std::shared_ptr<const MappedFile> file) {
  FileForks forks;
  forks.dataFork = file->bytes();
  forks.file = std::move(file);
  return forks;
}

// P's own bytes are the data fork; the AppleDouble header file at `companionPath` holds the
// resource fork (entry 2) and the Finder info (entry 9).
std::optional<FileForks> forksFromAppleDouble(std::shared_ptr<const MappedFile> file, const fs::path& companionPath) {
  auto companion = MappedFile::open(companionPath.string());
  if (!companion) return std::nullopt;
  auto header = readAppleFile(companion->bytes());
  if (!header || header->magic != kAppleDoubleMagic) return std::nullopt;
  FileForks forks = plainForks(std::move(file));
  if (const AppleEntry* fork = header->entry(kAppleEntryResourceFork)) forks.resourceFork = fork->bytes;
  forks.type = header->fileType();
  forks.creator = header->fileCreator();
  forks.source = ForkSource::AppleDouble;
  forks.companionPath = companionPath.string();
  forks.companion = std::move(companion);
  return forks;
}

// P's own bytes are the data fork; the file at `forkPath` is a bare resource fork.
std::optional<FileForks> forksFromBareFork(std::shared_ptr<const MappedFile> file, const fs::path& forkPath) {
  auto companion = MappedFile::open(forkPath.string());
  if (!companion) return std::nullopt;
  FileForks forks = plainForks(std::move(file));
  forks.resourceFork = companion->bytes();
  forks.source = ForkSource::BareFork;
  forks.companionPath = forkPath.string();
  forks.companion = std::move(companion);
  return forks;
}

bool isFile(const fs::path& p) {
  std::error_code ec;
  return fs::is_regular_file(p, ec);
}

// What one folder's entries tell about the companions of the files in it.
struct FolderEntries {
  bool listed = false;                 // false when the folder could not be read: try every place
  std::unordered_set<std::string> doubles;  // names beginning "._" or "%"
  bool appleDouble = false, resource = false, resourceFrk = false, macosx = false;
  bool mirrorAbove = false;            // this folder or an ancestor holds __MACOSX
};

FolderEntries listFolder(const std::string& folder) {
  FolderEntries entries;
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return entries;
  entries.listed = true;
  while (const dirent* entry = ::readdir(dir)) {
    const char* name = entry->d_name;
    if ((name[0] == '.' && name[1] == '_') || name[0] == '%') entries.doubles.insert(name);
    entries.appleDouble |= std::strcmp(name, ".AppleDouble") == 0;
    entries.resource |= std::strcmp(name, ".resource") == 0;
    entries.resourceFrk |= std::strcmp(name, "resource.frk") == 0;
    entries.macosx |= std::strcmp(name, "__MACOSX") == 0;
  }
  ::closedir(dir);
  return entries;
}

thread_local ForkLookupCache::Folders* tFolders = nullptr;

}  // namespace

// Each folder's entries by its path as given, and whether each absolute folder holds __MACOSX.
struct ForkLookupCache::Folders {
  std::unordered_map<std::string, FolderEntries> byPath;
  std::unordered_map<std::string, bool> holdsMacosx;

  bool holdsMirror(const fs::path& folder) {
    auto found = holdsMacosx.find(folder.native());
    if (found != holdsMacosx.end()) return found->second;
    const FolderEntries entries = listFolder(folder.native());
    return holdsMacosx[folder.native()] = !entries.listed || entries.macosx;
  }

  // The ancestors forksFromMacosxMirror looks in, each read once per cache; `entries` are the
  // folder's own.
  bool mirrorAbove(const std::string& folder, const FolderEntries& entries) {
    std::error_code ec;
    fs::path ancestor = fs::absolute(folder, ec).lexically_normal();
    if (ec) return true;
    holdsMacosx.emplace(ancestor.native(), entries.macosx);
    for (int depth = 0; depth < kMaxMirrorDepth; ++depth) {
      if (holdsMirror(ancestor)) return true;
      if (ancestor == ancestor.parent_path() || ancestor.filename() == "__MACOSX") break;
      ancestor = ancestor.parent_path();
    }
    return false;
  }

  const FolderEntries& entriesOf(const std::string& folder) {
    auto found = byPath.find(folder);
    if (found != byPath.end()) return found->second;
    FolderEntries entries = listFolder(folder);
    entries.mirrorAbove = !entries.listed || mirrorAbove(folder, entries);
    return byPath.emplace(folder, std::move(entries)).first->second;
  }
};

ForkLookupCache::ForkLookupCache() : folders_(std::make_unique<Folders>()), outer_(tFolders) {
  tFolders = folders_.get();
}

ForkLookupCache::~ForkLookupCache() { tFolders = outer_; }

std::optional<FileForks> forksFromContainer(std::shared_ptr<const MappedFile> file) {
  ByteSpan bytes = file->bytes();
  if (auto mb = readMacBinary(bytes)) {
    FileForks forks;
    forks.dataFork = mb->dataFork;
    forks.resourceFork = mb->resourceFork;
    forks.type = mb->type;
    forks.creator = mb->creator;
    forks.source = ForkSource::MacBinary;
    forks.file = std::move(file);
    return forks;
  }
  auto single = readAppleFile(bytes);
  if (!single || !single->isAppleSingle()) return std::nullopt;
  FileForks forks;
  if (const AppleEntry* data = single->entry(kAppleEntryDataFork)) forks.dataFork = data->bytes;
  if (const AppleEntry* fork = single->entry(kAppleEntryResourceFork)) forks.resourceFork = fork->bytes;
  forks.type = single->fileType();
  forks.creator = single->fileCreator();
  forks.source = ForkSource::AppleSingle;
  forks.file = std::move(file);
  return forks;
}

std::optional<FileForks> forksFromDotUnderscore(std::shared_ptr<const MappedFile> file) {
  PathParts p = splitPath(file->path());
  return forksFromAppleDouble(std::move(file), p.folder / ("._" + p.name));
}

std::optional<FileForks> forksFromNetatalk(std::shared_ptr<const MappedFile> file) {
  PathParts p = splitPath(file->path());
  return forksFromAppleDouble(std::move(file), p.folder / ".AppleDouble" / p.name);
}

std::optional<FileForks> forksFromPercentDouble(std::shared_ptr<const MappedFile> file) {
  PathParts p = splitPath(file->path());
  return forksFromAppleDouble(std::move(file), p.folder / ("%" + p.name));
}

std::optional<FileForks> forksFromResourceFolder(std::shared_ptr<const MappedFile> file) {
  PathParts p = splitPath(file->path());
  auto forks = forksFromBareFork(file, p.folder / ".resource" / p.name);
  if (!forks) return std::nullopt;
  // CAP keeps the 32 bytes of Finder info beside the fork.
  if (auto info = MappedFile::open((p.folder / ".finderinfo" / p.name).string())) {
    BEReader r(info->bytes());
    uint32_t type = r.u32(), creator = r.u32();
    if (r.ok()) {
      forks->type = type;
      forks->creator = creator;
    }
  }
  return forks;
}

std::optional<FileForks> forksFromResourceFrk(std::shared_ptr<const MappedFile> file) {
  PathParts p = splitPath(file->path());
  return forksFromBareFork(std::move(file), p.folder / "resource.frk" / p.name);
}

std::optional<FileForks> forksFromMacosxMirror(std::shared_ptr<const MappedFile> file) {
  PathParts p = splitPath(file->path());
  std::error_code ec;
  fs::path folder = fs::absolute(p.folder, ec).lexically_normal();
  if (ec) return std::nullopt;
  // Walk up from D: at each ancestor A, the mirror of D is A/__MACOSX/<D relative to A>.
  fs::path ancestor = folder;
  for (int depth = 0; depth < kMaxMirrorDepth; ++depth) {
    fs::path mirror = ancestor / "__MACOSX" / folder.lexically_relative(ancestor) / ("._" + p.name);
    if (isFile(mirror)) return forksFromAppleDouble(std::move(file), mirror.lexically_normal());
    if (ancestor == ancestor.parent_path() || ancestor.filename() == "__MACOSX") break;
    ancestor = ancestor.parent_path();
  }
  return std::nullopt;
}

std::optional<FileForks> openForks(const std::string& path) {
  auto file = MappedFile::open(path);
  if (!file) return TP_REFUSE_WHOLE("file", "cannot read the file: %s", std::strerror(errno));
  using Place = std::optional<FileForks> (*)(std::shared_ptr<const MappedFile>);
  using Possible = bool (*)(const FolderEntries&, const std::string& name);
  static const struct { Place place; Possible possible; } kPlaces[] = {
      {forksFromContainer, [](const FolderEntries&, const std::string&) { return true; }},
      {forksFromDotUnderscore, [](const FolderEntries& e, const std::string& name) { return e.doubles.count("._" + name) > 0; }},
      {forksFromNetatalk, [](const FolderEntries& e, const std::string&) { return e.appleDouble; }},
      {forksFromPercentDouble, [](const FolderEntries& e, const std::string& name) { return e.doubles.count("%" + name) > 0; }},
      {forksFromResourceFolder, [](const FolderEntries& e, const std::string&) { return e.resource; }},
      {forksFromResourceFrk, [](const FolderEntries& e, const std::string&) { return e.resourceFrk; }},
      {forksFromMacosxMirror, [](const FolderEntries& e, const std::string&) { return e.mirrorAbove; }},
  };
  // With a cache, the folder's entries rule out the places that cannot hold a companion.
  PathParts parts;
  const FolderEntries* entries = nullptr;
  if (tFolders) {
    parts = splitPath(path);
    entries = &tFolders->entriesOf(parts.folder.native());
    if (!entries->listed) entries = nullptr;
  }
  for (const auto& candidate : kPlaces) {
    if (entries && !candidate.possible(*entries, parts.name)) continue;
    if (auto forks = candidate.place(file)) return forks;
  }
  return plainForks(std::move(file));
}

bool isForkCompanion(const std::string& path) {
  PathParts p = splitPath(path);
  if (p.name.rfind("._", 0) == 0) return true;
  for (const fs::path& part : p.folder) {
    for (const char* holder : {".AppleDouble", ".resource", ".finderinfo", "resource.frk", "__MACOSX"})
      if (part == holder) return true;
  }
  return p.name.size() > 1 && p.name[0] == '%' && isFile(p.folder / p.name.substr(1));
}

}  // namespace typeprint
