#include "analysis/ps_name.h"

#include <cctype>

namespace typeprint {
namespace {

// Keeps letters and digits (case unchanged; bytes of 0x80 and above only when the current
// locale calls them letters). With stopAtSecondHyphen, the text ends at the second "-".
std::string StripCharsAndNormalizeString(const std::string& name, bool stopAtSecondHyphen) {
  std::string out;
  bool seenHyphen = false;
  for (char c : name) {
    if (std::isalnum(static_cast<unsigned char>(c))) {
      out.push_back(c);
    } else if (stopAtSecondHyphen && c == '-') {
      if (seenHyphen) return out;
      seenHyphen = true;
    }
  }
  return out;
}

}  // namespace

bool GFontToolUtils::DoPostScriptNamesMatch(const std::string& a, const std::string& b, EMatchLevel level) {
  if (a == b) return true;
  if (level == kMatchExact) return false;
  if (StripCharsAndNormalizeString(a, false) == StripCharsAndNormalizeString(b, false)) return true;
  if (level == kMatchAlphanumeric) return false;
  return StripCharsAndNormalizeString(a, true) == StripCharsAndNormalizeString(b, true);
}

}  // namespace typeprint
