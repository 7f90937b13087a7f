#include "platform/linux/atomic_file.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>

namespace typeprint {
namespace {

std::string folderOf(const std::string& path) {
  size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool writeAll(int fd, ByteSpan bytes) {
  size_t done = 0;
  while (done < bytes.size) {
    ssize_t n = ::write(fd, bytes.data + done, bytes.size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += size_t(n);
  }
  return true;
}

// A new file beside `path`, created exclusively with the usual permissions (0666 less umask).
int createTemporary(const std::string& path, std::string& tempPath) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    tempPath = path + ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(counter++);
    int fd = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  return -1;
}

void syncFolder(const std::string& folder) {
  int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  fsync(fd);
  ::close(fd);
}

}  // namespace

bool pathExists(const std::string& path) {
  struct stat st;
  return lstat(path.c_str(), &st) == 0;
}

bool writeFileAtomically(const std::string& path, ByteSpan bytes) {
  std::string tempPath;
  int fd = createTemporary(path, tempPath);
  if (fd < 0) return false;
  bool ok = writeAll(fd, bytes) && fsync(fd) == 0;
  ok = (::close(fd) == 0) && ok;
  if (ok) ok = ::rename(tempPath.c_str(), path.c_str()) == 0;
  if (!ok) {
    ::unlink(tempPath.c_str());
    return false;
  }
  syncFolder(folderOf(path));
  return true;
}

}  // namespace typeprint
