#include "platform/linux/atomic_file.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string>

#include "platform/linux/path_open.h"

namespace typeprint {
namespace {

// Symbolic links followed from the named path before giving up, as the kernel's own limit.
constexpr int kMaxLinkDepth = 40;

std::atomic<WriteFault> gWriteFault{nullptr};

// The injected errno for `step`, or 0.
int injected(WriteStep step, const std::string& tempName) {
  WriteFault fault = gWriteFault.load();
  return fault ? fault(step, tempName) : 0;
}

// One step: runs `action` (true on success) unless a fault is injected; records the failure.
template <typename Action>
bool step(WriteResult& result, WriteStep which, const std::string& tempName, Action action) {
  if (!result) return false;
  int error = injected(which, tempName);
  if (error == 0 && !action()) error = errno ? errno : EIO;
  if (error == 0) return true;
  result.failedAt = which;
  result.error = error;
  return false;
}

bool writeAll(int fd, ByteSpan bytes) {
  size_t done = 0;
  while (done < bytes.size) {
    errno = 0;
    ssize_t n = ::write(fd, bytes.data + done, bytes.size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      if (n == 0) errno = ENOSPC;
      return false;
    }
    done += size_t(n);
  }
  return true;
}

// The file a path finally names: symbolic links are followed, so that the link itself stays and
// its target is replaced. A missing target is created where the link points.
std::string resolveLinks(std::string path) {
  for (int depth = 0; depth < kMaxLinkDepth; ++depth) {
    const SplitPath parts = splitFolder(path);
    const int folder = openFolder(parts.folder);
    if (folder < 0) return path;
    std::string target(PATH_MAX, '\0');
    const ssize_t n = ::readlinkat(folder, parts.name.c_str(), target.data(), target.size());
    ::close(folder);
    if (n <= 0 || size_t(n) >= target.size()) return path;
    target.resize(size_t(n));
    path = target[0] == '/' ? target : parts.folder + "/" + target;
  }
  return path;
}

// A new hidden file in the folder, created exclusively with the usual permissions (0666 less the
// umask). Its name is short whatever the target's name, so a target of any length has room.
int createTemporary(int folder, std::string& tempName) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    tempName = ".tp-" + std::to_string(getpid()) + "-" + std::to_string(counter++);
    int fd = ::openat(folder, tempName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  errno = EEXIST;
  return -1;
}

// Gives the new file the old one's permissions, owner and group. Changing the owner needs
// privilege; a process without it still keeps the group when it belongs to it, and otherwise
// keeps what it may. Only the permission bits are required.
bool keepAttributes(int fd, const struct stat& old) {
  if (::fchown(fd, old.st_uid, old.st_gid) != 0) (void)::fchown(fd, uid_t(-1), old.st_gid);
  return ::fchmod(fd, old.st_mode & 07777) == 0;
}

}  // namespace

std::string WriteResult::reason() const {
  const char* what = "";
  switch (failedAt) {
    case WriteStep::None: return {};
    case WriteStep::Open: what = "cannot create a temporary file beside it"; break;
    case WriteStep::Write: what = "cannot write the file"; break;
    case WriteStep::Owner: what = "cannot keep the file's permissions"; break;
    case WriteStep::Sync: what = "cannot flush the file to disk"; break;
    case WriteStep::Close: what = "cannot close the file"; break;
    case WriteStep::Rename: what = "cannot replace the file"; break;
    case WriteStep::SyncFolder: what = "the file was replaced, but its folder could not be flushed to disk"; break;
  }
  return std::string(what) + ": " + std::strerror(error);
}

void setWriteFaultForTesting(WriteFault fault) { gWriteFault = fault; }

WriteResult replaceFileAtomically(const std::string& path, ByteSpan bytes) {
  WriteResult result;
  const SplitPath target = splitFolder(resolveLinks(path));
  std::string temp;
  int folder = -1, fd = -1;
  if (!step(result, WriteStep::Open, temp, [&] { return (folder = openFolder(target.folder)) >= 0; }) ||
      !step(result, WriteStep::Open, temp, [&] { return (fd = createTemporary(folder, temp)) >= 0; })) {
    if (folder >= 0) ::close(folder);
    return result;
  }
  struct stat old;
  const bool replacing = ::fstatat(folder, target.name.c_str(), &old, 0) == 0;
  step(result, WriteStep::Write, temp, [&] { return writeAll(fd, bytes); });
  if (replacing) step(result, WriteStep::Owner, temp, [&] { return keepAttributes(fd, old); });
  step(result, WriteStep::Sync, temp, [&] { return ::fsync(fd) == 0; });
  const WriteStep failedBeforeClose = result.failedAt;
  // The descriptor is closed whatever happened before; a failing close is itself a failure.
  const bool closed = ::close(fd) == 0;
  const int closeError = errno;
  if (failedBeforeClose == WriteStep::None) step(result, WriteStep::Close, temp, [&] { errno = closeError; return closed; });
  step(result, WriteStep::Rename, temp,
       [&] { return ::renameat(folder, temp.c_str(), folder, target.name.c_str()) == 0; });
  if (!result) {
    ::unlinkat(folder, temp.c_str(), 0);
  } else {
    step(result, WriteStep::SyncFolder, temp, [&] { return ::fsync(folder) == 0; });
  }
  ::close(folder);
  return result;
}

}  // namespace typeprint
