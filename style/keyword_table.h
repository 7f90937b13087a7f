// The style vocabulary read from "KeywordTable.plist": style components (words and
// abbreviations found inside font names, each with an integer style constant) and built-in
// styles (named combinations of those constants). The scan compares constants, never words.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "foundation/errors.h"
#include "base/plist_value.h"

namespace typeprint {

struct SStyleComponent {
  int32_t styleConstant = 0;
  bool isModifier = false;  // binds to the component that follows it ("Extra" in "ExtraBold")
  bool compounds = false;   // only meaningful joined to another component
  std::string display;
  std::vector<std::string> matchStrings;  // spellings inside font names, in file order
};

struct SBuiltinStyle {
  std::string display;  // the name handed to callers
  std::vector<int32_t> components;
  bool isWeight = false;
};

struct SKeywordTable {
  std::vector<SStyleComponent> components;             // every accepted component, file order
  std::map<int32_t, SStyleComponent> componentMap;     // by constant; a later duplicate wins
  std::vector<SBuiltinStyle> builtinStyles;            // every accepted style, file order
};

// Fills `table` from the root dictionary of a keyword file. Malformed entries are skipped.
// Throws DataRetrieveError when "Components" is missing (nothing changed) or when "Styles" is
// missing (the components are loaded by then). The component map is only ever added to, so a
// reload overwrites its entries without dropping old ones.
void fillKeywordTable(const PlistValue& root, SKeywordTable& table);

// Reads the keyword file at `path` into `table`. A missing or unreadable file, or one that is
// not a property list, leaves `table` as it was; a missing array throws as above.
void loadKeywordTable(const std::string& path, SKeywordTable& table);

}  // namespace typeprint
