#include "builders/pfm_builder.h"

namespace typeprint::test {
Bytes pfmFile(size_t size, uint32_t storedSize, const std::string& copyright) {
  Bytes out(size < 117 ? 117 : size, 0);
  out = patchU16(out, 0, 0x0100);
  out = patchU32(out, 2, storedSize);
  for (size_t i = 0; i < copyright.size() && i < 60; ++i) out[6 + i] = uint8_t(copyright[i]);
  out.resize(size);
  return out;
}

}  // namespace typeprint::test
