// File names made from font names, which may hold anything a Mac allowed.
#pragma once

#include <string>

namespace typeprint::rescue {

// Letters, digits, ".", "-", "_" and "+" are kept; every other byte (path separators, spaces,
// control and non-ASCII bytes) becomes "_". A leading "." becomes "_" too, so the name is never
// hidden, "." or "..". At most 200 bytes; "font" for an empty name.
std::string safeFileName(const std::string& name);

// The last component of a path.
std::string lastPathComponent(const std::string& path);

}  // namespace typeprint::rescue
