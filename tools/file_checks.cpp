#include "tools/file_checks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/be_reader.h"
#include "platform/linux/fork_locator.h"
#include "resources/resource_file.h"

namespace typeprint::cli {

EntryType entryType(const std::string& path, bool followLinks) {
  struct stat st;
  if ((followLinks ? ::stat(path.c_str(), &st) : ::lstat(path.c_str(), &st)) != 0) return EntryType::Missing;
  if (S_ISREG(st.st_mode)) return EntryType::Regular;
  if (S_ISDIR(st.st_mode)) return EntryType::Directory;
  if (S_ISLNK(st.st_mode)) return EntryType::Symlink;
  if (S_ISFIFO(st.st_mode)) return EntryType::Fifo;
  if (S_ISSOCK(st.st_mode)) return EntryType::Socket;
  return EntryType::Device;
}

std::optional<std::string> unreadableReason(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return std::string(std::strerror(errno));
  if (S_ISDIR(st.st_mode)) return std::string(std::strerror(EISDIR));
  if (S_ISFIFO(st.st_mode)) return std::string("a FIFO, not read");
  if (S_ISSOCK(st.st_mode)) return std::string("a socket, not read");
  if (!S_ISREG(st.st_mode)) return std::string("a device, not read");
  // Opening tells whether the library will be able to read it; a regular file opens at once.
  const int fd = ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return std::string(std::strerror(errno));
  ::close(fd);
  return std::nullopt;
}

LibraryVerdict libraryVerdict(const std::string& path) {
  const LibraryVerdict notAFont{true, "not a font file of a kind typeprint reads"};
  const LibraryVerdict damaged{false, "damaged font file: it gives no face"};
  std::optional<FileForks> forks = openForks(path);
  if (!forks) return damaged;
  // A resource file is a font of its own when it holds families or outlines; a printer file
  // (POST resources only) is read through the suitcase that names it.
  if (auto rf = ResourceFile::open(path, *forks, true))
    return rf->hasFamilies() || rf->count(kTypeSfnt) > 0 ? damaged : notAFont;
  BEReader r(forks->dataFork);
  const uint32_t magic = r.u32();
  const bool sfnt = magic == 0x00010000 || magic == tag("OTTO") || magic == tag("true") || magic == tag("ttcf");
  return sfnt ? damaged : notAFont;
}

}  // namespace typeprint::cli
