// A bitmap strike as a BDF 2.1 font (the X11 bitmap distribution format): one glyph per code of
// the strike with its bitmap and advance, plus the missing-glyph symbol as an unencoded glyph.
#pragma once

#include <string>

#include "rescue/bitmap_strike.h"

namespace typeprint::rescue {

struct BdfFace {
  std::string family;  // the family resource's name
  uint16_t style = 0;  // QuickDraw style bits
  int pointSize = 0;
};

// The BDF text, at 72 dots per inch so that a pixel is a point. Glyphs are named from Mac OS
// Roman (codes without a name as "codeN", the missing-glyph symbol ".notdef"); the bitmaps are
// the strike's rows, each glyph's box the width of its image and the height of the strike.
std::string writeBdf(const BitmapStrike& strike, const BdfFace& face);

}  // namespace typeprint::rescue
