// WOFF2: an sfnt font or collection compressed as one Brotli stream with transformed glyph
// tables. Decoded with the reference decoder, exactly as its own command-line tool does, inside
// the decoding limits.
#pragma once

#include <cstdint>
#include <vector>

#include "base/be_reader.h"
#include "formats/decode_limits.h"

namespace typeprint::formats {

constexpr uint32_t kWoff2Signature = tag("wOF2");

// Decodes a WOFF2 file into `sfnt` (emptied on any failure).
EDecodeStatus decodeWoff2(ByteSpan woff2, std::vector<uint8_t>& sfnt);

}  // namespace typeprint::formats
