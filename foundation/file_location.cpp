#include "foundation/file_location.h"

#include <cstring>
#include <set>

#include "foundation/errors.h"
#include "foundation/file_system.h"
#include "platform/linux/fork_locator.h"

namespace typeprint {
namespace {

using Parser = UxFileSystemParser;

// Bytes that are unsafe in a file name on some system the fonts travel to.
constexpr char kIllegalFilenameChars[] = "\"/\\[]:;=,\r\n\t()<>&|";

// Folder extensions that make a folder a package, compared with case.
const std::set<std::string>& packageExtensions() {
  static const std::set<std::string> kExtensions = {
      ".app",          ".bundle",        ".component",        ".framework",        ".plugin",
      ".kext",         ".clr",           ".cssplugin",        ".menu",             ".fs",
      ".localePlugin", ".loginPlugin",   ".monitorPanel",     ".prefPane",         ".slideSaver",
      ".saver",        ".osax",          ".service",          ".SpeechVoice",      ".SpeechSynthesizer",
      ".SpeechRecognizer", ".sreporter", ".pkg",              ".dvdproj",          ".xcodeproj",
      ".xcode",        ".pbproj",        ".calcview",         ".fmplugin"};
  return kExtensions;
}

bool standardFolderPath(uint32_t folderType, UxString& path) {
  return Parser::MacGetStandardFolder(folderType, 0, path, false) == 0;
}

// The folder a path lookup gives, as a location; an invalid one when the lookup fails.
bool toDirectory(bool (*lookup)(UxString&), UxDirectorySpecification& dir) {
  UxString path;
  if (lookup(path) && dir.Set(path)) return true;
  dir.SetInvalid();
  return false;
}

bool isPlainName(const UxString& name) {
  return !name.empty() && name.find(Parser::kPathDelimiter) == std::string::npos && name != "." &&
         name != "..";
}

}  // namespace

// ---- UxFileSystemParser ----

bool UxFileSystemParser::EndsWithDelimiter(const UxString& s) { return !s.empty() && s.back() == kPathDelimiter; }

void UxFileSystemParser::AddDelimiter(UxString& s) {
  if (!EndsWithDelimiter(s)) s += kPathDelimiter;
}

bool UxFileSystemParser::HasExtension(const UxString& path, size_t& pos) {
  size_t slash = path.rfind(kPathDelimiter);
  pos = path.find(kExtensionDelimiter, slash == std::string::npos ? 0 : slash + 1);
  return pos != std::string::npos;
}

bool UxFileSystemParser::GetExtension(const UxString& path, UxString& ext) {
  size_t pos;
  if (!HasExtension(path, pos)) {
    ext.clear();
    return false;
  }
  ext = path.substr(pos + 1);
  return true;
}

void UxFileSystemParser::ChangeExtension(const UxString& path, const UxString& ext, UxString& out) {
  size_t pos;
  out = HasExtension(path, pos) ? path.substr(0, pos) : std::string(path);
  out += kExtensionDelimiter;
  out += ext;
}

UxString UxFileSystemParser::GetPathDeletingLastPathComponent(const UxString& path) {
  if (path.empty()) return UxString();
  std::string text = path;
  if (text.size() > 1 && text.back() == kPathDelimiter) text.pop_back();
  size_t slash = text.rfind(kPathDelimiter);
  if (slash == std::string::npos) return UxString();
  return UxString(text.substr(0, slash + 1));
}

const char* UxFileSystemParser::FindFileName(const char* path) {
  if (!path) return nullptr;
  const char* slash = std::strrchr(path, kPathDelimiter);
  return slash ? slash + 1 : path;
}

bool UxFileSystemParser::GetFileName(const UxString& path, UxString& name) {
  name = FindFileName(path.c_str());
  return !name.empty();
}

bool UxFileSystemParser::IsPathOnBootVolume(const UxString& path, short& volume) {
  volume = 0;
  static const std::string kVolumes = "/Volumes/";
  return !(path.compare(0, kVolumes.size(), kVolumes) == 0 && path.size() >= kVolumes.size() + 1);
}

bool UxFileSystemParser::IsPathAMacBundle(const UxString& path, short& volume) {
  volume = 0;
  if (!OSPathExists(path)) return false;
  UxString name = path;
  if (EndsWithDelimiter(name)) name.pop_back();
  size_t pos;
  if (!HasExtension(name, pos)) return false;
  return packageExtensions().count(name.substr(pos)) != 0;
}

void UxFileSystemParser::ReplaceIllegalFilenameChars(UxString* name) {
  for (size_t i = 0; i < name->size(); ++i) {
    char& c = (*name)[i];
    bool illegal = c == '\0' || std::strchr(kIllegalFilenameChars, c) || (i == 0 && c == kExtensionDelimiter);
    if (illegal) c = '_';
  }
}

void UxFileSystemParser::ExpandPartialPath(UxString& s) {
  if (s.empty() || s[0] == kPathDelimiter) return;
  UxString cwd = posix::currentDirectory();
  if (cwd.empty()) {
    s.clear();
    return;
  }
  AddDelimiter(cwd);
  s = cwd + s;
}

long UxFileSystemParser::MacGetStandardFolder(uint32_t folderType, short, UxString& out, bool create) {
  using posix::StandardFolder;
  static const struct {
    uint32_t type;
    StandardFolder folder;
  } kFolders[] = {
      {kPreferencesFolderType, StandardFolder::Preferences}, {kApplicationSupportFolderType, StandardFolder::AppData},
      {kDocumentsFolderType, StandardFolder::Documents},     {kDesktopFolderType, StandardFolder::Desktop},
      {kTemporaryFolderType, StandardFolder::Temporary},     {kTrashFolderType, StandardFolder::Trash},
      {kApplicationsFolderType, StandardFolder::Applications},
  };
  for (const auto& entry : kFolders) {
    if (entry.type != folderType) continue;
    UxString path = posix::standardFolder(entry.folder);
    if (path.empty()) return -1;
    AddDelimiter(path);
    if (create) MakeFullPath(path);
    if (posix::entryKind(path) != posix::EntryKind::Directory) return kFileNotFoundErr;
    out = path;
    return kNoErr;
  }
  return -1;
}

bool UxFileSystemParser::GetUserPreferencesDirectory(UxString& path) {
  return standardFolderPath(kPreferencesFolderType, path);
}
bool UxFileSystemParser::GetUserAppDataDirectory(UxString& path) {
  return standardFolderPath(kApplicationSupportFolderType, path);
}
bool UxFileSystemParser::GetUserDocumentsDirectory(UxString& path) {
  return standardFolderPath(kDocumentsFolderType, path);
}
bool UxFileSystemParser::GetUserDesktopDirectory(UxString& path) { return standardFolderPath(kDesktopFolderType, path); }
bool UxFileSystemParser::GetApplicationDirectory(UxString& path) {
  return standardFolderPath(kApplicationsFolderType, path);
}
bool UxFileSystemParser::GetTempDirectory(UxString& path) { return standardFolderPath(kTemporaryFolderType, path); }
bool UxFileSystemParser::GetWorkingDirectory(UxString& path) {
  UxString cwd = posix::currentDirectory();
  if (cwd.empty()) return false;
  AddDelimiter(cwd);
  path = cwd;
  return true;
}

bool UxFileSystemParser::GetUserPreferencesDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetUserPreferencesDirectory, dir);
}
bool UxFileSystemParser::GetUserAppDataDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetUserAppDataDirectory, dir);
}
bool UxFileSystemParser::GetUserDocumentsDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetUserDocumentsDirectory, dir);
}
bool UxFileSystemParser::GetUserDesktopDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetUserDesktopDirectory, dir);
}
bool UxFileSystemParser::GetApplicationDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetApplicationDirectory, dir);
}
bool UxFileSystemParser::GetTempDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetTempDirectory, dir);
}
bool UxFileSystemParser::GetWorkingDirectory(UxDirectorySpecification& dir) {
  return toDirectory(GetWorkingDirectory, dir);
}

