// The whole contents of one file, read once into memory the library owns and shared by everything
// that reads one font. Reading into owned memory rather than mapping the file means a file that
// another process shortens while it is read is a read failure, never a SIGBUS. Each thread keeps
// the buffer of the last file it let go for the next one, so a file costs one copy from the page
// cache rather than a fresh allocation's page faults and zero fill; a thread's memory stays the
// size of the largest files it holds at once.
#pragma once

#include <memory>
#include <string>

#include "base/be_reader.h"

namespace typeprint {

class MappedFile {
 public:
  // Reads the regular file at `path`; null when it cannot be opened, is not a regular file (a
  // FIFO, device or folder is refused without blocking), cannot be read whole, or changes size
  // while it is read.
  static std::shared_ptr<const MappedFile> open(const std::string& path);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  ByteSpan bytes() const { return {data_, size_}; }
  const std::string& path() const { return path_; }

 private:
  MappedFile() = default;
  std::string path_;
  uint8_t* data_ = nullptr;  // a ReadBuffer's memory, given back when the file is let go
  size_t capacity_ = 0;
  size_t size_ = 0;
};

// Test hook: called with the open descriptor after its size was taken and before its bytes are
// read, as another process changing the file would. Null restores normal operation.
using ReadInterference = void (*)(int fd);
void setReadInterferenceForTesting(ReadInterference interference);

}  // namespace typeprint
