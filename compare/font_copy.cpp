#include "compare/font_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "analysis/sfnt_directory.h"
#include "base/be_reader.h"
#include "formats/sfnt_faces.h"
#include "platform/linux/mapped_file.h"

namespace typeprint::compare {
namespace {

constexpr size_t kDirectoryHeaderSize = 12;
constexpr size_t kTableRecordSize = 16;
constexpr uint32_t kVariationTag = tag("fvar");

// Reads up to `length` bytes at `offset` of a regular file; fewer when the file is shorter.
std::vector<uint8_t> readStart(int fd, size_t offset, size_t length) {
  std::vector<uint8_t> bytes(length);
  const ssize_t got = ::pread(fd, bytes.data(), length, off_t(offset));
  bytes.resize(got > 0 ? size_t(got) : 0);
  return bytes;
}

// Whether the table directory at the start of the file lists a variation table: sfntVersion,
// numTables, three search fields, then 16-byte records starting with their tag.
bool listsVariationTable(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return false;
  struct stat st;
  bool found = false;
  if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
    const std::vector<uint8_t> header = readStart(fd, 0, kDirectoryHeaderSize);
    BEReader r(header);
    const uint32_t version = r.u32();
    const uint16_t numTables = r.u16();
    if (r.ok() && (version == kSfntVersionTrueType || version == kSfntVersionOTTO)) {
      const std::vector<uint8_t> records = readStart(fd, kDirectoryHeaderSize, numTables * kTableRecordSize);
      BEReader list(records);
      for (uint16_t i = 0; i < numTables && list.ok() && !found; ++i) {
        found = list.u32() == kVariationTag;
        list.skip(kTableRecordSize - 4);
      }
    }
  }
  ::close(fd);
  return found;
}

bool isInside(const std::string& path, std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return !folder.empty() && path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
         path[folder.size()] == '/';
}

}  // namespace

const char* folderClassName(FolderClass folder) {
  switch (folder) {
    case FolderClass::System: return "system";
    case FolderClass::User: return "user";
    case FolderClass::Other: return "other";
  }
  return "";
}

bool readFileFacts(TFontCopy& copy) {
  struct stat st;
  if (::lstat(copy.path.c_str(), &st) != 0) return false;
  copy.symbolicLink = S_ISLNK(st.st_mode);
  if (copy.symbolicLink && ::stat(copy.path.c_str(), &st) != 0) return false;
  copy.device = uint64_t(st.st_dev);
  copy.inode = uint64_t(st.st_ino);
  copy.size = uint64_t(st.st_size);
  return true;
}

bool readVariableInstances(TFontCopy& copy) {
  if (!listsVariationTable(copy.path)) return false;
  std::shared_ptr<const MappedFile> file = MappedFile::open(copy.path);
  if (!file) return false;
  const std::vector<formats::TFormatFace> faces = formats::readSfntFaces(file->bytes());
  if (faces.empty() || faces[0].axes.empty()) return false;
  copy.variable = true;
  copy.instances = faces[0].instances;
  return true;
}

FolderClass classifyFolder(const std::string& path, const std::vector<std::string>& systemFolders,
                           const std::vector<std::string>& userFolders) {
  // User folders are checked first: a home folder may lie inside a folder listed as the system's.
  for (const std::string& folder : userFolders)
    if (isInside(path, folder)) return FolderClass::User;
  for (const std::string& folder : systemFolders)
    if (isInside(path, folder)) return FolderClass::System;
  return FolderClass::Other;
}

}  // namespace typeprint::compare
