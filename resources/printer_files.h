// The PostScript printer-font file (type `LWFN`) of each face of a resource-fork font file: the
// face's PostScript name from its family's style-mapping table, the file name derived from it by
// the five-three-three abbreviation rule, and the search for that file in the folder of the
// resource file, with the printer fonts of the folder as the fallback when the computed name is
// not there.
#pragma once

#include <optional>
#include <vector>

#include "foundation/ux_string.h"
#include "resources/resource_file.h"

namespace typeprint {

// The printer-font file name of a PostScript name, both Pascal strings; dst holds 256 bytes.
// The first word keeps five characters, later words three, digits at the end stay:
// Times-BoldItalic gives TimesBolIta.
void GetPostScriptFontFileName(const unsigned char* psName, unsigned char* dst);

// The face's PostScript name from the style-mapping table (style cut to 8 bits); empty for a
// family without a usable table.
UxString getPostScriptNameForFOND(ByteSpan fond, short style);

// The file name of the face's printer file: the computed one when it is in the folder, else the
// one the folder's printer fonts give for the PostScript name, else the computed one anyway.
// Empty when no name can be made. Answers are cached per PostScript name in the object.
UxString getPSPrinterNameForFOND(ResourceFile& rf, ByteSpan fond, short style);

// The name of the file in the resource file's folder whose printer font's PostScript name
// matches `postScriptName` (exactly, then letters and digits, then up to the second hyphen;
// a later match replaces an earlier one). Nothing when none matches.
std::optional<UxString> getPrinterNameFromFontActivation(ResourceFile& rf, const UxString& postScriptName);

// Full path of the face's printer file when the face needs one and the file is there (and is no
// folder); nothing otherwise, and for a file that is not open.
std::optional<UxString> CreatePrinterPath(ResourceFile* rf, ByteSpan fond, short style);

// Full paths of the printer files the file's faces need, in no particular order. A file is
// listed only when no face that maps to its name has its outline in the resource file.
std::vector<UxString> getPrinterFiles(ResourceFile& rf);

// The family name of a multiple-master family ("%M" prefix, or "MM" in the family's resource
// name), cut to its base; sets *isMM for such families. Otherwise `name` unchanged.
UxString normalizePostScriptName(const UxString& name, Resource fond, bool* isMM);

}  // namespace typeprint
