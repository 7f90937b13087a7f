// Writing a whole file so that readers see either nothing or all of it, and the existence test
// that name choices need.
#pragma once

#include <string>

#include "foundation/be_reader.h"

namespace typeprint {

// True when something (file, folder, link) exists at `path`.
bool pathExists(const std::string& path);

// Writes `bytes` to a new temporary file in the same folder, flushes it to the disk and renames
// it over `path`. False, with nothing left behind, when any step fails.
bool writeFileAtomically(const std::string& path, ByteSpan bytes);

}  // namespace typeprint
