// The clear-text header of a PostScript Type 1 font: values of dictionary keys such as
// /FontName and /FamilyName (matched in any case), the "%!PS-AdobeFont-" header line, the names
// a specifier takes from them, and the names of a Windows PostScript font's companion files.
#pragma once

#include <string>
#include <string_view>

#include "base/be_reader.h"
#include "foundation/ux_string.h"

namespace typeprint {

// The two views of header bytes that the reader works on, of equal length: the bytes as they
// stand (values are copied from them) and a lower-case copy (keys are searched in it). A zero
// byte becomes "_" in both, so either view is one C string.
struct TType1HeaderText {
  std::string lower;
  std::string text;
  explicit TType1HeaderText(ByteSpan bytes);
};

// The value after the first `token` in lowerData, copied from the same place in data: a
// bracketed value up to its matching closing bracket, otherwise up to the next space; at most
// 3,999 characters. False when the token is absent.
bool findBlobForToken(std::string_view lowerData, std::string_view data, const char* token, UxString* value);

// The value after `key` on a header line: past the first delimiter and any spaces, up to the
// next delimiter. False when the key is absent.
bool GetDelimitedKeyValue(std::string_view data, const UxString& key, const char* delimiters, UxString* value);

// Reads kind, foundry, family, version and PostScript name from a header; a key that is absent
// leaves its output untouched. Any output may be null.
void GatherPostScriptMetaDataFromData(std::string_view lowerData, std::string_view data, UxString* kind,
                                      UxString* foundry, UxString* family, UxString* version,
                                      UxString* postScriptName, UxString* styledName, UxString* fullName);

// NAME.pfb gives NAME.mmm (the multiple-master font file).
bool GetWindowsMMMFontNameFromPrinterFontName(const UxString& printerFileName, UxString* mmmName);
// NAME.pfm or NAME.mmm gives NAME.pfb (the printer-font file).
bool GetWindowsPSPrinterFontNameFromFontName(const UxString& fontFileName, UxString* printerFileName);

}  // namespace typeprint
