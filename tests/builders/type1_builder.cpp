#include "builders/type1_builder.h"

namespace typeprint::test {
namespace {

void segment(Bytes& out, uint8_t kind, const Bytes& body) {
  out.push_back(0x80);
  out.push_back(kind);
  for (int i = 0; i < 4; ++i) out.push_back(uint8_t(body.size() >> (8 * i)));  // little-endian length
  out.insert(out.end(), body.begin(), body.end());
}

}  // namespace

Bytes pfbFile(const std::string& clearText, const Bytes& binary) {
  Bytes out;
  segment(out, 1, asciiBytes(clearText));
  segment(out, 2, binary);
  out.push_back(0x80);
  out.push_back(3);
  return out;
}

Bytes pfmFile(size_t size, uint32_t storedSize, const std::string& copyright) {
  Bytes out(size < 117 ? 117 : size, 0);
  out = patchU16(out, 0, 0x0100);
  out = patchU32(out, 2, storedSize);
  for (size_t i = 0; i < copyright.size() && i < 60; ++i) out[6 + i] = uint8_t(copyright[i]);
  out.resize(size);
  return out;
}

}  // namespace typeprint::test
