// Handles: relocatable blocks of resource data, addressed as `char**` as the classic Mac memory
// manager did. *h points at the bytes; GetHandleSize gives their length. A handle obtained
// from a resource file belongs to that file and stays valid while the file is open; a detached
// or new handle lives until DisposeHandle.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/be_reader.h"

namespace typeprint {

using Handle = char**;

// Whoever keeps handles of its own (an open resource file) and must hear when one is disposed.
class HandleOwner {
 public:
  virtual void handleDisposed(Handle h) = 0;

 protected:
  ~HandleOwner() = default;
};

// A new handle holding a copy of `bytes`.
Handle NewHandleFromBytes(ByteSpan bytes);
// Length of the handle's data; 0 for a null handle.
size_t GetHandleSize(Handle h);
// Resizes the data, keeping the first bytes and zero-filling growth; *h may move. False for a
// null handle.
bool SetHandleSize(Handle h, size_t size);
// The handle's data as a span; empty for a null handle.
ByteSpan HandleBytes(Handle h);
// Frees a handle made by NewHandleFromBytes or detached from its file. Null is ignored. A handle
// still owned by a file is first given back to its owner.
void DisposeHandle(Handle h);

// The owner of a handle (null for a free handle); set by the owner itself.
HandleOwner* GetHandleOwner(Handle h);
void SetHandleOwner(Handle h, HandleOwner* owner);

}  // namespace typeprint
