#include "resources/printer_font_folder.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "analysis/type1_header.h"
#include "platform/linux/apple_double.h"
#include "platform/linux/file_system.h"
#include "platform/linux/fork_locator.h"
#include "platform/linux/mac_binary.h"
#include "platform/linux/mapped_file.h"
#include "resources/resource_file.h"
#include "resources/resource_metadata.h"

namespace typeprint {
namespace {

// A folder holding more entries than this is read only this far.
constexpr size_t kMaxFolderEntries = 10000;
// Names under which a wrapped printer file usually arrives.
constexpr const char* kContainerSuffixes[] = {".bin", ".macbin", ".as"};

std::string withDelimiter(const std::string& folder) {
  if (folder.empty() || folder.back() == '/') return folder;
  return folder + "/";
}

std::string lowerExtension(const std::string& name) {
  size_t dot = name.rfind('.');
  if (dot == std::string::npos) return {};
  std::string ext = name.substr(dot + 1);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return ext;
}

std::string postScriptNameFromHeader(ByteSpan header) {
  TType1HeaderText text(header);
  UxString name;
  GatherPostScriptMetaDataFromData(text.lower, text.text, nullptr, nullptr, nullptr, nullptr, &name, nullptr,
                                   nullptr);
  return name;
}

// The name from POST 501 and 502; a later resource's name replaces an earlier one.
std::string postScriptNameFromPOST(const std::string& path) {
  auto printer = ResourceFile::open(path, true);
  if (!printer || !printer->hasPrinterResources()) return {};
  std::string name;
  walkPrinterFileHeader(*printer, [&](ByteSpan header) {
    std::string found = postScriptNameFromHeader(header);
    if (!found.empty()) name = found;
  });
  return name;
}

std::string postScriptNameFromDataFork(const std::string& path) {
  std::optional<FileForks> forks = openForks(path);
  if (!forks) return {};
  ByteSpan fork = forks->dataFork;
  return postScriptNameFromHeader(fork.sub(0, std::min(fork.size, kPrinterFileHeaderBytes)));
}

// The Mac file name stored in a MacBinary or AppleSingle container; nothing for other files.
std::optional<std::string> containerMacName(const std::string& path) {
  auto file = MappedFile::open(path);
  if (!file) return std::nullopt;
  if (auto mb = readMacBinary(file->bytes())) return std::string(mb->macName.begin(), mb->macName.end());
  auto single = readAppleFile(file->bytes());
  if (!single || !single->isAppleSingle()) return std::nullopt;
  const AppleEntry* name = single->entry(kAppleEntryRealName);
  if (!name) return std::nullopt;
  return std::string(name->bytes.begin(), name->bytes.end());
}

// A folder's sorted listing and what was read of its files, with the stamps they were read at.
struct CachedPrinterFile {
  posix::FileStamp file;
  std::optional<posix::FileStamp> companion;  // the fork companion's, when the fork lives in one
  std::string companionPath;
  std::string postScriptName;  // empty for a file that is no printer font
  bool isCurrent(const posix::FileStamp& now) const {
    return now == file && (companionPath.empty() || posix::fileStamp(companionPath) == companion);
  }
};
struct CachedFolder {
  posix::FileStamp stamp;
  std::vector<std::string> names;
  std::unordered_map<std::string, CachedPrinterFile> files;
};

// Folders kept at most; past this the cache starts again.
constexpr size_t kMaxCachedFolders = 64;

std::mutex gFoldersMutex;
std::map<std::pair<uint64_t, uint64_t>, CachedFolder> gFolders;  // by device and inode
std::atomic<size_t> gFilesRead{0};

// A copy of what is kept of the folder; its listing is current when its stamp equals `stamp`.
std::optional<CachedFolder> cachedFolder(const posix::FileStamp& stamp) {
  std::lock_guard<std::mutex> lock(gFoldersMutex);
  auto found = gFolders.find({stamp.device, stamp.inode});
  if (found == gFolders.end()) return std::nullopt;
  return found->second;
}

void keepFolder(CachedFolder folder) {
  std::lock_guard<std::mutex> lock(gFoldersMutex);
  if (gFolders.size() >= kMaxCachedFolders) gFolders.clear();
  const std::pair<uint64_t, uint64_t> key{folder.stamp.device, folder.stamp.inode};
  gFolders[key] = std::move(folder);
}

CachedPrinterFile readPrinterFile(const std::string& path, const posix::FileStamp& stamp) {
  ++gFilesRead;
  CachedPrinterFile file;
  file.file = stamp;
  if (std::optional<FileForks> forks = openForks(path); forks && !forks->companionPath.empty()) {
    file.companionPath = forks->companionPath;
    file.companion = posix::fileStamp(file.companionPath);
  }
  file.postScriptName = printerFontPostScriptName(path);
  return file;
}

}  // namespace

std::string printerFontPostScriptName(const std::string& path) {
  std::string ext = lowerExtension(path);
  if (ext == "pfb" || ext == "pfa") return postScriptNameFromDataFork(path);
  return postScriptNameFromPOST(path);
}

std::vector<FolderPrinterFont> readFolderPrinterFonts(const std::string& folder) {
  const std::string prefix = withDelimiter(folder), listed = prefix.empty() ? "." : prefix;
  const std::optional<posix::FileStamp> folderStamp = posix::fileStamp(listed);
  if (!folderStamp) return {};
  std::optional<CachedFolder> cached = cachedFolder(*folderStamp);
  CachedFolder entries;
  entries.stamp = *folderStamp;
  if (cached && cached->stamp == *folderStamp) {
    entries.names = std::move(cached->names);
  } else {
    std::optional<std::vector<std::string>> names = posix::listDirectory(listed);
    if (!names) return {};
    if (names->size() > kMaxFolderEntries) names->resize(kMaxFolderEntries);
    std::sort(names->begin(), names->end());
    entries.names = std::move(*names);
  }
  std::vector<FolderPrinterFont> fonts;
  for (const std::string& name : entries.names) {
    const std::string path = prefix + name;
    if (isForkCompanion(path)) continue;
    const std::optional<posix::FileStamp> stamp = posix::fileStamp(path);
    if (!stamp || !stamp->regularFile) continue;
    const CachedPrinterFile* known = nullptr;
    if (cached) {
      auto found = cached->files.find(name);
      if (found != cached->files.end() && found->second.isCurrent(*stamp)) known = &found->second;
    }
    const CachedPrinterFile& file = entries.files[name] = known ? *known : readPrinterFile(path, *stamp);
    if (!file.postScriptName.empty()) fonts.push_back({name, file.postScriptName});
  }
  keepFolder(std::move(entries));
  return fonts;
}

size_t printerFolderFilesRead() { return gFilesRead.load(); }

std::optional<std::string> findPrinterFileInFolder(const std::string& folder, const std::string& name) {
  // A name is one path component.
  if (name.empty() || name.find('/') != std::string::npos) return std::nullopt;
  const std::string prefix = withDelimiter(folder);
  // Only a regular file can be a printer file: a FIFO or device is passed over as if missing.
  if (posix::entryKind(prefix + name) == posix::EntryKind::File) return name;
  for (const char* suffix : kContainerSuffixes) {
    const std::string wrapped = name + suffix;
    std::optional<std::string> macName = containerMacName(prefix + wrapped);
    if (macName && *macName == name) return wrapped;
  }
  return std::nullopt;
}

}  // namespace typeprint
