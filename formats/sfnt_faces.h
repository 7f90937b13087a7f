// The faces of sfnt data held in memory: a single font (TrueType or CFF outlines) or a
// collection whose faces may mix both, as a WOFF or WOFF2 file decodes to or a file holds.
#pragma once

#include <vector>

#include "base/be_reader.h"
#include "formats/format_face.h"

namespace typeprint::formats {

// "TrueType" for 0x00010000 and `true`, "OpenType - PS" for `OTTO`; empty for anything else.
const char* sfntOutlineKind(uint32_t sfntVersion);

// One face per font: names from the naming table, the kind its outlines give, axes and named
// instances, and the face checksum (the CRC-32 of the font, of the rebuilt face for a
// collection). Empty when the bytes are no sfnt font or collection with a usable face. Without
// `withChecksums` the content checksums are left 0 and the font's bytes are not summed.
std::vector<TFormatFace> readSfntFaces(ByteSpan bytes, bool withChecksums = true);

}  // namespace typeprint::formats
