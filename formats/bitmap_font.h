// The bitmap fonts of the X Window System: PCF (plain or gzip-compressed) and BDF. One face each,
// from the font's properties: family, weight and slant for the style, pixel size, foundry.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/be_reader.h"
#include "formats/decode_limits.h"
#include "formats/format_face.h"

namespace typeprint::formats {

bool looksLikePcf(ByteSpan bytes);
bool looksLikeBdf(ByteSpan bytes);
bool looksLikeGzip(ByteSpan bytes);

// Inflates a gzip file into `out` (emptied on failure), within the decoding limits.
EDecodeStatus decodeGzip(ByteSpan gz, std::vector<uint8_t>& out);

// The face of a PCF or BDF file; its content checksum is the CRC-32 of the bytes given (the
// decompressed file). Nothing when the bytes are neither or give no family.
std::optional<TFormatFace> readPcfFace(ByteSpan bytes);
std::optional<TFormatFace> readBdfFace(ByteSpan bytes);

}  // namespace typeprint::formats
