#include "tools/file_checks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "api/explain.h"

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

LibraryVerdict verdictFor(const DiagnosticEntry& refusal) {
  const std::string topic = refusal.topic;
  const std::string why = describe(refusal);
  // The kind decision refuses files that are no font at all, and printer files, which are read
  // through the suitcase that names them; the file check refuses companions carrying another
  // file's fork. Every other refusal is a parser finding something wrong in a font.
  const bool notAFont = (topic == "kind" && (refusal.text.rfind("not a font", 0) == 0 ||
                                             refusal.text.rfind("a printer font file", 0) == 0)) ||
                        (topic == "file" && refusal.text.rfind("it holds another file's fork", 0) == 0);
  if (notAFont) return {true, "not a font file of a kind typeprint reads (" + why + ")"};
  if (topic == "file" && refusal.text == "no face was accepted") return {false, "no faces"};
  return {false, "damaged: " + why};
}

}  // namespace typeprint::cli
