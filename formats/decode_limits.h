// The bounds every decoder of a compressed or encoded container keeps to, so that a small
// hostile file cannot make the reader allocate without limit.
#pragma once

#include <cstddef>
#include <cstdint>

namespace typeprint::formats {

constexpr uint64_t kMaxDecodedSize = 256ull * 1024 * 1024;
constexpr uint64_t kMaxExpansion = 1000;

// The largest output a file of `fileSize` bytes may decode to.
constexpr uint64_t decodedSizeLimit(uint64_t fileSize) {
  return fileSize > kMaxDecodedSize / kMaxExpansion ? kMaxDecodedSize : fileSize * kMaxExpansion;
}

// What a decoder made of its input.
enum class EDecodeStatus {
  kDecoded,
  kNotThisFormat,  // the bytes do not begin the way the format does
  kDamaged,        // a header, offset, length or compressed stream is wrong
  kTooLarge,       // the output would pass decodedSizeLimit
};

}  // namespace typeprint::formats
