// Replacing a whole file so that readers see either the old file or all of the new one: every
// file the library writes (split collection faces, rewritten forks and containers) goes through it.
#pragma once

#include <string>

#include "base/be_reader.h"

namespace typeprint {

// The steps of a replacement, in order; a failure names the step that failed.
enum class WriteStep { None, Open, Write, Owner, Sync, Close, Rename, SyncFolder };

// How a replacement went: `failedAt` None for success, else the step and its errno.
struct WriteResult {
  WriteStep failedAt = WriteStep::None;
  int error = 0;
  explicit operator bool() const { return failedAt == WriteStep::None; }
  // "cannot write the file: No space left on device"; empty on success.
  std::string reason() const;
};

// Writes `bytes` to a temporary file in the folder of the file `path` names, with the existing
// file's permissions, owner and group (as far as this process may set them), flushes it to disk,
// renames it over the file and flushes the folder. A symbolic link at `path` is followed: its
// target is replaced and the link stays. A failure before the rename removes the temporary file
// and leaves the old one; a failure of the folder flush (the last step) is reported although the
// new file is already in place. Other hard links to the old file keep the old contents. Paths
// longer than PATH_MAX are reached from their folder.
WriteResult replaceFileAtomically(const std::string& path, ByteSpan bytes);

// Test hook: called before each step with the temporary file's name (empty before it exists);
// a nonzero errno makes that step fail with it, as a full disk or a failing device would. Null
// restores normal operation.
using WriteFault = int (*)(WriteStep step, const std::string& tempName);
void setWriteFaultForTesting(WriteFault fault);

}  // namespace typeprint
