// Opening resource files in tests, and synthetic forks written to scratch files.
#pragma once

#include <memory>
#include <string>

#include "builders/byte_edits.h"
#include "resources/resource_file.h"
#include "support/test_paths.h"

namespace typeprint::test {

using ResourceFilePtr = std::unique_ptr<ResourceFile>;

inline ResourceFilePtr openResourceFile(const std::string& path, bool readOnly = true) {
  return ResourceFile::open(path, readOnly);
}

// Writes `fork` as the data fork of `dir/name` (read as a map, as a .dfont is) and opens it.
inline ResourceFilePtr writeAndOpen(const ScratchDir& dir, const std::string& name, const Bytes& fork) {
  writeFile(dir.file(name), std::string(fork.begin(), fork.end()));
  return openResourceFile(dir.file(name));
}

}  // namespace typeprint::test
