// The copy fontconfig gives applications today for a family and style: its best match for the
// pattern, asked of the configuration fontconfig loads for this process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "compare/duplicate_groups.h"

namespace typeprint::compare {

struct TFontconfigChoice {
  std::string pattern;  // as fc-match takes it: "Family:style=Style"
  std::string path;
  uint32_t face = 0;
  std::string family;        // the family of the face fontconfig chose
  bool familyFound = false;  // false when fontconfig substitutes another family
};

class FontconfigMatcher {
 public:
  FontconfigMatcher();
  ~FontconfigMatcher();
  FontconfigMatcher(const FontconfigMatcher&) = delete;
  FontconfigMatcher& operator=(const FontconfigMatcher&) = delete;

  // fontconfig's best match for the family and style (no style: the family's default face);
  // nothing when fontconfig is not configured or matches nothing.
  std::optional<TFontconfigChoice> match(const std::string& family, const std::string& style);

 private:
  struct Config;
  Config* config_;
};

// Marks in each group the copy that is fontconfig's choice for the group's family and style
// (the same path and face, else the same file reached by another path), and returns the choices,
// one per group in group order.
std::vector<std::optional<TFontconfigChoice>> markFontconfigChoices(std::vector<TDuplicateGroup>& groups,
                                                                    const std::vector<TFontCopy>& copies,
                                                                    FontconfigMatcher& matcher);

}  // namespace typeprint::compare
