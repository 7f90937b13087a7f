// The sfnt naming table (`name`): which record names each attribute, how its bytes are decoded
// and cleaned, and how the attributes of a font specifier are derived from the chosen names.
#pragma once

#include <string>

#include "analysis/sfnt_directory.h"
#include "foundation/ux_string.h"

namespace typeprint {

// How well a record's platform, encoding and language suit; a candidate replaces the held name
// only when its match is strictly better.
enum ENameMatch {
  kNameMatchNone = 0,       // nothing held yet
  kNameMatchAny = 1,        // the first record seen
  kNameMatchWindows = 2,    // platform 3, encoding 1, any language
  kNameMatchWindowsUS = 3,  // platform 3, encoding 1, language 0x0409
  kNameMatchMacRoman = 4,   // platform 1, encoding 0, language 0
};

// Whether a record's bytes are double-byte (decoded as UTF-16 big-endian).
bool IsDoubleBytePlatform(short platformID, short encodingID, short languageID);

// Offers `value` to `slot`, which it takes when the record's match beats the held one.
void AssignName(short platformID, short encodingID, short languageID, const UxString& value, UxString& slot,
                ENameMatch& match);

// Removes spaces (0x20 only) from the end, then from the start.
void StripLeadingTrailingSpaces(UxString& text);

// Removes every space, "(", ")", "/", "[", "]", "{" and "}".
void StripIllegalCharsInPostScriptName(std::string& name);

// Reads the naming table into the outputs given (any may be null; every given one is written,
// from empty names when the table is missing). True when at least one accepted record gave a
// non-empty text.
bool getMetaDataFromNamesTable(const SfntBytes& font, UxString* foundry, UxString* family, UxString* version, UxString* postScriptName,
                               UxString* styledName, UxString* fullName, UxString* windowsFullName);

// The PostScript-name output of getMetaDataFromNamesTable alone; empty when there is none.
void getPostScriptNameFromNamesTable(const SfntBytes& font, std::string& postScriptName);

}  // namespace typeprint
