// Reads the input as MacBinary and as AppleSingle/AppleDouble; whatever is recognised is written
// back with its forks and must read back with the same forks and codes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/linux/apple_double.h"
#include "platform/linux/mac_binary.h"

namespace {

using typeprint::ByteSpan;

bool same(ByteSpan a, ByteSpan b) { return a.size == b.size && (a.size == 0 || memcmp(a.data, b.data, a.size) == 0); }

void macBinary(ByteSpan input) {
  auto mb = typeprint::readMacBinary(input);
  if (!mb) return;
  auto out = typeprint::writeMacBinary(*mb, mb->dataFork, mb->resourceFork);
  auto again = typeprint::readMacBinary(out);
  if (!again || again->version < 2 || !same(again->dataFork, mb->dataFork) ||
      !same(again->resourceFork, mb->resourceFork) || again->type != mb->type || again->creator != mb->creator)
    abort();
}

void appleFile(ByteSpan input) {
  auto file = typeprint::readAppleFile(input);
  if (!file) return;
  auto out = typeprint::writeAppleFile(*file);
  auto again = typeprint::readAppleFile(out);
  if (!again || again->entries.size() != file->entries.size() || again->fileType() != file->fileType()) abort();
  for (size_t i = 0; i < file->entries.size(); ++i)
    if (again->entries[i].id != file->entries[i].id || !same(again->entries[i].bytes, file->entries[i].bytes)) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ByteSpan input(data, size);
  macBinary(input);
  appleFile(input);
  return 0;
}
