// The rule for every string the library hands to a caller buffer.
#pragma once

#include <cstdint>
#include <string>

namespace typeprint {

// Writes the first min(length, size - 1) bytes of `text` (up to its first NUL) and a
// terminator; writes nothing at all when size < 1. Truncation is silent.
void copyOutString(const std::string& text, char* buffer, int32_t size);

}  // namespace typeprint
