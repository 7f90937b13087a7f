// Replacing a whole file so that readers see either the old file or all of the new one: every
// file the library writes (split collection faces, rewritten forks and containers) goes through it.
#pragma once

#include <string>

#include "base/be_reader.h"

namespace typeprint {

// Writes `bytes` to a temporary file in the same folder as `path`, with `path`'s permissions when
// it exists, flushes it to disk and renames it over `path`. False, and the temporary file
// removed, on any failure.
bool replaceFileAtomically(const std::string& path, ByteSpan bytes);

// Test hook: called with the temporary file's path just before the rename; returning false makes
// the replacement fail there, as a crash or a full disk would. Null restores normal operation.
using ReplaceFault = bool (*)(const std::string& tempPath);
void setReplaceFaultForTesting(ReplaceFault fault);

}  // namespace typeprint
