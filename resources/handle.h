// Handles: relocatable blocks of resource data, addressed as `char**` as the classic Mac memory
// manager did. *h points at the bytes; GetHandleSize gives their length. A handle obtained
// from a resource file stays valid while that file is open; a detached or new handle lives until
// DisposeHandle.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/be_reader.h"

namespace typeprint {

using Handle = char**;

// A new handle holding a copy of `bytes`.
Handle NewHandleFromBytes(ByteSpan bytes);
// Length of the handle's data; 0 for a null handle.
size_t GetHandleSize(Handle h);
// The handle's data as a span; empty for a null handle.
ByteSpan HandleBytes(Handle h);
// Frees a handle made by NewHandleFromBytes or detached from its file. Null is ignored.
void DisposeHandle(Handle h);

}  // namespace typeprint