bool UxFileSystemParser::PathExists(const UxString& path) { return OSPathExists(path); }

// ---- UxFileSpecification ----

UxFileSpecification::UxFileSpecification() { SetInvalid(); }
UxFileSpecification::UxFileSpecification(const UxString& path) { Set(path); }
UxFileSpecification::UxFileSpecification(const char* path) { Set(UxString(path)); }
UxFileSpecification::UxFileSpecification(const UxDirectorySpecification& dir, const UxString& name) {
  Set(dir, name);
}
UxFileSpecification::~UxFileSpecification() = default;

UxFileSpecification& UxFileSpecification::operator=(const UxString& path) {
  if (!Set(path)) throw UXFileSystemException("Path not found in UxFileSpecification::GetName", kIOErr);
  return *this;
}

bool UxFileSpecification::Set(const UxString& path) {
  SetInvalid();
  UxString full = path;
  Parser::ExpandPartialPath(full);
  if (full.empty()) return false;
  if (!OSPathExists(full)) {
    // A file still to be made resolves through its parent folder.
    UxString parent = Parser::GetPathDeletingLastPathComponent(full);
    if (parent.empty() || posix::entryKind(parent) != posix::EntryKind::Directory) return false;
  }
  path_ = full;
  return true;
}

bool UxFileSpecification::Set(const UxDirectorySpecification& dir, const UxString& name) {
  if (!dir.IsValid() || !isPlainName(name)) {
    SetInvalid();
    return false;
  }
  return Set(dir.GetFullPath() + name);
}

