// Editing the families of a resource-fork font file opened read/write: removing resources,
// stripping a family (`FOND`) down to some of its styles, and making one style the family's
// plain style. Every edit happens on resources in memory, marked changed or removed; the file
// is written when it is updated or closed, and a read-only file refuses that write.
#pragma once

#include <cstdint>
#include <set>

#include "resources/resource_file.h"

namespace typeprint {

// Removes the resource of this type and ID from the map and frees it. False when there is none.
bool purgeResource(ResourceFile& rf, uint32_t type, int16_t resID);

// Removes every resource of `type` whose ID is not in `keep`. An ID in `keep` saves only the
// first resource carrying it: a second one with the same ID is removed. True when anything was
// removed.
bool purgeAllButOfType(ResourceFile& rf, const std::set<int16_t>& keep, uint32_t type);

// Removes from the family every association entry whose style is not `style`; a family without
// that style is left with no entries (count field -1).
void purgeAllButFromFOND(ResourceFile& rf, short style, Resource fond);

// Removes from the family the association entries whose style is in `styles` and, with
// deleteFONTs, the `NFNT`, `sfnt` and `FONT` resources that carry each removed entry's ID.
void purgeFromFOND(ResourceFile& rf, Resource fond, const std::set<short>& styles, bool deleteFONTs);

// Makes `style` the family's plain style: its entries become style 0, the family is renamed to
// the style's PostScript name (unless the style already is 0), the kerning subtables are
// restyled and the style-mapping name table is reduced to that one name.
void promoteFOND(ResourceFile& rf, Resource fond, short style);

}  // namespace typeprint
