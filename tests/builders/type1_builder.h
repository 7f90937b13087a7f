// Builds the files of a PostScript Type 1 font: a PFB (segments of clear text and binary) and
// the header of a Windows printer-font-metrics file.
#pragma once

#include <string>

#include "builders/sfnt_builder.h"

namespace typeprint::test {

// A PFB: an ASCII segment with `clearText`, a binary segment, and the end marker.
Bytes pfbFile(const std::string& clearText, const Bytes& binary);

// A printer-font-metrics file of `size` bytes (at least 117) whose size field holds `storedSize`
// written big-endian (real files write it little-endian) and whose 60-byte copyright field
// holds `copyright`.
Bytes pfmFile(size_t size, uint32_t storedSize, const std::string& copyright);

}  // namespace typeprint::test
