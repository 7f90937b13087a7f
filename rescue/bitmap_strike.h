// A bitmap strike (`NFNT` or `FONT` resource): one row-major bit image holding every glyph side
// by side, a location table giving each glyph's first column in it, and an offset/width table
// giving each glyph's advance and its image's place relative to the pen.
//
// Layout (big-endian, offsets from the start of the resource):
//    0  u16  fontType (bits 2-3: bit depth, 0 for one bit per pixel)
//    2  s16  firstChar        4  s16  lastChar       6  s16 widMax     8  s16 kernMax
//   10  s16  nDescent (when positive, the high word of owTLoc)
//   12  s16  fRectWidth      14  s16  fRectHeight   16  u16 owTLoc (words from this field to
//            the offset/width table)  18 s16 ascent  20 s16 descent  22 s16 leading
//   24  s16  rowWords (width of the image in 16-bit words)
//   26  image: rowWords * 2 * fRectHeight bytes
//       location table: lastChar - firstChar + 3 u16 column offsets
// Offset/width table: lastChar - firstChar + 3 u16 entries: high byte the image's offset from
// the pen plus kernMax, low byte the advance; 0xFFFF for a code without a glyph. Entry
// lastChar - firstChar + 1 is the missing-glyph symbol.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/be_reader.h"

namespace typeprint::rescue {

struct StrikeGlyph {
  int code = -1;  // -1 for the missing-glyph symbol
  int advance = 0;
  int xOffset = 0;  // of the image's left column from the pen
  int width = 0;    // image columns
  // fRectHeight rows of `width` pixels each, 1 for ink, top row first.
  std::vector<std::vector<bool>> rows;
};

struct BitmapStrike {
  int firstChar = 0, lastChar = 0;
  int widMax = 0, kernMax = 0;
  int fRectWidth = 0, fRectHeight = 0;
  int ascent = 0, descent = 0, leading = 0;
  std::vector<StrikeGlyph> glyphs;  // codes ascending, the missing-glyph symbol last
};

// Nothing when the strike is cut short, its character range is outside 0..255, its image is
// deeper than one bit, or a glyph's columns lie outside the image.
std::optional<BitmapStrike> readBitmapStrike(ByteSpan resource);

}  // namespace typeprint::rescue
