#include "foundation/file_system.h"

#include <cstdio>
#include <ctime>
#include <string>

#include "platform/linux/file_system.h"
#include "platform/linux/fork_locator.h"

namespace typeprint {
namespace {

using Parser = UxFileSystemParser;
using posix::EntryKind;

// Folder trees deeper than this are not walked: it bounds the recursion of copies and removals.
constexpr int kMaxTreeDepth = 256;
// The trash gives up after this many ".N" names.
constexpr int kMaxTrashSuffix = 100000;
constexpr uint32_t kOwnerWrite = 0200;
constexpr uint32_t kAnyWrite = 0222;

// The path without its trailing "/", the root folder excepted.
std::string bare(const UxString& path) {
  std::string text = path;
  while (text.size() > 1 && text.back() == Parser::kPathDelimiter) text.pop_back();
  return text;
}

bool exists(const std::string& path) { return posix::entryKind(path, false) != EntryKind::Missing; }

bool copyItem(const std::string& from, const std::string& to, int depth) {
  if (depth > kMaxTreeDepth) return false;
  switch (posix::entryKind(from, false)) {
    case EntryKind::File: return posix::copyRegularFile(from, to);
    case EntryKind::Symlink: return posix::copySymlink(from, to);
    case EntryKind::Directory: {
      std::optional<std::vector<std::string>> names = posix::listDirectory(from);
      if (!names || !posix::makeDirectory(to)) return false;
      for (const std::string& name : *names) {
        if (!copyItem(from + "/" + name, to + "/" + name, depth + 1)) return false;
      }
      return true;
    }
    default: return false;
  }
}

// Removes everything inside `folder`, carrying on past failures.
bool removeContents(const std::string& folder, int depth) {
  if (depth > kMaxTreeDepth) return false;
  std::optional<std::vector<std::string>> names = posix::listDirectory(folder);
  if (!names) return false;
  bool ok = true;
  for (const std::string& name : *names) {
    std::string item = folder + "/" + name;
    if (posix::entryKind(item, false) == EntryKind::Directory) {
      ok = removeContents(item, depth + 1) && posix::removeDirectory(item) == 0 && ok;
    } else {
      ok = posix::removeEntry(item) == 0 && ok;
    }
  }
  return ok;
}

// Path= values of a trash info file are escaped like URL paths.
std::string escapeTrashPath(const std::string& path) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : path) {
    bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                 c == '/' || c == '-' || c == '_' || c == '.' || c == '~';
    if (plain) {
      out += char(c);
    } else {
      out += '%';
      out += kHex[c >> 4];
      out += kHex[c & 15];
    }
  }
  return out;
}

std::string trashInfo(const std::string& originalPath) {
  char date[32] = "";
  std::time_t now = std::time(nullptr);
  if (const std::tm* local = std::localtime(&now)) std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", local);
  return "[Trash Info]\nPath=" + escapeTrashPath(originalPath) + "\nDeletionDate=" + date + "\n";
}

}  // namespace

// ---- UxFileSystem ----

uint64_t UxFileSystem::GetFileSize(const UxFileSpecification& file) {
  if (!file.IsValid()) return 0;
  std::optional<FileForks> forks = openForks(file.GetFullPath());
  return forks ? forks->finderSize() : 0;
}

bool UxFileSystem::GetFileModDate(const UxFileSpecification& file, int64_t& seconds) {
  std::optional<int64_t> time = posix::modificationTime(file.GetFullPath());
  if (!file.IsValid() || !time) return false;
  seconds = *time;
  return true;
}

bool UxFileSystem::SetFileModDate(const UxFileSpecification& file, int64_t seconds) {
  return file.IsValid() && posix::setModificationTime(file.GetFullPath(), seconds);
}

bool UxFileSystem::SetReadOnly(const UxFileSpecification& file, bool readOnly) {
  std::optional<uint32_t> mode = posix::permissions(file.GetFullPath());
  if (!file.IsValid() || !mode) return false;
  return posix::setPermissions(file.GetFullPath(), readOnly ? *mode & ~kAnyWrite : *mode | kOwnerWrite);
}

bool UxFileSystem::SetReadOnly(const UxDirectorySpecification&, bool) { return true; }

bool UxFileSystem::IsLockedFile(const UxFileSpecification& file) {
  std::optional<uint32_t> mode = posix::permissions(file.GetFullPath());
  return file.IsValid() && mode && (*mode & kOwnerWrite) == 0;
}

bool UxFileSystem::IsValidFile(const UxFileSpecification& file) {
  return file.IsValid() && posix::entryKind(file.GetFullPath()) == EntryKind::File;
}

bool UxFileSystem::IsValidDirectory(const UxDirectorySpecification& dir) {
  return dir.IsValid() && posix::entryKind(dir.GetFullPath()) == EntryKind::Directory;
}

bool UxFileSystem::IsValidDrive(const UxDirectorySpecification& dir) { return IsValidDirectory(dir); }

bool UxFileSystem::IsRootDirectory(const UxDirectorySpecification& dir) {
  return std::string(dir.GetFullPath()) == Parser::kPathDelimiterString;
}

