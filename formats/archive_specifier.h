// The library's own identification of a Mac file packed in a BinHex archive: the archive is
// decoded in memory and its forks walked as the library walks any resource-fork font file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "api/font_specifier.h"

namespace typeprint::formats {

// The records of the archived file, as TP_CreateSpecifier gives them for the file itself; null
// when the archive does not decode or holds no face. The caller frees it with TP_SpecifierFree.
std::unique_ptr<TP_FontArray> createSpecifiersFromBinHex(const std::string& path, uint32_t mask);

}  // namespace typeprint::formats
