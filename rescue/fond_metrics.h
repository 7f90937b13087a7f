// The metric tables of a family resource (`FOND`): the glyph-width table (one row of widths per
// style) and the kerning table (one list of pairs per style). Widths and kerning values are
// fractions of the em in 4.12 fixed point.
//
// Layout (offsets from the start of the family resource):
//    4  s16  first character code          6  s16  last character code
//   16  s32  width-table offset (0 = none) 20  s32  kerning-table offset (0 = none)
// Width table: entries - 1 (s16); per entry: style (u16), then last - first + 3 widths (s16):
// one per code from first to last, the missing-glyph width and one more.
// Kerning table: entries - 1 (s16); per entry: style (u16), pair count (s16), then per pair the
// first and second character codes (u8 each) and the kerning value (s16).
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/be_reader.h"

namespace typeprint::rescue {

struct KernPair {
  uint8_t first = 0;
  uint8_t second = 0;
  int16_t value = 0;  // 4.12 fraction of the em
};

struct StyleWidths {
  uint16_t style = 0;
  std::vector<int16_t> widths;  // codes firstChar..lastChar, 4.12 fractions of the em
};

struct StyleKerning {
  uint16_t style = 0;
  std::vector<KernPair> pairs;
};

struct FondMetrics {
  int16_t firstChar = 0;
  int16_t lastChar = -1;
  std::vector<StyleWidths> widths;
  std::vector<StyleKerning> kerning;

  // The rows for one style; null when the family has none.
  const StyleWidths* widthsFor(uint16_t style) const;
  const StyleKerning* kerningFor(uint16_t style) const;
};

// Both tables of a family; an absent table (offset 0) is an empty list. Nothing when the family
// is shorter than its header, or a table it claims is cut short or has a character range
// outside 0..255.
std::optional<FondMetrics> readFondMetrics(ByteSpan fond);

// A 4.12 fraction of the em in thousandths of the em, rounded to the nearest.
int fixedToThousandths(int16_t fraction);

}  // namespace typeprint::rescue
