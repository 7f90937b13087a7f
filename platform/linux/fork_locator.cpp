#include "platform/linux/fork_locator.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <initializer_list>

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

}  // namespace

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
  for (Place place : {forksFromContainer, forksFromDotUnderscore, forksFromNetatalk, forksFromPercentDouble,
                      forksFromResourceFolder, forksFromResourceFrk, forksFromMacosxMirror}) {
    if (auto forks = place(file)) return forks;
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
