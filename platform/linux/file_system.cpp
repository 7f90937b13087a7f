#include "platform/linux/file_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <pwd.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>

#include "platform/linux/path_open.h"

namespace typeprint::posix {
namespace {

bool writeAll(int fd, const char* bytes, size_t size) {
  while (size > 0) {
    ssize_t n = ::write(fd, bytes, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes += n;
    size -= size_t(n);
  }
  return true;
}

bool copyContents(int in, int out) {
  char buffer[65536];
  for (;;) {
    ssize_t n = ::read(in, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) return true;
    if (!writeAll(out, buffer, size_t(n))) return false;
  }
}

std::string absoluteEnv(const char* name) {
  const char* value = std::getenv(name);
  return value && value[0] == '/' ? std::string(value) : std::string();
}

std::string dataHome() {
  std::string dir = absoluteEnv("XDG_DATA_HOME");
  std::string home = homeDirectory();
  return !dir.empty() ? dir : home.empty() ? home : home + "/.local/share";
}

std::string configHome() {
  std::string dir = absoluteEnv("XDG_CONFIG_HOME");
  std::string home = homeDirectory();
  return !dir.empty() ? dir : home.empty() ? home : home + "/.config";
}

// A folder named in user-dirs.dirs, lines like XDG_DESKTOP_DIR="$HOME/Desktop"; `fallback`
// under the home folder when the file or the line is missing.
std::string userDirectory(const std::string& key, const char* fallback) {
  std::string home = homeDirectory();
  if (home.empty()) return home;
  std::ifstream in(configHome() + "/user-dirs.dirs");
  std::string line, prefix = key + "=\"";
  while (std::getline(in, line)) {
    if (line.compare(0, prefix.size(), prefix) != 0 || line.back() != '"') continue;
    std::string value = line.substr(prefix.size(), line.size() - prefix.size() - 1);
    if (value.compare(0, 5, "$HOME") == 0) return home + value.substr(5);
    if (!value.empty() && value[0] == '/') return value;
  }
  return home + "/" + fallback;
}

}  // namespace

EntryKind entryKind(const std::string& path, bool followLinks) {
  struct stat st;
  int rc = followLinks ? ::stat(path.c_str(), &st) : ::lstat(path.c_str(), &st);
  if (rc != 0) return EntryKind::Missing;
  if (S_ISREG(st.st_mode)) return EntryKind::File;
  if (S_ISDIR(st.st_mode)) return EntryKind::Directory;
  if (S_ISLNK(st.st_mode)) return EntryKind::Symlink;
  return EntryKind::Other;
}

std::optional<int64_t> modificationTime(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return std::nullopt;
  return int64_t(st.st_mtime);
}

bool setModificationTime(const std::string& path, int64_t seconds) {
  struct timespec times[2];
  times[0].tv_nsec = UTIME_OMIT;
  times[0].tv_sec = 0;
  times[1].tv_sec = time_t(seconds);
  times[1].tv_nsec = 0;
  return ::utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

std::optional<uint32_t> permissions(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return std::nullopt;
  return uint32_t(st.st_mode & 07777);
}

bool setPermissions(const std::string& path, uint32_t mode) { return ::chmod(path.c_str(), mode_t(mode)) == 0; }

bool copyRegularFile(const std::string& from, const std::string& to) {
  int in = openRegularFile(from);
  if (in < 0) return false;
  struct stat st;
  if (::fstat(in, &st) != 0) {
    ::close(in);
    return false;
  }
  int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, st.st_mode & 07777);
  if (out < 0) {
    ::close(in);
    return false;
  }
  bool ok = copyContents(in, out);
  ok = ::close(out) == 0 && ok;
  ::close(in);
  if (!ok) ::unlink(to.c_str());
  return ok;
}

bool copySymlink(const std::string& from, const std::string& to) {
  char target[PATH_MAX];
  ssize_t n = ::readlink(from.c_str(), target, sizeof target - 1);
  if (n < 0) return false;
  target[n] = '\0';
  return ::symlink(target, to.c_str()) == 0;
}

RenameResult renameEntry(const std::string& from, const std::string& to) {
  int rc = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (rc != 0 && (errno == EINVAL || errno == ENOSYS)) {
    // File systems without RENAME_NOREPLACE: check, then rename.
    struct stat st;
    if (::lstat(to.c_str(), &st) == 0) return RenameResult::Failed;
    rc = ::rename(from.c_str(), to.c_str());
  }
  if (rc == 0) return RenameResult::Done;
  return errno == EXDEV ? RenameResult::CrossDevice : RenameResult::Failed;
}

int removeEntry(const std::string& path) { return ::remove(path.c_str()) == 0 ? 0 : -1; }

int removeDirectory(const std::string& path) { return ::rmdir(path.c_str()) == 0 ? 0 : -1; }

bool makeDirectory(const std::string& path) { return ::mkdir(path.c_str(), 0777) == 0; }

bool createFileExclusive(const std::string& path, const std::string& contents) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (fd < 0) return false;
  bool ok = writeAll(fd, contents.data(), contents.size());
  ok = ::close(fd) == 0 && ok;
  if (!ok) ::unlink(path.c_str());
  return ok;
}

DirectoryReader::~DirectoryReader() { close(); }

bool DirectoryReader::open(const std::string& folder) {
  close();
  handle_ = ::opendir(folder.c_str());
  return handle_ != nullptr;
}

bool DirectoryReader::next(std::string& name) {
  if (!handle_) return false;
  const struct dirent* entry = ::readdir(static_cast<DIR*>(handle_));
  if (!entry) return false;
  name = entry->d_name;
  return true;
}

void DirectoryReader::close() {
  if (handle_) ::closedir(static_cast<DIR*>(handle_));
  handle_ = nullptr;
}

std::optional<std::vector<std::string>> listDirectory(const std::string& folder) {
  DirectoryReader reader;
  if (!reader.open(folder)) return std::nullopt;
  std::vector<std::string> names;
  for (std::string name; reader.next(name);) {
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}

std::string currentDirectory() {
  char buffer[PATH_MAX];
  return ::getcwd(buffer, sizeof buffer) ? std::string(buffer) : std::string();
}

bool setCurrentDirectory(const std::string& folder) { return ::chdir(folder.c_str()) == 0; }

std::optional<uint64_t> freeBytes(const std::string& path) {
  struct statvfs st;
  if (::statvfs(path.c_str(), &st) != 0) return std::nullopt;
  return uint64_t(st.f_bavail) * st.f_frsize;
}

std::string homeDirectory() {
  std::string home = absoluteEnv("HOME");
  if (!home.empty()) return home;
  const struct passwd* entry = ::getpwuid(::getuid());
  return entry && entry->pw_dir ? std::string(entry->pw_dir) : std::string();
}

std::string homeDirectoryOf(const std::string& user) {
  const struct passwd* entry = ::getpwnam(user.c_str());
  return entry && entry->pw_dir ? std::string(entry->pw_dir) : std::string();
}

std::string executablePath() {
  char buffer[PATH_MAX];
  ssize_t n = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  return n > 0 ? std::string(buffer, size_t(n)) : std::string();
}

std::string standardFolder(StandardFolder folder) {
  switch (folder) {
    case StandardFolder::Preferences: return configHome();
    case StandardFolder::AppData: return dataHome();
    case StandardFolder::Documents: return userDirectory("XDG_DOCUMENTS_DIR", "Documents");
    case StandardFolder::Desktop: return userDirectory("XDG_DESKTOP_DIR", "Desktop");
    case StandardFolder::Temporary: {
      std::string dir = absoluteEnv("TMPDIR");
      return dir.empty() ? std::string("/tmp") : dir;
    }
    case StandardFolder::Trash: {
      std::string data = dataHome();
      return data.empty() ? data : data + "/Trash";
    }
    case StandardFolder::Applications: {
      std::string self = executablePath();
      size_t slash = self.rfind('/');
      return slash == std::string::npos || slash == 0 ? std::string() : self.substr(0, slash);
    }
  }
  return std::string();
}

}  // namespace typeprint::posix
