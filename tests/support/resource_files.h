// Opening resource files in tests: an owning pointer for the untyped object, and synthetic forks
// written to scratch files.
#pragma once

#include <memory>
#include <string>

#include "builders/byte_edits.h"
#include "resources/resource_file.h"
#include "support/test_paths.h"

namespace typeprint::test {

struct ResourceFileCloser {
  void operator()(void* rf) const { FreeResourceFile(rf); }
};
using ResourceFilePtr = std::unique_ptr<void, ResourceFileCloser>;

inline ResourceFilePtr openResourceFile(const std::string& path, bool readOnly = true) {
  return ResourceFilePtr(AllocateResourceFile(path.c_str(), readOnly));
}

inline TypeprintResourceFile& object(const ResourceFilePtr& rf) { return *static_cast<TypeprintResourceFile*>(rf.get()); }

// Writes `fork` as the data fork of `dir/name` (read as a map, as a .dfont is) and opens it.
inline ResourceFilePtr writeAndOpen(const ScratchDir& dir, const std::string& name, const Bytes& fork) {
  writeFile(dir.file(name), std::string(fork.begin(), fork.end()));
  return openResourceFile(dir.file(name));
}

}  // namespace typeprint::test
