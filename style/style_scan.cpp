// The style scan and the built-in style matcher. A handful of style constants get special
// treatment; "KeywordTable.plist" gives them the meanings named below (see data/README.md).
#include "style/style_scan.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>

#include "platform/linux/data_location.h"

namespace typeprint {

namespace {

constexpr size_t npos = std::string::npos;

// Style constants the scan treats specially.
constexpr int32_t kItalic = 0;    // a slope that rules out Roman and Regular
constexpr int32_t kBold = 1;      // rules out Roman and Regular; absorbed by Demi and Semi
constexpr int32_t kDemi = 4;      // a semibold weight on its own
constexpr int32_t kExtra = 5;     // modifier: Extra Light, Extra Bold
constexpr int32_t kLight = 9;
constexpr int32_t kRoman = 12;    // often part of a family name (Times New Roman)
constexpr int32_t kRegular = 13;
constexpr int32_t kSemi = 15;     // semibold only next to Bold or in a "Semibold" name
constexpr int32_t kUltra = 16;    // modifier; a name ending in it means Ultra Bold
constexpr int32_t kThin = 35;     // Helvetica Neue's Thin (its weight 35)

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isLetter(char c) { return isUpper(c) || isLower(c); }

bool contains(const std::string& text, const std::string& part) { return text.find(part) != npos; }

// A capital and the lower-case letters after it. Lower-case letters before the capital are
// dropped; a non-letter ends the word. `pos` moves to the next capital.
std::string camelCaseWord(const std::string& text, size_t& pos) {
  std::string word;
  size_t i = pos;
  for (; i < text.size(); ++i) {
    char c = text[i];
    if (isUpper(c)) {
      if (!word.empty()) break;
      word += c;
    } else if (isLower(c)) {
      if (!word.empty()) word += c;
    } else {
      ++i;
      break;
    }
  }
  while (i < text.size() && !isUpper(text[i])) ++i;
  pos = i < text.size() ? i : npos;
  return word;
}

// A letter of any case and the capitals after it, the form of multiple-master suffixes.
std::string suffixWord(const std::string& text, size_t& pos) {
  size_t i = pos;
  while (i < text.size() && !isLetter(text[i])) ++i;
  if (i >= text.size()) {
    pos = npos;
    return std::string();
  }
  std::string word(1, text[i++]);
  while (i < text.size() && isUpper(text[i])) word += text[i++];
  pos = i < text.size() ? i : npos;
  return word;
}

// A component made by the scan itself rather than found in the table.
SStyleComponent builtComponent(int32_t styleConstant, bool isModifier) {
  SStyleComponent component;
  component.styleConstant = styleConstant;
  component.isModifier = isModifier;
  return component;
}

// Erases `index`, or the last element once `index` has fallen off the end.
void eraseRemembered(std::vector<SStyleComponent>& list, size_t index) {
  if (list.empty()) return;
  list.erase(list.begin() + std::ptrdiff_t(std::min(index, list.size() - 1)));
}

// Multiple-master suffixes and the words they stand for.
const struct {
  const char* suffix;
  const char* first;
  const char* second;
} kMultipleMasterSuffixes[] = {
    {"_XC", "Extra", "Cond"}, {"_XL", "Extra", "Lt"},   {"_XB", "Extra", "Black"},
    {"_UB", "Ultra", "Black"}, {"_SB", "Semi", "Bold"},
};

// A partial match of one built-in style while the matcher runs.
struct SBuiltinStyleMatcher {
  SBuiltinStyle style;
  uint32_t matchCount = 0;
  bool complete = false;
};

// Indices of modifiers in `font` that `styleComponents` uses with another follower than the
// font's own: "Extra" before "Light" in the style but before "Bold" in the font. A modifier
// that ends the font's list is never tested.
std::vector<size_t> modifierConflicts(const std::vector<SStyleComponent>& font,
                                      const std::vector<int32_t>& styleComponents) {
  std::vector<size_t> conflicts;
  for (size_t i = 0; i + 1 < font.size(); ++i) {
    if (!font[i].isModifier) continue;
    for (size_t j = 0; j < styleComponents.size(); ++j) {
      if (styleComponents[j] != font[i].styleConstant) continue;
      if (j + 1 == styleComponents.size()) {
        conflicts.push_back(i);
      } else if (styleComponents[j + 1] != font[i + 1].styleConstant) {
        conflicts.push_back(i);
        continue;
      }
      break;
    }
  }
  return conflicts;
}

SKeywordTable gKeywordTable;
std::atomic<bool> gKeywordTableLoaded{false};
std::mutex gKeywordTableMutex;

}  // namespace

std::string local_styleSubstring(const std::string& text, size_t& pos, bool multipleMaster) {
  if (pos >= text.size()) {
    pos = npos;
    return std::string();
  }
  size_t firstUnderscore = text.find('_');
  bool inSuffix = multipleMaster && firstUnderscore != npos && pos >= firstUnderscore;
  return inSuffix ? suffixWord(text, pos) : camelCaseWord(text, pos);
}

void UxFontStyleScan::Initialize() {
  if (gKeywordTableLoaded.load(std::memory_order_acquire)) return;
  std::lock_guard<std::mutex> lock(gKeywordTableMutex);
  if (gKeywordTableLoaded.load(std::memory_order_relaxed)) return;
  loadKeywordTable(libraryDataFile("KeywordTable.plist"), gKeywordTable);
  gKeywordTableLoaded.store(true, std::memory_order_release);
}

UxFontStyleScan UxFontStyleScan::shared() { return UxFontStyleScan(gKeywordTable); }

bool UxFontStyleScan::MatchStyleComponent(const std::string& word, SStyleComponent& out) const {
  for (const SStyleComponent& component : table_.components) {
    const auto& spellings = component.matchStrings;
    if (std::find(spellings.begin(), spellings.end(), word) != spellings.end()) {
      out = component;
      return true;
    }
  }
  return false;
}

// The words of a name from its second byte on: the first word of a name is its family's, not
// a style, and losing its capital makes it disappear.
std::vector<std::string> UxFontStyleScan::splitWords(const std::string& name, bool multipleMaster) const {
  std::vector<std::string> words;
  size_t pos = 1;
  while (pos != npos) {
    std::string word = local_styleSubstring(name, pos, multipleMaster);
    if (!word.empty()) words.push_back(word);
  }
  return words;
}

std::vector<SStyleComponent> UxFontStyleScan::matchWords(const std::vector<std::string>& words,
                                                         bool expandXlight) const {
  std::vector<SStyleComponent> found;
  for (const std::string& word : words) {
    SStyleComponent component;
    if (MatchStyleComponent(word, component)) {
      found.push_back(component);
    } else if (expandXlight && word == "Xlight") {
      found.push_back(builtComponent(kExtra, true));
      found.push_back(builtComponent(kLight, false));
    }
  }
  return found;
}

std::vector<SStyleComponent> UxFontStyleScan::ScanFontForStyleComponents(const std::string& firstName,
                                                                         const std::string& secondName) const {
  bool multipleMaster = contains(firstName, "MM");
  std::vector<std::string> wordsA = splitWords(firstName, multipleMaster);
  std::vector<std::string> wordsB = splitWords(secondName, multipleMaster);

  if (multipleMaster) {
    for (const auto& suffix : kMultipleMasterSuffixes) {
      if (!contains(firstName, suffix.suffix)) continue;
      for (auto* words : {&wordsA, &wordsB}) {
        words->push_back(suffix.first);
        words->push_back(suffix.second);
      }
    }
  }
  if (contains(firstName, "OsF")) {
    wordsA.push_back("OsF");
    wordsB.clear();
  }
  if (!multipleMaster) {
    if (firstName.find("SC", 1) != npos) {
      wordsA.push_back("Small");
      wordsA.push_back("Caps");
    }
    if (firstName.find("CY", 1) != npos) wordsA.push_back("Cyrillic");
  }

  std::vector<SStyleComponent> fromFirst = matchWords(wordsA, true);
  std::vector<SStyleComponent> fromSecond = matchWords(wordsB, false);
  std::vector<SStyleComponent> result = fromFirst.size() >= fromSecond.size() ? fromFirst : fromSecond;
  cleanUp(result, firstName, secondName);
  if (!result.empty() && result.back().styleConstant == kUltra) result.push_back(builtComponent(kBold, false));
  return result;
}

// Drops the components that another one makes redundant or wrong. Positions are taken before
// any erasure and not adjusted afterwards, so a later erasure can hit the element that moved
// into a remembered place; the keyword table is built with that in mind.
void UxFontStyleScan::cleanUp(std::vector<SStyleComponent>& list, const std::string& firstName,
                              const std::string& secondName) const {
  bool sawItalicOrBold = false;
  std::optional<size_t> bold, regular, roman, semibold;
  bool keepSemibold = false;
  for (size_t i = 0; i < list.size(); ++i) {
    switch (list[i].styleConstant) {
      case kItalic:
        sawItalicOrBold = true;
        break;
      case kBold:
        sawItalicOrBold = true;
        bold = i;
        break;
      case kRegular:
        regular = i;
        break;
      case kRoman:
        roman = i;
        break;
      case kDemi:
      case kSemi:
        semibold = i;
        if ((i + 1 < list.size() && list[i + 1].styleConstant == kBold) || list[i].styleConstant == kDemi) {
          keepSemibold = true;
        } else if (contains(firstName, "Semibold") || contains(secondName, "Semibold")) {
          keepSemibold = true;
        }
        break;
      case kThin:
        if (contains(firstName, "HelveticaNeue")) MatchStyleComponent("Light", list[i]);
        break;
      default:
        break;
    }
  }
  if (sawItalicOrBold && regular) eraseRemembered(list, *regular);
  if (sawItalicOrBold && roman) eraseRemembered(list, *roman);
  if (keepSemibold && bold) eraseRemembered(list, *bold);
  if (semibold && !keepSemibold) eraseRemembered(list, *semibold);
}

bool UxFontStyleScan::isCompounding(int32_t styleConstant) const {
  auto it = table_.componentMap.find(styleConstant);
  return it != table_.componentMap.end() && it->second.compounds;
}

size_t UxFontStyleScan::FindBuiltinMatchesForStyleComponents(std::vector<SStyleComponent> components,
                                                             std::vector<SBuiltinStyle>& out) const {
  out.clear();
  if (components.empty()) return 0;
  uint32_t bestWeight = 0;
  uint32_t bestOther = 0;
  std::vector<SBuiltinStyleMatcher> candidates;

  for (const SBuiltinStyle& style : table_.builtinStyles) {
    std::vector<SStyleComponent> remaining = components;
    uint32_t hits = 0;
    for (int32_t wanted : style.components) {
      hits += uint32_t(std::count_if(remaining.begin(), remaining.end(),
                                     [wanted](const SStyleComponent& c) { return c.styleConstant == wanted; }));
    }
    uint32_t& best = style.isWeight ? bestWeight : bestOther;
    if (hits == 0 || hits < best) continue;

    std::vector<size_t> conflicts = modifierConflicts(remaining, style.components);
    uint32_t removals = 0;
    for (auto it = conflicts.rbegin(); it != conflicts.rend(); ++it) {
      if (*it >= remaining.size()) continue;
      remaining.erase(remaining.begin() + std::ptrdiff_t(*it));
      ++removals;
    }
    uint32_t matchCount = removals < hits ? hits - removals : 0;
    if (matchCount == 0 || remaining.empty()) continue;

    if (conflicts.empty() && style.components.size() == components.size() && hits == components.size()) {
      out.push_back(style);
      return 1;
    }
    SBuiltinStyleMatcher candidate{style, matchCount, false};
    candidate.complete = matchCount == style.components.size() &&
                         std::none_of(style.components.begin(), style.components.end(),
                                      [this](int32_t c) { return isCompounding(c); });
    best = std::max(best, hits);
    candidates.push_back(candidate);
  }

  // First pass: drop candidates below the best count of their kind (complete ones stay but do
  // not count) and find the fewest components among those at or above it.
  size_t fewestWeight = 0;
  size_t fewestOther = 0;
  std::vector<SBuiltinStyleMatcher> kept;
  for (const SBuiltinStyleMatcher& candidate : candidates) {
    bool isWeight = candidate.style.isWeight;
    if (candidate.matchCount < (isWeight ? bestWeight : bestOther)) {
      if (candidate.complete) kept.push_back(candidate);
      continue;
    }
    size_t& fewest = isWeight ? fewestWeight : fewestOther;
    size_t size = candidate.style.components.size();
    if (fewest == 0 || size < fewest) fewest = size;
    kept.push_back(candidate);
  }
  // Second pass: keep those with no more components than the fewest of their kind.
  for (const SBuiltinStyleMatcher& candidate : kept) {
    size_t fewest = candidate.style.isWeight ? fewestWeight : fewestOther;
    if (candidate.style.components.size() <= fewest) out.push_back(candidate.style);
  }
  return out.size();
}

size_t UxFontStyleScan::ScanFontForBuiltinStyles(const std::string& firstName, const std::string& secondName,
                                                 std::vector<SBuiltinStyle>& out) const {
  out.clear();
  return FindBuiltinMatchesForStyleComponents(ScanFontForStyleComponents(firstName, secondName), out);
}

bool UxFontStyleScan::ScanFontForUserStyle(std::string firstName, std::string secondName, std::string userStyle) {
  for (std::string* text : {&firstName, &secondName, &userStyle}) {
    for (char& c : *text) {
      if (isUpper(c)) c = char(c - 'A' + 'a');
    }
  }
  return contains(firstName, userStyle) || contains(secondName, userStyle);
}

}  // namespace typeprint
