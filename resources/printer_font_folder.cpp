#include "resources/printer_font_folder.h"

#include <algorithm>
#include <cctype>

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

}  // namespace

std::string printerFontPostScriptName(const std::string& path) {
  std::string ext = lowerExtension(path);
  if (ext == "pfb" || ext == "pfa") return postScriptNameFromDataFork(path);
  return postScriptNameFromPOST(path);
}

std::vector<FolderPrinterFont> readFolderPrinterFonts(const std::string& folder) {
  const std::string prefix = withDelimiter(folder);
  std::optional<std::vector<std::string>> names = posix::listDirectory(prefix.empty() ? "." : prefix);
  if (!names) return {};
  if (names->size() > kMaxFolderEntries) names->resize(kMaxFolderEntries);
  std::sort(names->begin(), names->end());
  std::vector<FolderPrinterFont> fonts;
  for (const std::string& name : *names) {
    const std::string path = prefix + name;
    if (isForkCompanion(path) || posix::entryKind(path) != posix::EntryKind::File) continue;
    std::string psName = printerFontPostScriptName(path);
    if (!psName.empty()) fonts.push_back({name, psName});
  }
  return fonts;
}

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
