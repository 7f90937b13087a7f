// BinHex 4.0 archives (.hqx) of Mac files: the text form decoded in memory into the file's name,
// Finder type and creator, data fork and resource fork, each checked against its CRC.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/be_reader.h"
#include "formats/decode_limits.h"
#include "platform/linux/fork_locator.h"

namespace typeprint::formats {

struct TMacFile {
  std::string name;
  uint32_t type = 0, creator = 0;
  std::vector<uint8_t> dataFork, resourceFork;
};

// The text begins with, or soon holds, the "(This file must be converted ..." line.
bool looksLikeBinHex(ByteSpan bytes);

// Decodes the archive into `file`, within the decoding limits.
EDecodeStatus decodeBinHex(ByteSpan bytes, TMacFile& file);

// The forks of the decoded file as the library's readers take them; they borrow its bytes.
FileForks forksOf(const TMacFile& file);

}  // namespace typeprint::formats
