// MacBinary I, II and III: one file holding a Mac file's name, Finder info, data fork and
// resource fork. A 128-byte header comes first, then the data fork and the resource fork, each
// padded with zeros to a multiple of 128.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/be_reader.h"

namespace typeprint {

struct MacBinaryFile {
  int version = 0;      // 1, 2 or 3
  ByteSpan header;      // the 128 header bytes
  ByteSpan macName;     // the Mac file name, Mac Roman, no length byte
  uint32_t type = 0;    // Finder type and creator
  uint32_t creator = 0;
  ByteSpan secondaryHeader;  // stored between the header and the data fork (II and III)
  ByteSpan dataFork;
  ByteSpan resourceFork;
  ByteSpan comment;  // Get Info comment after the resource fork (II and III)
};

// CRC-16 of MacBinary II and III headers: polynomial 0x1021, initial value 0, no reflection.
uint16_t macBinaryCrc(ByteSpan bytes);

// Strict detection: the header checks, the CRC (or, failing it, the MacBinary I rules) and a
// file length that matches the padded parts exactly. Nothing for any other file.
std::optional<MacBinaryFile> readMacBinary(ByteSpan file);

// The file `original` came from, with its forks replaced. The header keeps every field but the
// fork lengths; it is written as MacBinary II (III when it was III) with a correct CRC.
std::vector<uint8_t> writeMacBinary(const MacBinaryFile& original, ByteSpan dataFork,
                                    ByteSpan resourceFork);

}  // namespace typeprint
