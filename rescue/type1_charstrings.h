// The glyphs of a Type 1 font's encrypted part: each glyph's name, advance width and the
// bounding box of its outline, found by running its charstring (with its subroutines, flex and
// accented-character composition) over the exact extremes of every line and curve.
//
// The binary part is eexec-encrypted (key 55665, four leading bytes discarded). It holds
// "/Subrs N array" with entries "dup I LEN RD <LEN bytes> NP" and "/CharStrings N dict" with
// entries "/name LEN RD <LEN bytes> ND"; each charstring is encrypted again (key 4330, with
// /lenIV leading bytes discarded, 4 unless the font says otherwise, -1 for none).
#pragma once

#include <map>
#include <string>

#include "base/be_reader.h"

namespace typeprint::rescue {

struct GlyphMetrics {
  double width = 0;
  bool hasOutline = false;  // false for a glyph that draws nothing (a space): box all zeros
  int llx = 0, lly = 0, urx = 0, ury = 0;  // rounded outward to whole units
};

// Every glyph of the binary part by name; empty when the part holds no readable CharStrings
// dictionary. A glyph whose charstring breaks a rule (stack overflow, a missing subroutine,
// too deep or too long a run) keeps the box of what it drew before that point.
std::map<std::string, GlyphMetrics> readGlyphMetrics(ByteSpan encryptedPart);

}  // namespace typeprint::rescue
