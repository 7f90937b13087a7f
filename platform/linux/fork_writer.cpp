#include "platform/linux/fork_writer.h"

#include <cerrno>
#include <vector>

#include "platform/linux/apple_double.h"
#include "platform/linux/mac_binary.h"

namespace typeprint {
namespace {

// A container that cannot hold the fork or be laid out again.
WriteResult cannotLayOut() { return {WriteStep::Open, EINVAL}; }

WriteResult replaceWith(const std::string& path, const std::vector<uint8_t>& out) {
  return out.empty() ? cannotLayOut() : replaceFileAtomically(path, out);
}

WriteResult writeContainerFork(const FileForks& forks, ForkKind which, ByteSpan fork) {
  ByteSpan whole = forks.file->bytes();
  if (forks.source == ForkSource::MacBinary) {
    auto mb = readMacBinary(whole);
    if (!mb) return cannotLayOut();
    std::vector<uint8_t> out = which == ForkKind::Data ? writeMacBinary(*mb, fork, mb->resourceFork)
                                                       : writeMacBinary(*mb, mb->dataFork, fork);
    return replaceWith(forks.file->path(), out);
  }
  auto single = readAppleFile(whole);
  if (!single) return cannotLayOut();
  single->setEntry(which == ForkKind::Data ? kAppleEntryDataFork : kAppleEntryResourceFork, fork);
  std::vector<uint8_t> out = writeAppleFile(*single);
  return replaceWith(forks.file->path(), out);
}

WriteResult writeCompanionFork(const FileForks& forks, ByteSpan fork) {
  if (forks.source == ForkSource::BareFork) return replaceFileAtomically(forks.companionPath, fork);
  auto header = readAppleFile(forks.companion->bytes());
  if (!header) return cannotLayOut();
  header->setEntry(kAppleEntryResourceFork, fork);
  std::vector<uint8_t> out = writeAppleFile(*header);
  return replaceWith(forks.companionPath, out);
}

}  // namespace

WriteResult writeForkBack(const FileForks& forks, ForkKind which, ByteSpan fork) {
  switch (forks.source) {
    case ForkSource::MacBinary:
    case ForkSource::AppleSingle:
      return writeContainerFork(forks, which, fork);
    case ForkSource::AppleDouble:
    case ForkSource::BareFork:
      if (which == ForkKind::Data) return replaceFileAtomically(forks.file->path(), fork);
      return writeCompanionFork(forks, fork);
    case ForkSource::Plain:
      if (which == ForkKind::Data) return replaceFileAtomically(forks.file->path(), fork);
      return cannotLayOut();
  }
  return cannotLayOut();
}

}  // namespace typeprint
