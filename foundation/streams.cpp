#include "foundation/streams.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "foundation/file_system.h"
#include "platform/linux/file_system.h"
#include "platform/linux/mapped_file.h"

namespace typeprint::UxStreams {

FILE* fopen(const UxString& path, const UxString& mode) { return std::fopen(path.c_str(), mode.c_str()); }

int ReadWholeFile(const UxString& path, void** data, unsigned long* length) {
  // Only regular files are read, opened without blocking, so a FIFO or device is refused.
  std::shared_ptr<const MappedFile> file = MappedFile::open(path);
  if (!file) return -1;
  const ByteSpan bytes = file->bytes();
  void* block = std::calloc(bytes.size + 1, 1);
  if (!block) return -1;
  if (!bytes.empty()) std::memcpy(block, bytes.data, bytes.size);
  *data = block;
  *length = static_cast<unsigned long>(bytes.size);
  return 0;
}

int ReadWholeUTF8File(const UxString& path, UxString* text) {
  void* data = nullptr;
  unsigned long length = 0;
  int result = ReadWholeFile(path, &data, &length);
  if (result == 0) text->assign(static_cast<const char*>(data));
  std::free(data);
  return result;
}

int WriteWholeUTF8File(const UxString& path, const UxString& text) {
  OSRemoveFile(path, false);
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return -1;
  size_t written = std::fwrite(text.data(), 1, text.size(), f);
  bool closed = std::fclose(f) == 0;
  return written == text.size() && closed ? 0 : -1;
}

int GetFileLengthAndRewind(FILE* f, unsigned long* length) {
  *length = 0;
  if (!f) return -1;
  int error = 0;
  if (std::fseek(f, 0, SEEK_END) == 0) {
    long end = std::ftell(f);
    if (end >= 0) *length = static_cast<unsigned long>(end);
    else error = errno;
  } else {
    error = errno;
  }
  if (std::fseek(f, 0, SEEK_SET) != 0) return errno;
  return error;
}

}  // namespace typeprint::UxStreams
