#include "platform/linux/fork_locator.h"

namespace typeprint {

std::optional<FileForks> openForks(const std::string& path) {
  FileForks forks;
  forks.file = MappedFile::open(path);
  if (!forks.file) return std::nullopt;
  forks.dataFork = forks.file->bytes();
  return forks;
}

}  // namespace typeprint
