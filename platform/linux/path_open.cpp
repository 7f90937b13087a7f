#include "platform/linux/path_open.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace typeprint {
namespace {

// Keeps errno across close(), which may change it.
void closeKeepingErrno(int fd) {
  const int saved = errno;
  ::close(fd);
  errno = saved;
}

// Opens a long folder path by walking it in pieces shorter than PATH_MAX, each opened relative to
// the previous one. Pieces end at a '/'.
int openLongFolder(const std::string& folder) {
  int at = folder[0] == '/' ? ::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : ::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  size_t start = folder.find_first_not_of('/');
  while (at >= 0 && start != std::string::npos && start < folder.size()) {
    size_t end = folder.size();
    if (end - start >= PATH_MAX) {
      end = folder.rfind('/', start + PATH_MAX - 1);
      if (end == std::string::npos || end <= start) {
        closeKeepingErrno(at);
        errno = ENAMETOOLONG;  // one component longer than PATH_MAX
        return -1;
      }
    }
    int next = ::openat(at, folder.substr(start, end - start).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    closeKeepingErrno(at);
    at = next;
    start = folder.find_first_not_of('/', end);
  }
  return at;
}

}  // namespace

SplitPath splitFolder(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return {".", path};
  const size_t folderEnd = path.find_last_not_of('/', slash);
  return {folderEnd == std::string::npos ? "/" : path.substr(0, folderEnd + 1), path.substr(slash + 1)};
}

int openFolder(const std::string& folder) {
  if (folder.empty()) {
    errno = ENOENT;
    return -1;
  }
  if (folder.size() < PATH_MAX) return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  return openLongFolder(folder);
}

int openRegularFile(const std::string& path) {
  constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  int fd = -1;
  if (path.size() < PATH_MAX) {
    fd = ::open(path.c_str(), kFlags);
  } else {
    const SplitPath parts = splitFolder(path);
    const int folder = openFolder(parts.folder);
    if (folder < 0) return -1;
    fd = ::openat(folder, parts.name.c_str(), kFlags);
    closeKeepingErrno(folder);
  }
  if (fd < 0) return -1;
  struct stat st;
  if (::fstat(fd, &st) != 0) {
    closeKeepingErrno(fd);
    return -1;
  }
  if (!S_ISREG(st.st_mode)) {
    ::close(fd);
    errno = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
    return -1;
  }
  return fd;
}

}  // namespace typeprint
