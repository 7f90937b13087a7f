// Mac font families that have bitmap strikes only: a `FOND` whose association entries all point
// at `NFNT` or `FONT` resources, with no outline. One face per style, with its point sizes.
#pragma once

#include <string>
#include <vector>

#include "formats/format_face.h"
#include "platform/linux/fork_locator.h"

namespace typeprint::formats {

// The bitmap-only families of the resource file at `path` (or of the forks given, already open).
// The content checksum of a face is the CRC-32 of its strikes' resource data, in table order.
std::vector<TFormatFace> readMacBitmapFamilies(const std::string& path, const FileForks* forks = nullptr);

// QuickDraw style bits as a style name: "Regular", "Bold", "Italic", "Bold Italic", ...
std::string quickDrawStyleName(uint16_t style);

}  // namespace typeprint::formats
