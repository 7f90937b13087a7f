// WOFF 1.0: an sfnt font whose tables are each zlib-compressed (or stored). Decoding rebuilds the
// sfnt the way the reference tool does: the directory in the WOFF's own order with the original
// checksums, the tables in the order of their WOFF offsets, each padded to four bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "base/be_reader.h"
#include "formats/decode_limits.h"

namespace typeprint::formats {

constexpr uint32_t kWoffSignature = tag("wOFF");

// Decodes a WOFF file into `sfnt` (emptied on any failure).
EDecodeStatus decodeWoff(ByteSpan woff, std::vector<uint8_t>& sfnt);

}  // namespace typeprint::formats
