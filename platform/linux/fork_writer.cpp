#include "platform/linux/fork_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <vector>

#include "platform/linux/apple_double.h"
#include "platform/linux/mac_binary.h"

namespace typeprint {
namespace {

ReplaceFault gReplaceFault = nullptr;

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

bool writeContainerFork(const FileForks& forks, ForkKind which, ByteSpan fork) {
  ByteSpan whole = forks.file->bytes();
  if (forks.source == ForkSource::MacBinary) {
    auto mb = readMacBinary(whole);
    if (!mb) return false;
    std::vector<uint8_t> out = which == ForkKind::Data ? writeMacBinary(*mb, fork, mb->resourceFork)
                                                       : writeMacBinary(*mb, mb->dataFork, fork);
    return !out.empty() && replaceFileAtomically(forks.file->path(), out);
  }
  auto single = readAppleFile(whole);
  if (!single) return false;
  single->setEntry(which == ForkKind::Data ? kAppleEntryDataFork : kAppleEntryResourceFork, fork);
  std::vector<uint8_t> out = writeAppleFile(*single);
  return !out.empty() && replaceFileAtomically(forks.file->path(), out);
}

bool writeCompanionFork(const FileForks& forks, ByteSpan fork) {
  if (forks.source == ForkSource::BareFork) return replaceFileAtomically(forks.companionPath, fork);
  auto header = readAppleFile(forks.companion->bytes());
  if (!header) return false;
  header->setEntry(kAppleEntryResourceFork, fork);
  std::vector<uint8_t> out = writeAppleFile(*header);
  return !out.empty() && replaceFileAtomically(forks.companionPath, out);
}

}  // namespace

void setReplaceFaultForTesting(ReplaceFault fault) { gReplaceFault = fault; }

bool replaceFileAtomically(const std::string& path, ByteSpan bytes) {
  std::filesystem::path target(path);
  std::filesystem::path folder = target.parent_path().empty() ? "." : target.parent_path();
  std::string temp = (folder / ("." + target.filename().string() + ".tp-XXXXXX")).string();
  int fd = mkstemp(temp.data());
  if (fd < 0) return false;
  struct stat st;
  bool ok = writeAll(fd, bytes);
  if (ok && ::stat(path.c_str(), &st) == 0) ok = ::fchmod(fd, st.st_mode & 07777) == 0;
  ok = ok && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  if (ok && gReplaceFault) ok = gReplaceFault(temp);
  ok = ok && ::rename(temp.c_str(), path.c_str()) == 0;
  if (!ok) {
    ::unlink(temp.c_str());
    return false;
  }
  syncFolder(folder);
  return true;
}

bool writeForkBack(const FileForks& forks, ForkKind which, ByteSpan fork) {
  switch (forks.source) {
    case ForkSource::MacBinary:
    case ForkSource::AppleSingle:
      return writeContainerFork(forks, which, fork);
    case ForkSource::AppleDouble:
    case ForkSource::BareFork:
      if (which == ForkKind::Data) return replaceFileAtomically(forks.file->path(), fork);
      return writeCompanionFork(forks, fork);
    case ForkSource::Plain:
      return which == ForkKind::Data && replaceFileAtomically(forks.file->path(), fork);
  }
  return false;
}

}  // namespace typeprint
