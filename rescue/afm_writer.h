// Adobe Font Metrics (AFM 2.0 text) for a Mac PostScript printer font: names and bounding box from
// its header, glyph boxes from its outlines, advance widths from its family's width table and
// kerning pairs from the family's kerning table for the face's style, all in thousandths of the
// em.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "rescue/fond_metrics.h"
#include "rescue/type1_charstrings.h"
#include "rescue/type1_font_info.h"

namespace typeprint::rescue {

struct AfmGlyph {
  int code = -1;  // -1 for a glyph the encoding does not reach
  std::string name;
  int width = 0;
  GlyphMetrics box;
};

struct AfmKernPair {
  std::string left, right;
  int value = 0;
};

struct AfmFont {
  Type1FontInfo info;
  std::string encodingScheme;
  std::vector<AfmGlyph> glyphs;
  std::vector<AfmKernPair> kerning;
  size_t droppedPairs = 0;  // family pairs whose codes name no glyph of the font
};

// The metrics of the face of `style`: each code of the family's range whose encoding name is a
// glyph of the font (the font's own encoding, else Mac OS Roman, the codes the family tables
// use), with the width row of that style (the glyph's own advance when the family has none),
// then the font's unencoded glyphs; and the family's pairs for that style. When `glyphs` is
// empty (outlines unreadable) every named code of the width row is listed with a zero box.
AfmFont buildAfmFont(const Type1FontInfo& info, const std::map<std::string, GlyphMetrics>& glyphs,
                     const FondMetrics& family, uint16_t style);

std::string writeAfm(const AfmFont& font);

}  // namespace typeprint::rescue