bool UxFileSystem::CreateFile(const UxFileSpecification& file) {
  return file.IsValid() && posix::createFileExclusive(file.GetFullPath(), std::string());
}

bool UxFileSystem::CreateDirectory(const UxDirectorySpecification& dir) {
  return dir.IsValid() && posix::makeDirectory(bare(dir.GetFullPath()));
}

bool UxFileSystem::DeleteFile(const UxFileSpecification& file) {
  return file.IsValid() && typeprint::DeleteFile(file.GetFullPath(), false);
}

bool UxFileSystem::DeleteDirectory(const UxDirectorySpecification& dir) {
  return dir.IsValid() && OSRemoveDir(dir.GetFullPath()) == 0;
}

bool UxFileSystem::CopyFile(const UxFileSpecification& from, const UxFileSpecification& to) {
  return from.IsValid() && to.IsValid() && OSCopyFile(from.GetFullPath(), to.GetFullPath(), false);
}

bool UxFileSystem::CopyDirectory(const UxDirectorySpecification& from, const UxDirectorySpecification& to) {
  return from.IsValid() && to.IsValid() && OSCopyFile(from.GetFullPath(), to.GetFullPath(), false);
}

bool UxFileSystem::MoveFile(const UxFileSpecification& from, const UxFileSpecification& to) {
  return from.IsValid() && to.IsValid() && OSMoveFile(from.GetFullPath(), to.GetFullPath());
}

bool UxFileSystem::MoveDirectory(const UxDirectorySpecification& from, const UxDirectorySpecification& to) {
  return from.IsValid() && to.IsValid() && OSMoveFile(from.GetFullPath(), to.GetFullPath());
}

bool UxFileSystem::CanMoveFile(const UxFileSpecification& from, const UxFileSpecification& to) {
  if (!from.IsValid() || !to.IsValid()) return false;
  UxString parent;
  to.GetLocationUTF8(parent);
  return exists(bare(from.GetFullPath())) && !exists(bare(to.GetFullPath())) &&
         posix::entryKind(parent) == EntryKind::Directory;
}

bool UxFileSystem::CanMoveDirectory(const UxDirectorySpecification& from, const UxDirectorySpecification& to) {
  return CanMoveFile(from.GetFileSpecification(), to.GetFileSpecification());
}

bool UxFileSystem::GetCurrentDirectory(UxDirectorySpecification& dir) { return Parser::GetWorkingDirectory(dir); }

bool UxFileSystem::SetCurrentDirectory(const UxDirectorySpecification& dir) {
  return dir.IsValid() && posix::setCurrentDirectory(dir.GetFullPath());
}

uint64_t UxFileSystem::GetFreeByteCountOnDrive(const UxDirectorySpecification& dir) {
  return dir.IsValid() ? posix::freeBytes(dir.GetFullPath()).value_or(0) : 0;
}

// ---- free functions ----

bool OSPathExists(const UxString& path) { return posix::entryKind(path) != EntryKind::Missing; }

bool OSCopyFile(const UxString& from, const UxString& to, bool overwrite) {
  std::string source = bare(from), target = bare(to);
  if (!exists(source)) return false;
  if (exists(target) && (!overwrite || !DeleteFile(target, false))) return false;
  return copyItem(source, target, 0);
}

bool OSMoveFile(const UxString& from, const UxString& to) {
  std::string source = bare(from), target = bare(to);
  switch (posix::renameEntry(source, target)) {
    case posix::RenameResult::Done: return true;
    case posix::RenameResult::CrossDevice: return OSCopyFile(source, target, false) && DeleteFile(source, false);
    case posix::RenameResult::Failed: return false;
  }
  return false;
}

int OSRemoveFile(const UxString& path, bool force) {
  if (force) posix::setPermissions(path, 0777);
  if (DeleteFile(path, force)) return 0;
  return posix::removeEntry(path);
}

int OSRemoveDir(const UxString& path) { return posix::removeDirectory(path); }

bool OSCreateDir(const UxString& path) {
  std::string folder = bare(path);
  return posix::makeDirectory(folder) || posix::entryKind(folder) == EntryKind::Directory;
}

bool MakeFullPath(const UxString& path) {
  size_t end = path.rfind(Parser::kPathDelimiter);
  if (end == std::string::npos) return true;
  for (size_t pos = path.find(Parser::kPathDelimiter, 1); pos != std::string::npos && pos <= end;
       pos = path.find(Parser::kPathDelimiter, pos + 1)) {
    if (!OSCreateDir(path.substr(0, pos))) return false;
  }
  return true;
}

bool OSRemoveDirectoryTree(const UxString& path, bool keepRoot) {
  std::string folder = bare(path);
  if (posix::entryKind(folder, false) != EntryKind::Directory) return false;
  bool emptied = removeContents(folder, 0);
  return emptied && (keepRoot || posix::removeDirectory(folder) == 0);
}

