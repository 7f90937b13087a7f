#include "platform/linux/mapped_file.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <utility>

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

// Memory for file contents, taken straight from the kernel so that giving it back lowers the
// resident size at once; backed by huge pages where the kernel allows, for fewer TLB misses.
struct ReadBuffer {
  uint8_t* data = nullptr;
  size_t capacity = 0;
};

constexpr size_t kBufferGranule = size_t(1) << 16;

ReadBuffer allocateBuffer(size_t size) {
  const size_t capacity = (std::max<size_t>(size, 1) + kBufferGranule - 1) & ~(kBufferGranule - 1);
  void* data = ::mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (data == MAP_FAILED) return {};
  ::madvise(data, capacity, MADV_HUGEPAGE);
  return {static_cast<uint8_t*>(data), capacity};
}

void releaseBuffer(ReadBuffer& buffer) {
  if (buffer.data) ::munmap(buffer.data, buffer.capacity);
  buffer = {};
}

// The largest buffer this thread let go, kept for its next file; freed at the thread's end.
struct SpareBuffer {
  ReadBuffer buffer;
  ~SpareBuffer() { releaseBuffer(buffer); }
};
thread_local SpareBuffer tSpare;

// A buffer for `size` bytes: the thread's spare when it is large enough, else fresh memory (the
// spare, too small for this file, is given back first).
ReadBuffer takeBuffer(size_t size) {
  if (tSpare.buffer.data && tSpare.buffer.capacity >= size) return std::exchange(tSpare.buffer, {});
  releaseBuffer(tSpare.buffer);
  return allocateBuffer(size);
}

// Keeps the larger of the spare and `buffer`, gives back the other.
void keepSpare(ReadBuffer buffer) {
  if (buffer.capacity > tSpare.buffer.capacity) std::swap(buffer, tSpare.buffer);
  releaseBuffer(buffer);
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
  file->size_ = size_t(st.st_size);
  if (file->size_ > 0) {  // an empty file keeps no memory and shows null bytes
    ReadBuffer buffer = takeBuffer(file->size_);
    if (!buffer.data) return nullptr;
    file->data_ = buffer.data;
    file->capacity_ = buffer.capacity;
  }
  if (ReadInterference interference = gReadInterference.load()) interference(fd);
  if (!readExactly(fd, file->data_, file->size_)) return nullptr;
  return file;
}

MappedFile::~MappedFile() {
  if (data_) keepSpare({data_, capacity_});
}

}  // namespace typeprint
