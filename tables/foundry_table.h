// CFoundryNameTable: turns what is known of a font's maker (the creator code of its file, words
// in its notice, copyright or manufacturer name) into one canonical foundry name, using the
// data file "FoundryNameTable.plist".
//
// The file's root is an array of dictionaries, searched in order; the first match wins:
//   "FoundryName"  string            the canonical name the entry yields
//   "Pattern"      string            lower-case text whose presence in a font's text names the
//                                    foundry; "" makes a default entry (the last one counts)
//   "CreatorCode"  array of strings  four-character creator codes, compared exactly
// Every key is optional; values of the wrong type count as absent.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "base/plist_value.h"
#include "foundation/ux_string.h"

namespace typeprint {

class CFoundryNameTable {
 public:
  static constexpr const char* kFileName = "FoundryNameTable.plist";
  static constexpr const char* kUnknownFoundry = "--";

  // The process-wide table, loaded from the installed file on first use (thread-safe) and kept
  // until the process ends. A failed load is not retried.
  static const CFoundryNameTable& GetSharedFoundryNameTable();

  // Loads the installed file; false, and an empty table, when it cannot be read.
  bool LoadTable();
  // Loads the file at `path`. Anything but a property list whose root is an array leaves the
  // table empty and gives false.
  bool LoadTable(const std::string& path);
  bool IsLoaded() const { return table_.has_value(); }

  // Creator codes that tools stamped on fonts of many makers, so they say nothing about the
  // foundry: 'ACP1', 'ACSC', 'ACp1', 'FRet', 'FRew'.
  static bool IsQuestionableCreatorCode(uint32_t code);

  // True, and the entry's name in `foundry`, when an entry with a name lists `code`. Code 0 and a
  // `foundry` that already holds text never search.
  bool IsKnownCreatorCode(uint32_t code, UxString* foundry) const;

  // True, and the entry's name in `foundry` (when given), when some entry's pattern occurs in
  // the lower-cased text. `defaultFoundry` (when given) receives the names of default entries
  // passed on the way. Either output may be null.
  bool ContainsKnownFoundryName(const UxString& text, UxString* foundry, UxString* defaultFoundry) const;

  // The creator code's foundry, else the text's, else the default entry's, else "--".
  UxString GetCanonicalFoundryName(uint32_t code, const UxString& text) const;

 private:
  bool keep(std::optional<PlistValue> root);

  std::optional<PlistValue> table_;  // the root array; absent when nothing was loaded
  // Canonical names by their lower-case form, the first entry's spelling kept.
  std::map<std::string, std::string> canonicalNames_;
};

}  // namespace typeprint
