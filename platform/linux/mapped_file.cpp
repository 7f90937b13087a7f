#include "platform/linux/mapped_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <new>

#include "platform/linux/path_open.h"

namespace typeprint {
namespace {

std::atomic<ReadInterference> gReadInterference{nullptr};

// Reads exactly `size` bytes from the start of `fd`, then checks that the file ends there: a
// file that shrank or grew since its size was taken is refused.
bool readExactly(int fd, uint8_t* into, size_t size) {
  size_t done = 0;
  while (done < size) {
    const ssize_t n = ::pread(fd, into + done, size - done, off_t(done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += size_t(n);
  }
  uint8_t beyond;
  ssize_t n;
  do n = ::pread(fd, &beyond, 1, off_t(size));
  while (n < 0 && errno == EINTR);
  return n == 0;
}

struct FdCloser {
  int fd;
  ~FdCloser() { ::close(fd); }
};

}  // namespace

void setReadInterferenceForTesting(ReadInterference interference) { gReadInterference = interference; }

std::shared_ptr<const MappedFile> MappedFile::open(const std::string& path) {
  const int fd = openRegularFile(path);
  if (fd < 0) return nullptr;
  FdCloser closer{fd};
  struct stat st;
  if (::fstat(fd, &st) != 0 || st.st_size < 0) return nullptr;
  std::shared_ptr<MappedFile> file(new MappedFile());
  file->path_ = path;
  try {
    file->bytes_.resize(size_t(st.st_size));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  if (ReadInterference interference = gReadInterference.load()) interference(fd);
  if (!readExactly(fd, file->bytes_.data(), file->bytes_.size())) return nullptr;
  return file;
}

}  // namespace typeprint
