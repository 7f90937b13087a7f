// CClassificationMappings: the default classification (serif, sans serif, script...) of a font
// family, looked up by family name in the data file "DefaultClassifications.plist", and the list
// of built-in class names.
//
// The file's root is a dictionary:
//   "Mappings"                 dictionary  lower-case family name -> class name
//   "Default Classifications"  array       the built-in class names, in display order
// The unknown class is "--"; a built-in class written "None" is listed as "--".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/plist_value.h"
#include "foundation/ux_string.h"

namespace typeprint {

class CClassificationMappings {
 public:
  static constexpr const char* kFileName = "DefaultClassifications.plist";

  // The process-wide mappings, loaded from the installed file on first use (thread-safe) and
  // kept until the process ends. A failed load is not retried.
  static const CClassificationMappings& GetSharedClassificationMappings();

  // Load the installed file, or the file at `path`, then list "None" as "--". Anything but a
  // property list whose root is a dictionary leaves the mappings empty and gives false.
  bool LoadMappings();
  bool LoadMappings(const std::string& path);
  bool IsLoaded() const { return table_.has_value(); }

  // The class of `family`, matched case-insensitively (Unicode lower case, no locale); "--"
  // when the family is not listed.
  UxString GetClassNameFromFontFamily(const UxString& family) const;

  // Replaces `list` with the built-in class names in order.
  void GetListOfBuiltinClasses(std::vector<UxString>& list) const;

  // Every built-in class name equal to `from` (exactly) becomes `to`; returns how many changed.
  int ReplaceDefaultClassification(const std::string& from, const std::string& to);

  static UxString GetUnknownClassificationName() { return "--"; }

 private:
  bool keep(std::optional<PlistValue> root);

  std::optional<PlistValue> table_;  // the root dictionary; absent when nothing was loaded
};

}  // namespace typeprint
