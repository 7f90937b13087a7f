// The families of a resource-fork font file: the styles each family resource lists in its font
// association table, the resources behind each (family, style) face, the kind of a face's outline
// resource, and the family's own name. A face is the pair (family resource, QuickDraw style).
//
// Functions taking a TypeprintResourceFile are the object's own queries; those taking `void* rf`
// are the C-level functions the rest of the library calls with the object as an untyped pointer.
// Every one tolerates a null or empty family handle and then gives its empty result.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/ux_string.h"
#include "resources/handle.h"
#include "resources/resource_metadata.h"

namespace typeprint {

class TypeprintResourceFile;

// The style-mapping offset; 0 for a family shorter than 52 bytes.
uint32_t getStyleOffsetFromFOND(Handle fond);
// At least 52 bytes, and a second international word that is set or a Japanese family ID.
bool isDoubleByteFOND(Handle fond);
// The family resource's name, decoded as Mac Japanese for a double-byte family whose outlines or
// bitmaps say so, else as Mac Roman. Empty for a null or unnamed handle.
UxString getResourceNameFromFOND(TypeprintResourceFile& rf, Handle fond);

// Distinct styles of the present association entries, ascending.
std::vector<int16_t> getSortedStylesForFOND(Handle fond);
// Distinct resource IDs of the present entries of this style (any point size), ascending.
std::vector<int16_t> getSortedNFNTsForFOND(Handle fond, int16_t style);
bool styleExists(int16_t style, Handle fond);
// Resource ID of entry `index` (from 0), read unsigned; -1 when the entry is not there.
int getResIDForFOND(Handle fond, int index);
// False only when a present entry of this style has point size 0 (the outline is in the file).
bool shouldHavePrinterFile(Handle fond, int16_t style);
// Distinct styles over all families of the file (families in ascending ID order), ascending.
std::vector<int16_t> getSortedStyles(TypeprintResourceFile& rf);

// Number of distinct styles of the family; 0 for null arguments.
short getCountOfUniqueStyles(void* rf, Handle fond);
// The i-th (from 0) distinct style, ascending; -1 for null arguments or i not below the count.
short getStyleFromStyleIndex(void* rf, Handle fond, int i);
// Resource ID of the first present entry, in table order, with this style; -1 if none, for null
// arguments or a family under 54 bytes.
int16_t getFirstResourceIDFromHandleAndStyle(void* rf, Handle fond, short style);
// getSortedNFNTsForFOND; style -1 gives the IDs of every style. Empty for null arguments.
std::vector<int16_t> getSortedResIDsForStyle(void* rf, Handle fond, short style);
// The face's first outline resource begins with 0x00010000, or with "true" outside families
// whose name marks them CID ("A-CID..." or "...CID-B").
bool has_ttc_true_Flag(void* rf, Handle fond, short style);
// The face's first outline resource begins with "OTTO".
bool has_OTTO_Flag_inResource(void* rf, Handle fond, short style);

}  // namespace typeprint
