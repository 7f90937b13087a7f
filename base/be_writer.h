// BEWriter: the mirror of BEReader for files the library writes (split collection faces,
// rewritten resource forks, containers). Offsets and checksums are patched in last.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "base/be_reader.h"

namespace typeprint {

class BEWriter {
 public:
  BEWriter() = default;
  // Starts from existing bytes, to patch fields of a copy of them.
  explicit BEWriter(std::vector<uint8_t> start) : out_(std::move(start)) {}
  void u8(uint8_t v) { out_.push_back(v); }
  void u16(uint16_t v) { put(v, 2); }
  void u24(uint32_t v) { put(v, 3); }
  void u32(uint32_t v) { put(v, 4); }
  void bytes(ByteSpan s) { out_.insert(out_.end(), s.begin(), s.end()); }
  void zeros(size_t n) { out_.insert(out_.end(), n, 0); }
  // Pads with zeros up to a multiple of `alignment`.
  void align(size_t alignment) {
    while (out_.size() % alignment) out_.push_back(0);
  }
  void patchU8(size_t at, uint8_t v) { patch(at, v, 1); }
  void patchU16(size_t at, uint16_t v) { patch(at, v, 2); }
  void patchU32(size_t at, uint32_t v) { patch(at, v, 4); }
  size_t size() const { return out_.size(); }
  const std::vector<uint8_t>& data() const { return out_; }
  std::vector<uint8_t> take() { return std::move(out_); }

 private:
  void put(uint32_t v, int n) {
    for (int i = n - 1; i >= 0; --i) out_.push_back(uint8_t(v >> (8 * i)));
  }
  void patch(size_t at, uint32_t v, int n) {
    for (int i = 0; i < n; ++i) out_.at(at + i) = uint8_t(v >> (8 * (n - 1 - i)));
  }
  std::vector<uint8_t> out_;
};

}  // namespace typeprint
