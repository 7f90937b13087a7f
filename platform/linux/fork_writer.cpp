#include "platform/linux/fork_writer.h"

#include <vector>

#include "platform/linux/apple_double.h"
#include "platform/linux/mac_binary.h"

namespace typeprint {
namespace {

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
