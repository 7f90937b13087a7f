// Builds MacBinary files: a 128-byte header (version I, II or III, with the CRC filled in for
// II and III), the data fork and the resource fork, each padded to 128 bytes.
#pragma once

#include <cstdint>
#include <string>

#include "builders/byte_edits.h"

namespace typeprint::test {

class MacBinaryBuilder {
 public:
  MacBinaryBuilder& version(int v);  // 1, 2 (default) or 3
  MacBinaryBuilder& name(const std::string& macName);
  MacBinaryBuilder& typeCreator(const char (&type)[5], const char (&creator)[5]);
  MacBinaryBuilder& dataFork(Bytes bytes);
  MacBinaryBuilder& resourceFork(Bytes bytes);
  Bytes build() const;
  // Recomputes the CRC of a header patched after building.
  static Bytes withFreshCrc(Bytes file);

 private:
  int version_ = 2;
  std::string name_ = "Font";
  uint32_t type_ = 0, creator_ = 0;
  Bytes data_, resource_;
};

}  // namespace typeprint::test
