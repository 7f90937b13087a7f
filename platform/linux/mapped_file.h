// A read-only memory map of a whole file, shared by everything that reads one font.
#pragma once

#include <memory>
#include <string>

#include "base/be_reader.h"

namespace typeprint {

class MappedFile {
 public:
  // Maps the regular file at `path`; null when it cannot be opened or is not a regular file.
  static std::shared_ptr<const MappedFile> open(const std::string& path);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  ByteSpan bytes() const { return {static_cast<const uint8_t*>(base_), size_}; }
  const std::string& path() const { return path_; }

 private:
  MappedFile() = default;
  std::string path_;
  void* base_ = nullptr;
  size_t size_ = 0;
};

}  // namespace typeprint
