// The variation axes and named instances of a variable sfnt font (its `fvar` table), with the
// names they refer to in the `name` table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/sfnt_directory.h"
#include "formats/format_face.h"

namespace typeprint::formats {

// The name record `nameID`, decoded to UTF-8: Windows Unicode English (US) first, then any
// Windows Unicode record, then Mac Roman English. Empty when there is none.
std::string nameById(const SfntBytes& font, uint16_t nameID);

// Reads the axes and instances into the face; false (face untouched) when the font has no
// usable `fvar` table.
bool readVariations(const SfntBytes& font, TFormatFace& face);

}  // namespace typeprint::formats
