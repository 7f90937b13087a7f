#include "platform/linux/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace typeprint {

std::shared_ptr<const MappedFile> MappedFile::open(const std::string& path) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nullptr;
  struct stat st;
  if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return nullptr;
  }
  std::shared_ptr<MappedFile> file(new MappedFile());
  file->path_ = path;
  file->size_ = size_t(st.st_size);
  if (file->size_ > 0) {
    void* base = mmap(nullptr, file->size_, PROT_READ, MAP_PRIVATE, fd, 0);
    if (base == MAP_FAILED) {
      ::close(fd);
      return nullptr;
    }
    file->base_ = base;
  }
  ::close(fd);
  return file;
}

MappedFile::~MappedFile() {
  if (base_) munmap(base_, size_);
}

}  // namespace typeprint