void UxFileSpecification::SetInvalid() {
  path_.clear();
  typeUnknown_ = 1;
  fileType_ = UxFileSystem::kDefaultFileType;
  creator_ = UxFileSystem::kDefaultCreatorType;
}

bool UxFileSpecification::GetFullPathUTF8(char* buffer, size_t size) const {
  if (!buffer || path_.size() >= size) return false;
  std::memcpy(buffer, path_.c_str(), path_.size() + 1);
  return true;
}

void UxFileSpecification::GetName(UxString& name) const {
  UxString found;
  if (!IsValid() || !Parser::GetFileName(path_, found)) {
    throw UXFileSystemException("Bad filename in UxFileSpecification::GetName", kBadNameErr);
  }
  name = found;
}

UxString UxFileSpecification::GetName() const {
  UxString name;
  GetName(name);
  return name;
}

bool UxFileSpecification::GetNameUTF8(char* buffer, size_t size) const {
  UxString name = GetName();
  if (!buffer || name.size() >= size) return false;
  std::memcpy(buffer, name.c_str(), name.size() + 1);
  return true;
}

void UxFileSpecification::GetLocationUTF8(UxString& out) const { out = Parser::GetPathDeletingLastPathComponent(path_); }

void UxFileSpecification::GetParentDirectory(UxDirectorySpecification& dir) const {
  UxString parent;
  GetLocationUTF8(parent);
  if (parent.empty() || !dir.Set(parent)) dir.SetInvalid();
}

short UxFileSpecification::MacGetTypeAndCreator(uint32_t& type, uint32_t& creator) const {
  short err = kNoErr;
  if (typeUnknown_) {
    std::optional<FileForks> forks = IsValid() ? openForks(path_) : std::nullopt;
    if (forks) {
      fileType_ = forks->type;
      creator_ = forks->creator;
      typeUnknown_ = 0;
    } else {
      err = kFileNotFoundErr;
    }
  }
  type = fileType_;
  creator = creator_;
  return err;
}

short UxFileSpecification::FailOnError(short err) const {
  if (err == kNoErr || err == kFileNotFoundErr) return err;
  throw UXFileSystemException("Error in UxFileSpecification::GetName", UxFileSystem::TranslateError(err));
}

// ---- UxDirectorySpecification ----

UxDirectorySpecification::UxDirectorySpecification(const UxString& path) { Set(path); }
UxDirectorySpecification::UxDirectorySpecification(const char* path) { Set(UxString(path)); }
UxDirectorySpecification::UxDirectorySpecification(const UxDirectorySpecification& parent, const UxString& name) {
  Set(parent, name);
}
UxDirectorySpecification::~UxDirectorySpecification() = default;

UxDirectorySpecification& UxDirectorySpecification::operator=(const UxString& path) {
  if (!Set(path)) throw UXFileSystemException("Path not found in UxFileSpecification::GetName", kIOErr);
  return *this;
}

void UxDirectorySpecification::AddDelimiter() {
  if (file_.IsValid()) Parser::AddDelimiter(file_.path_);
}

bool UxDirectorySpecification::Set(const UxString& path) {
  bool ok = file_.Set(path);
  AddDelimiter();
  return ok;
}

bool UxDirectorySpecification::Set(const UxDirectorySpecification& parent, const UxString& name) {
  bool ok = file_.Set(parent, name);
  AddDelimiter();
  return ok;
}

void UxDirectorySpecification::GetName(UxString& name) const {
  UxString found;
  const UxString& path = file_.GetFullPath();
  if (!IsValid() || !Parser::GetFileName(path.substr(0, path.size() - 1), found)) {
    throw UXFileSystemException("Bad filename in UxDirectorySpecification::GetName", kBadNameErr);
  }
  name = found;
}

UxString UxDirectorySpecification::GetName() const {
  UxString name;
  GetName(name);
  return name;
}

void UxDirectorySpecification::GetLocationUTF8(UxString& out) const {
  out = Parser::GetPathDeletingLastPathComponent(file_.GetFullPath());
}

bool UxDirectorySpecification::GetParentDirectory(UxDirectorySpecification& dir) const {
  UxString parent;
  GetLocationUTF8(parent);
  if (!IsValid() || parent == GetFullPath() || !dir.Set(parent)) {
    dir.SetInvalid();
    return false;
  }
  return true;
}

// ---- UxAccessPermission, UxFileFind ----

UxAccessPermission::~UxAccessPermission() = default;

UxFileFind::~UxFileFind() = default;

bool UxFileFind::FindFile(const UxString& folder) {
  root_ = folder;
  Parser::AddDelimiter(root_);
  name_.clear();
  return reader_.open(root_);
}

bool UxFileFind::FindNextFile() {
  std::string name;
  if (!reader_.next(name)) return false;
  name_ = name;
  return true;
}

bool UxFileFind::IsDirectory() const { return posix::entryKind(GetFilePath()) == posix::EntryKind::Directory; }

}  // namespace typeprint
