// Ordering of font version strings by their numbers: "Version 1.10" is newer than "1.9", and
// "001.005", "1.05" and "Version 1.5" are the same version.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace typeprint::compare {

// The numbers of the first dotted number in the text, without trailing zero parts:
// "Version 2.37; ttfautohint" gives {2, 37}, "1.000" gives {1}. Empty when there is none.
std::vector<uint64_t> versionNumbers(const std::string& version);

// Negative when `a` is older than `b`, zero when they are the same version by their numbers
// (texts without numbers are compared as texts), positive when `a` is newer.
int compareVersions(const std::string& a, const std::string& b);

}  // namespace typeprint::compare
