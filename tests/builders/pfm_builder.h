// Builds the header of a Windows printer-font-metrics file.
#pragma once

#include <string>

#include "builders/sfnt_builder.h"

namespace typeprint::test {

// A printer-font-metrics file of `size` bytes (at least 117) whose size field holds `storedSize`
// written big-endian (real files write it little-endian) and whose 60-byte copyright field
// holds `copyright`.
Bytes pfmFile(size_t size, uint32_t storedSize, const std::string& copyright);

}  // namespace typeprint::test
