// The families of a resource-fork font file: the styles each family resource lists in its font
// association table, the resources behind each (family, style) face, the kind of a face's outline
// resource, and the family's own name. A face is the pair (family resource, QuickDraw style).
// Every function tolerates an absent or empty family and then gives its empty result.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/ux_string.h"
#include "resources/resource_file.h"

namespace typeprint {

// The family resource's name, decoded as Mac Japanese for a double-byte family whose outlines or
// bitmaps say so, else as Mac Roman. Empty for an absent or unnamed family.
UxString getResourceNameFromFOND(const ResourceFile& rf, Resource fond);

// Distinct styles of the present association entries, ascending.
std::vector<int16_t> getSortedStylesForFOND(ByteSpan fond);
// Distinct resource IDs of the present entries of this style (any point size), ascending.
std::vector<int16_t> getSortedNFNTsForFOND(ByteSpan fond, int16_t style);
bool styleExists(int16_t style, ByteSpan fond);
// Resource ID of entry `index` (from 0), read unsigned; -1 when the entry is not there.
int getResIDForFOND(ByteSpan fond, int index);
// False only when a present entry of this style has point size 0 (the outline is in the file).
bool shouldHavePrinterFile(ByteSpan fond, int16_t style);
// Distinct styles over all families of the file (families in ascending ID order), ascending.
std::vector<int16_t> getSortedStyles(const ResourceFile& rf);

// Number of distinct styles of the family.
short getCountOfUniqueStyles(ByteSpan fond);
// The i-th (from 0) distinct style, ascending; -1 when i is not below the count.
short getStyleFromStyleIndex(ByteSpan fond, int i);
// Resource ID of the first present entry, in table order, with this style; -1 if none or for a
// family under 54 bytes.
int16_t getFirstResourceIDForStyle(ByteSpan fond, short style);
// getSortedNFNTsForFOND; style -1 gives the IDs of every style.
std::vector<int16_t> getSortedResIDsForStyle(ByteSpan fond, short style);
// The face's first outline resource begins with 0x00010000, or with "true" outside families
// whose name marks them CID ("A-CID..." or "...CID-B").
bool has_ttc_true_Flag(const ResourceFile& rf, Resource fond, short style);
// The face's first outline resource begins with "OTTO".
bool has_OTTO_Flag_inResource(const ResourceFile& rf, Resource fond, short style);

}  // namespace typeprint
