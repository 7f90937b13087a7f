// The thin POSIX layer under file locations and file-system operations: one call per job, no
// policy. Paths are UTF-8 byte strings passed to the kernel as they are.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typeprint::posix {

enum class EntryKind { Missing, File, Directory, Symlink, Other };

// What is at `path`; with followLinks false a symbolic link reports itself.
EntryKind entryKind(const std::string& path, bool followLinks = true);

// What identifies a file system entry and its last change: equal stamps taken at two times mean
// the entry was (as far as the file system tells) not replaced or changed in between.
struct FileStamp {
  uint64_t device = 0, inode = 0, size = 0;
  int64_t modifiedNs = 0, changedNs = 0;
  bool regularFile = false;
  bool operator==(const FileStamp& o) const {
    return device == o.device && inode == o.inode && size == o.size && modifiedNs == o.modifiedNs &&
           changedNs == o.changedNs && regularFile == o.regularFile;
  }
};
// The stamp of the entry at `path`, links followed; nothing when it does not exist.
std::optional<FileStamp> fileStamp(const std::string& path);

// Seconds since 1970-01-01 UTC of the last change of the contents.
std::optional<int64_t> modificationTime(const std::string& path);
bool setModificationTime(const std::string& path, int64_t seconds);

// Permission bits (mode & 07777).
std::optional<uint32_t> permissions(const std::string& path);
bool setPermissions(const std::string& path, uint32_t mode);

// Copies a regular file's bytes and permission bits to a new file `to`; fails when `to` exists.
// A partial copy is removed.
bool copyRegularFile(const std::string& from, const std::string& to);
// Makes `to` a symbolic link with the same target as the link `from`.
bool copySymlink(const std::string& from, const std::string& to);

enum class RenameResult { Done, CrossDevice, Failed };
// Renames without ever replacing an existing `to`.
RenameResult renameEntry(const std::string& from, const std::string& to);

// remove(3) and rmdir(2): 0 on success, -1 on failure.
int removeEntry(const std::string& path);
int removeDirectory(const std::string& path);
// mkdir(2) with mode 0777 (less the umask); true when the folder was created.
bool makeDirectory(const std::string& path);
// Creates `path`, which must not exist yet, holding `contents`.
bool createFileExclusive(const std::string& path, const std::string& contents);

// Reads a folder's entries one by one, "." and ".." included.
class DirectoryReader {
 public:
  DirectoryReader() = default;
  ~DirectoryReader();
  DirectoryReader(const DirectoryReader&) = delete;
  DirectoryReader& operator=(const DirectoryReader&) = delete;
  bool open(const std::string& folder);
  // The next entry's name; false at the end or when not open.
  bool next(std::string& name);
  void close();
  bool isOpen() const { return handle_ != nullptr; }

 private:
  void* handle_ = nullptr;
};

// The entries of a folder without "." and ".."; nothing when it cannot be read.
std::optional<std::vector<std::string>> listDirectory(const std::string& folder);

std::string currentDirectory();  // empty when unknown
bool setCurrentDirectory(const std::string& folder);
std::optional<uint64_t> freeBytes(const std::string& path);

// $HOME, or the password database's entry for the current user.
std::string homeDirectory();
// The home folder of the named user; empty when there is no such user.
std::string homeDirectoryOf(const std::string& user);
// The running program's executable.
std::string executablePath();

// The user's standard folders by the XDG base-directory and user-directory conventions.
enum class StandardFolder { Preferences, AppData, Documents, Desktop, Temporary, Trash, Applications };
// The folder's absolute path without a trailing "/"; empty when it cannot be worked out.
std::string standardFolder(StandardFolder folder);

}  // namespace typeprint::posix
