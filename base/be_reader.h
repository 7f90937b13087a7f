// BEReader: the one bounds-checked, big-endian view through which every byte of a font file is
// read. A read past the end returns 0 and clears a sticky ok flag, so a header can be read
// straight through and checked once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace typeprint {

// Four-character codes are stored big-endian in 32 bits: tag("FOND") == 0x464F4E44.
constexpr uint32_t tag(const char (&s)[5]) {
  return uint32_t(uint8_t(s[0])) << 24 | uint32_t(uint8_t(s[1])) << 16 |
         uint32_t(uint8_t(s[2])) << 8 | uint32_t(uint8_t(s[3]));
}

// A borrowed byte range; it never owns what it points at.
struct ByteSpan {
  const uint8_t* data = nullptr;
  size_t size = 0;
  ByteSpan() = default;
  ByteSpan(const uint8_t* d, size_t n) : data(d), size(n) {}
  ByteSpan(const std::vector<uint8_t>& v) : data(v.data()), size(v.size()) {}  // NOLINT
  // A span of a temporary vector would dangle at once.
  ByteSpan(std::vector<uint8_t>&&) = delete;
  bool empty() const { return size == 0; }
  const uint8_t* begin() const { return data; }
  const uint8_t* end() const { return data + size; }
  // Window on [offset, offset + length); empty when the window does not fit.
  ByteSpan sub(size_t offset, size_t length) const {
    if (offset > size || length > size - offset) return {};
    return {data + offset, length};
  }
};

class BEReader {
 public:
  BEReader() = default;
  BEReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  explicit BEReader(ByteSpan span) : data_(span.data), size_(span.size) {}

  uint8_t u8() { return uint8_t(take(1)); }
  uint16_t u16() { return uint16_t(take(2)); }
  uint32_t u24() { return take(3); }
  uint32_t u32() { return take(4); }
  int8_t s8() { return int8_t(u8()); }
  int16_t s16() { return int16_t(u16()); }
  int32_t s32() { return int32_t(u32()); }
  void skip(size_t n) {
    if (fits(n)) pos_ += n;
  }
  // Copies n bytes out; an empty vector (and a failed reader) when they are not there.
  std::vector<uint8_t> bytes(size_t n) {
    if (!fits(n)) return {};
    std::vector<uint8_t> out(data_ + pos_, data_ + pos_ + n);
    pos_ += n;
    return out;
  }
  // A view of the next n bytes, consumed; empty and failed when they are not there.
  ByteSpan span(size_t n) {
    if (!fits(n)) return {};
    ByteSpan out(data_ + pos_, n);
    pos_ += n;
    return out;
  }

  // Sub-reader on [offset, offset + length) of this reader's whole range, or a failed reader.
  BEReader at(size_t offset, size_t length) const {
    BEReader r;
    if (offset <= size_ && length <= size_ - offset) {
      r.data_ = data_ + offset;
      r.size_ = length;
    } else {
      r.ok_ = false;
    }
    return r;
  }
  // Sub-reader from offset to the end, or a failed reader.
  BEReader from(size_t offset) const {
    if (offset > size_) return failed();
    return at(offset, size_ - offset);
  }
  static BEReader failed() {
    BEReader r;
    r.ok_ = false;
    return r;
  }

  // Moves to an absolute position; fails when it lies past the end.
  void seek(size_t pos) {
    if (ok_ && pos <= size_) pos_ = pos; else ok_ = false;
  }
  size_t position() const { return pos_; }
  size_t size() const { return size_; }
  size_t remaining() const { return ok_ ? size_ - pos_ : 0; }
  bool ok() const { return ok_; }
  ByteSpan whole() const { return {data_, size_}; }

 private:
  bool fits(size_t n) { return ok_ = ok_ && n <= size_ - pos_; }  // subtract, never add
  uint32_t take(size_t n) {
    uint32_t v = 0;
    if (fits(n))
      while (n--) v = v << 8 | data_[pos_++];
    return v;
  }
  const uint8_t* data_ = nullptr;
  size_t size_ = 0, pos_ = 0;
  bool ok_ = true;
};

}  // namespace typeprint
