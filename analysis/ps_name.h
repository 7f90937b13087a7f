// Whether two PostScript names denote the same font, at a strictness the caller chooses.
#pragma once

#include <string>

namespace typeprint {

class GFontToolUtils {
 public:
  enum EMatchLevel {
    kMatchExact = 1,           // byte for byte only
    kMatchAlphanumeric = 2,    // then letters and digits only
    kMatchToSecondHyphen = 3,  // then letters and digits up to the second hyphen (any other value too)
  };
  static bool DoPostScriptNamesMatch(const std::string& a, const std::string& b, EMatchLevel level);
};

}  // namespace typeprint
