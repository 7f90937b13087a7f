// Small edits for breaking exactly one thing in an otherwise valid synthetic file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace typeprint::test {

using Bytes = std::vector<uint8_t>;

inline Bytes patchU8(Bytes b, size_t at, uint8_t v) {
  b.at(at) = v;
  return b;
}
inline Bytes patchU16(Bytes b, size_t at, uint16_t v) {
  b.at(at) = uint8_t(v >> 8);
  b.at(at + 1) = uint8_t(v);
  return b;
}
inline Bytes patchU24(Bytes b, size_t at, uint32_t v) {
  b.at(at) = uint8_t(v >> 16);
  b.at(at + 1) = uint8_t(v >> 8);
  b.at(at + 2) = uint8_t(v);
  return b;
}
inline Bytes patchU32(Bytes b, size_t at, uint32_t v) {
  return patchU16(patchU16(std::move(b), at, uint16_t(v >> 16)), at + 2, uint16_t(v));
}
inline Bytes truncated(Bytes b, size_t size) {
  if (size < b.size()) b.resize(size);
  return b;
}
inline Bytes bytesOf(const std::string& text) { return Bytes(text.begin(), text.end()); }

}  // namespace typeprint::test
