// Writes a new data or resource fork back into the container the forks were found in: the file
// itself (plain, MacBinary, AppleSingle), its AppleDouble companion, or its bare fork file.
// Every write replaces the target file atomically, so a failure at any point leaves the old file.
#pragma once

#include <string>

#include "base/be_reader.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/fork_locator.h"

namespace typeprint {

enum class ForkKind { Data, Resource };

// Replaces one fork of the file `forks` describes, keeping the container form and every other
// part of it. A failure leaves the file on disk as it was (see replaceFileAtomically for the one
// exception); a file with no place for a resource fork, or a container that cannot be laid out
// again, fails at WriteStep::Open with EINVAL.
WriteResult writeForkBack(const FileForks& forks, ForkKind which, ByteSpan fork);

}  // namespace typeprint