bool FolderIsEmpty(const UxString& path, bool ignoreHidden) {
  std::optional<std::vector<std::string>> names = posix::listDirectory(path);
  if (!names) return false;
  for (const std::string& name : *names) {
    if (!(ignoreHidden && name[0] == Parser::kExtensionDelimiter)) return false;
  }
  return true;
}

bool DeleteIfEmpty(const UxString& path) { return FolderIsEmpty(path) && OSRemoveDir(path) == 0; }

int DeleteEmptyParentFolders(const UxString& path, const UxString& root) {
  UxString within = root;
  Parser::AddDelimiter(within);
  int removed = 0;
  UxString folder = Parser::GetPathDeletingLastPathComponent(path);
  while (removed < kMaxTreeDepth && FileIsDescendantOfFolder(folder, within) && DeleteIfEmpty(folder)) {
    ++removed;
    folder = Parser::GetPathDeletingLastPathComponent(folder);
  }
  return removed;
}

bool FileIsDescendantOfFolder(const UxString& file, const UxString& folder) {
  if (!Parser::EndsWithDelimiter(folder) || file.size() <= folder.size()) return false;
  return UxString(file.substr(0, folder.size())) == folder;
}

void ReplaceIllegalFilenameChars(UxString* name) { Parser::ReplaceIllegalFilenameChars(name); }

bool IsPathAMacBundle(const UxString& path) {
  short volume;
  return Parser::IsPathAMacBundle(path, volume);
}

UxString GetFileNamePart(const UxString& path) { return UxString(Parser::FindFileName(path.c_str())); }

UxString ExtractFileNamePart(const UxString& path) {
  UxString name = GetFileNamePart(path);
  size_t pos;
  return Parser::HasExtension(name, pos) ? UxString(name.substr(0, pos)) : name;
}

UxString GetFileExtension(const UxString& path) {
  UxString ext;
  Parser::GetExtension(path, ext);
  return ext;
}

UxString SetFileExtension(const UxString& path, const UxString& ext) {
  UxString out;
  Parser::ChangeExtension(path, ext, out);
  return out;
}

UxString ReplaceFileNamePart(const UxString& path, const UxString& name) {
  size_t nameStart = size_t(Parser::FindFileName(path.c_str()) - path.c_str());
  size_t ext;
  size_t nameEnd = Parser::HasExtension(path, ext) ? ext : path.size();
  return UxString(path.substr(0, nameStart) + name + path.substr(nameEnd));
}

UxString ReplaceLastPathComponent(const UxString& path, const UxString& component) {
  return Parser::GetPathDeletingLastPathComponent(path) + component;
}

UxString ExpandTildeInPath(const UxString& path) {
  if (path.empty() || path[0] != '~') return path;
  size_t slash = path.find(Parser::kPathDelimiter);
  std::string user = path.substr(1, slash == std::string::npos ? std::string::npos : slash - 1);
  std::string home = user.empty() ? posix::homeDirectory() : posix::homeDirectoryOf(user);
  if (home.empty()) return path;
  return UxString(home + (slash == std::string::npos ? std::string() : path.substr(slash)));
}

bool UnlockFile(const UxString& path) {
  std::optional<uint32_t> mode = posix::permissions(path);
  return mode && posix::setPermissions(path, *mode | kOwnerWrite);
}

bool DeleteFile(const UxString& path, bool trashOnFailure) {
  std::string item = bare(path);
  EntryKind kind = posix::entryKind(item, false);
  if (kind == EntryKind::Missing) return true;
  UnlockFile(item);
  bool removed = kind == EntryKind::Directory ? OSRemoveDirectoryTree(item) : posix::removeEntry(item) == 0;
  if (!removed && trashOnFailure) return MoveToTrash(item);
  return removed;
}

bool MoveToTrash(const UxString& path) {
  if (!exists(bare(path))) return true;
  std::string trash = posix::standardFolder(posix::StandardFolder::Trash);
  return !trash.empty() && MoveToTrashFolder(path, trash);
}

bool MoveToTrashFolder(const UxString& path, const UxString& trash) {
  UxString item = bare(path);
  if (!exists(item)) return true;
  UxString name;
  if (!Parser::GetFileName(item, name)) return false;
  Parser::ExpandPartialPath(item);
  UxString files = bare(trash) + "/files/", info = bare(trash) + "/info/";
  if (!MakeFullPath(files) || !MakeFullPath(info)) return false;
  for (int n = 0; n <= kMaxTrashSuffix; ++n) {
    UxString candidate = n == 0 ? name : name + "." + UxString(long(n));
    UxString infoFile = info + candidate + ".trashinfo";
    if (exists(files + candidate) || exists(infoFile)) continue;
    // The info file is made first and exclusively: it reserves the name.
    if (!posix::createFileExclusive(infoFile, trashInfo(item))) return false;
    if (OSMoveFile(item, files + candidate)) return true;
    posix::removeEntry(infoFile);
    return false;
  }
  return false;
}

bool GetAppPath(UxString* path) {
  std::string self = posix::executablePath();
  if (self.empty()) return false;
  *path = self;
  return true;
}

}  // namespace typeprint
