// What an AFM file takes from a Type 1 font's clear-text header: the names and numbers of its
// font dictionary and FontInfo, and its encoding.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>

#include "base/be_reader.h"

namespace typeprint::rescue {

struct Type1FontInfo {
  std::string fontName, fullName, familyName, weight, version, notice;
  double italicAngle = 0;
  bool isFixedPitch = false;
  std::optional<std::array<double, 4>> fontBBox;
  std::optional<double> underlinePosition, underlineThickness;
  // True for "/Encoding StandardEncoding"; otherwise the codes the header assigns with
  // "dup CODE /name put".
  bool standardEncoding = true;
  std::map<uint8_t, std::string> encoding;
};

// Reads each key's first occurrence; a key that is absent keeps its default. Strings have their
// escapes resolved (\050 is "(") and their line ends made spaces.
Type1FontInfo readType1FontInfo(ByteSpan clearText);

}  // namespace typeprint::rescue
