// Glyph names of the two 8-bit encodings a Mac PostScript font meets: Mac OS Roman, the
// encoding of a text font's family tables and bitmaps, and the Standard Encoding, through which a
// Type 1 accented character names its base and accent.
#pragma once

#include <cstdint>
#include <string_view>

namespace typeprint::rescue {

// The glyph name of a code; empty for a code the encoding leaves unassigned.
std::string_view macRomanGlyphName(uint8_t code);
std::string_view standardEncodingGlyphName(uint8_t code);

}  // namespace typeprint::rescue
