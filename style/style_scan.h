// Finding a font's styles in its names: the names are split into words, the words looked up
// in the keyword table as style components, the component list cleaned up, and the result
// compared with the table's built-in styles.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "style/keyword_table.h"

namespace typeprint {

// The next word of `text` from `pos`; `pos` moves to the start of the following word, or to
// npos when the text is used up. Before the first "_" of a multiple-master name, and always
// for other names, a word is a capital followed by lower-case letters; after it, a word is
// any letter followed by capitals ("_SB" gives "SB"). Letters are ASCII only.
std::string local_styleSubstring(const std::string& text, size_t& pos, bool multipleMaster);

class UxFontStyleScan {
 public:
  // A scanner over `table`, which must outlive it.
  explicit UxFontStyleScan(const SKeywordTable& table) : table_(table) {}

  // Loads the shared table from the installed "KeywordTable.plist" once per process. A file
  // that is missing or no property list counts as loaded, with empty tables. A DataRetrieveError
  // passes to the caller and the next call tries again. Safe to call from several threads.
  static void Initialize();
  // A scanner over the shared table; call Initialize first.
  static UxFontStyleScan shared();

  // The first component, in table order, with a spelling equal to `word` (case-sensitive).
  bool MatchStyleComponent(const std::string& word, SStyleComponent& out) const;

  // The style components of a font from two of its names. The first name is the one the
  // special rules inspect, so it should be the PostScript name.
  std::vector<SStyleComponent> ScanFontForStyleComponents(const std::string& firstName,
                                                          const std::string& secondName) const;

  // The built-in styles matching `components`: one exact match, or the partial matches with
  // the fewest components among the best, weights and other styles kept apart. Returns out.size().
  size_t FindBuiltinMatchesForStyleComponents(std::vector<SStyleComponent> components,
                                              std::vector<SBuiltinStyle>& out) const;

  // Both steps above. Returns out.size().
  size_t ScanFontForBuiltinStyles(const std::string& firstName, const std::string& secondName,
                                  std::vector<SBuiltinStyle>& out) const;

  // True when `userStyle` occurs in either name, ignoring ASCII case.
  static bool ScanFontForUserStyle(std::string firstName, std::string secondName, std::string userStyle);

 private:
  std::vector<std::string> splitWords(const std::string& name, bool multipleMaster) const;
  std::vector<SStyleComponent> matchWords(const std::vector<std::string>& words, bool expandXlight) const;
  void cleanUp(std::vector<SStyleComponent>& list, const std::string& firstName,
               const std::string& secondName) const;
  bool isCompounding(int32_t styleConstant) const;

  const SKeywordTable& table_;
};

}  // namespace typeprint
