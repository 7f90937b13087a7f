// Builds AppleDouble header files and AppleSingle files: header, descriptors, then the entries in
// the order added.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "builders/byte_edits.h"

namespace typeprint::test {

class AppleDoubleBuilder {
 public:
  static AppleDoubleBuilder appleSingle();
  static AppleDoubleBuilder appleDouble();
  AppleDoubleBuilder& entry(uint32_t id, Bytes data);
  // Entry 9: 32 bytes of Finder info starting with type and creator.
  AppleDoubleBuilder& finderInfo(const char (&type)[5], const char (&creator)[5]);
  AppleDoubleBuilder& version(uint32_t v);
  Bytes build() const;
  // Offset of descriptor `index` (ID, offset, length) in the built file.
  static size_t descriptor(size_t index) { return 26 + 12 * index; }

 private:
  explicit AppleDoubleBuilder(uint32_t magic) : magic_(magic) {}
  uint32_t magic_;
  uint32_t version_ = 0x00020000;
  std::vector<std::pair<uint32_t, Bytes>> entries_;
};

}  // namespace typeprint::test
