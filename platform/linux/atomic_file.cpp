#include "platform/linux/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>
#include <filesystem>

namespace typeprint {
namespace {

std::atomic<ReplaceFault> gReplaceFault{nullptr};

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

// Makes the rename itself durable.
void syncFolder(const std::filesystem::path& folder) {
  int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

// A new hidden file beside the target, created exclusively; new files get the usual permissions
// (0666 less the umask).
int createTemporary(const std::filesystem::path& folder, const std::string& name, std::string& tempPath) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    tempPath = (folder / ("." + name + ".tp-" + std::to_string(getpid()) + "-" + std::to_string(counter++))).string();
    int fd = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  return -1;
}

}  // namespace

void setReplaceFaultForTesting(ReplaceFault fault) { gReplaceFault = fault; }

bool replaceFileAtomically(const std::string& path, ByteSpan bytes) {
  std::filesystem::path target(path);
  std::filesystem::path folder = target.parent_path().empty() ? "." : target.parent_path();
  std::string temp;
  int fd = createTemporary(folder, target.filename().string(), temp);
  if (fd < 0) return false;
  struct stat st;
  bool ok = writeAll(fd, bytes);
  if (ok && ::stat(path.c_str(), &st) == 0) ok = ::fchmod(fd, st.st_mode & 07777) == 0;
  ok = ok && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  if (ReplaceFault fault = gReplaceFault.load(); ok && fault) ok = fault(temp);
  ok = ok && ::rename(temp.c_str(), path.c_str()) == 0;
  if (!ok) {
    ::unlink(temp.c_str());
    return false;
  }
  syncFolder(folder);
  return true;
}

}  // namespace typeprint
