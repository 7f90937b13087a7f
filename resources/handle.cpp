#include "resources/handle.h"

#include <cstring>
#include <vector>

namespace typeprint {
namespace {

// The block behind a handle. `master` comes first, so the handle (a pointer to it) converts back
// to the block.
struct HandleBlock {
  char* master = nullptr;
  std::vector<char> bytes;
  HandleOwner* owner = nullptr;
};

HandleBlock* blockOf(Handle h) { return reinterpret_cast<HandleBlock*>(h); }

}  // namespace

Handle NewHandleFromBytes(ByteSpan bytes) {
  auto* block = new HandleBlock;
  block->bytes.assign(bytes.begin(), bytes.end());
  block->master = block->bytes.data();
  return &block->master;
}

size_t GetHandleSize(Handle h) { return h ? blockOf(h)->bytes.size() : 0; }

bool SetHandleSize(Handle h, size_t size) {
  if (!h) return false;
  blockOf(h)->bytes.resize(size);
  blockOf(h)->master = blockOf(h)->bytes.data();
  return true;
}

ByteSpan HandleBytes(Handle h) {
  if (!h) return {};
  return {reinterpret_cast<const uint8_t*>(blockOf(h)->bytes.data()), blockOf(h)->bytes.size()};
}

void DisposeHandle(Handle h) {
  if (!h) return;
  if (HandleOwner* owner = blockOf(h)->owner) owner->handleDisposed(h);
  delete blockOf(h);
}

HandleOwner* GetHandleOwner(Handle h) { return h ? blockOf(h)->owner : nullptr; }

void SetHandleOwner(Handle h, HandleOwner* owner) {
  if (h) blockOf(h)->owner = owner;
}

}  // namespace typeprint
