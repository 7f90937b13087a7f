#include "resources/family_editing.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/be_writer.h"
#include "resources/fond.h"
#include "resources/printer_files.h"

namespace typeprint {
namespace {

// Kerning table (at the family's kerning offset): number of subtables - 1 (s16), then per
// subtable its style (u16), its number of pairs n (s16) and n pairs of 4 bytes.
constexpr size_t kKernSubtableHeader = 4;
constexpr size_t kKernPairSize = 4;
// Offset of the style word within an association entry.
constexpr size_t kEntryStyleField = 2;
// Promotion's three steps each ask for a family at least this long.
constexpr size_t kPromoteEntriesMinSize = 54;
constexpr size_t kPromoteKerningMinSize = 52;
constexpr size_t kPromoteNamesMinSize = 53;

// A table offset lowered by `by`, flooring at 0, so that an absent table (offset 0) stays absent.
// The offsets are signed in the record.
uint32_t loweredOffset(ByteSpan family, size_t field, size_t by) {
  const int64_t offset = int32_t(fondTableOffset(family, field));
  return uint32_t(std::max<int64_t>(0, offset - int64_t(by)));
}

// The association-entry removal shared by both purges. Entries are visited from the last to the
// first, and only those within the data; `removes(style)` decides each one, and with deleteFonts
// the `NFNT`, `sfnt` and `FONT` resources carrying its ID go first. The tables after the entries
// move down by 6 bytes per removed entry, so their offsets are lowered by as much.
template <typename Removes>
void removeEntries(ResourceFile& rf, Resource fond, Removes removes, bool deleteFonts) {
  const ByteSpan family = dataOf(fond);
  if (family.size < kFondMinTableSize) return;
  const int16_t countField = BEReader(family).at(kFondEntryCountOffset, 2).s16();
  if (countField < 0) return;
  std::vector<FondEntry> kept;
  size_t removed = 0;
  for (size_t i = fondClaimedEntryCount(family); i-- > 0;) {
    FondEntry entry;
    if (!fondEntryAt(family, i, &entry)) continue;
    if (!removes(entry.style)) {
      kept.insert(kept.begin(), entry);
      continue;
    }
    if (deleteFonts) {
      purgeResource(rf, kTypeNFNT, entry.resID);
      purgeResource(rf, kTypeSfnt, entry.resID);
      purgeResource(rf, kTypeFONT, entry.resID);
    }
    ++removed;
  }
  if (removed == 0) return;

  // Everything up to the entries, the kept entries, then everything after the present entries.
  const size_t present = kept.size() + removed;
  const size_t tail = kFondFirstEntryOffset + kFondEntrySize * present;
  BEWriter out;
  out.bytes(family.sub(0, kFondFirstEntryOffset));
  for (const FondEntry& entry : kept)
    out.bytes(family.sub(kFondFirstEntryOffset + kFondEntrySize * entry.index, kFondEntrySize));
  out.bytes(family.sub(tail, family.size - tail));
  const size_t shift = kFondEntrySize * removed;
  out.patchU16(kFondEntryCountOffset, uint16_t(countField - int(removed)));
  for (size_t field : {kFondWidthTableOffsetField, kFondKerningTableOffsetField, kFondStyleTableOffsetField})
    out.patchU32(field, loweredOffset(family, field, shift));
  rf.replaceData(fond, out.take());
}

// Every association entry of `style` becomes style 0, provided the whole table lies within the
// family.
void restyleEntries(ByteSpan family, uint16_t style, BEWriter& out) {
  if (family.size < kPromoteEntriesMinSize) return;
  const size_t claimed = fondClaimedEntryCount(family);
  if (claimed > (family.size - kFondFirstEntryOffset) / kFondEntrySize) return;
  FondEntry entry;
  for (size_t i = 0; fondEntryAt(family, i, &entry); ++i)
    if (entry.style == style) out.patchU16(kFondFirstEntryOffset + kFondEntrySize * i + kEntryStyleField, 0);
}

// Each kerning subtable that lies within the family gets style 0 when it is the promoted
// style's and 1 otherwise; giving 1 to every other subtable is how families are promoted, not a
// slip. The walk stops at the first subtable that does not fit.
void restyleKerning(ByteSpan family, uint16_t style, BEWriter& out) {
  if (family.size < kPromoteKerningMinSize) return;
  const uint32_t kern = fondTableOffset(family, kFondKerningTableOffsetField);
  if (kern == 0 || kern > family.size || family.size - kern < 2) return;
  const int16_t countMinusOne = BEReader(family).at(kern, 2).s16();
  size_t at = size_t(kern) + 2;
  for (int i = 0; i <= countMinusOne; ++i) {
    BEReader header = BEReader(family).at(at, kKernSubtableHeader);
    const uint16_t subtableStyle = header.u16();
    const int16_t pairs = header.s16();
    if (!header.ok() || pairs < 0) return;
    const size_t length = kKernSubtableHeader + kKernPairSize * size_t(pairs);
    if (length > family.size - at) return;
    out.patchU16(at, subtableStyle == style ? 0 : 1);
    at += length;
  }
}

// Erases the style-mapping name table within the family, clears the index table and leaves one
// string, the promoted face's PostScript name, when it fits.
void reduceNameTable(ByteSpan family, const std::string& postScriptName, BEWriter& out) {
  if (family.size < kPromoteNamesMinSize) return;
  const uint32_t styleTable = fondStyleTableOffset(family);
  if (styleTable == 0 || styleTable > family.size || family.size - styleTable < kStyleTableStringsOffset) return;
  const size_t strings = size_t(styleTable) + kStyleTableStringsOffset;
  const int16_t stringCount = BEReader(family).at(size_t(styleTable) + kStyleTableStringCountOffset, 2).s16();
  // The strings are walked no further than the end of the family, however many the count claims.
  size_t at = strings;
  for (int i = 0; i < stringCount && at < family.size; ++i) {
    const size_t end = std::min(at + 1 + BEReader(family).at(at, 1).u8(), family.size);
    for (; at < end; ++at) out.patchU8(at, 0);
  }
  for (size_t i = 0; i < kStyleTableIndexCount; ++i) out.patchU8(styleTable + kStyleTableIndexOffset + i, 0);
  out.patchU16(styleTable + kStyleTableStringCountOffset, 1);
  if (postScriptName.size() >= family.size - strings) return;
  out.patchU8(strings, uint8_t(postScriptName.size()));
  for (size_t i = 0; i < postScriptName.size(); ++i) out.patchU8(strings + 1 + i, uint8_t(postScriptName[i]));
}

}  // namespace

bool purgeResource(ResourceFile& rf, uint32_t type, int16_t resID) { return rf.remove(rf.find(type, resID)); }

// Removing a resource moves the next one into its index, so the walk then steps the index and
// the count back to visit it. A resource that could not be removed is passed over, which keeps
// the walk finite.
bool purgeAllButOfType(ResourceFile& rf, const std::set<int16_t>& keep, uint32_t type) {
  std::set<int16_t> notYetKept = keep;
  bool removedAny = false;
  int count = rf.count(type);
  for (int index = 1; index <= count; ++index) {
    Resource resource = rf.at(type, index);
    if (!resource || notYetKept.erase(resource->id) || !rf.remove(resource)) continue;
    removedAny = true;
    --index;
    --count;
  }
  return removedAny;
}

void purgeAllButFromFOND(ResourceFile& rf, short style, Resource fond) {
  removeEntries(rf, fond, [style](uint16_t entryStyle) { return entryStyle != uint16_t(style); }, false);
}

void purgeFromFOND(ResourceFile& rf, Resource fond, const std::set<short>& styles, bool deleteFONTs) {
  removeEntries(rf, fond, [&styles](uint16_t entryStyle) { return styles.count(short(entryStyle)) > 0; },
                deleteFONTs);
}

void promoteFOND(ResourceFile& rf, Resource fond, short style) {
  const ByteSpan family = dataOf(fond);
  if (family.empty()) return;
  // Always printable ASCII: the style-mapping table's name is cut to those characters.
  const std::string postScriptName = getPostScriptNameForFOND(family, style);
  // The name comes from a Pascal string, so it never exceeds a resource name's 255 bytes.
  if (style != 0 && !postScriptName.empty()) rf.setInfo(fond, fond->id, &postScriptName);

  BEWriter out(std::vector<uint8_t>(family.begin(), family.end()));
  restyleEntries(family, uint16_t(style), out);
  restyleKerning(family, uint16_t(style), out);
  reduceNameTable(family, postScriptName, out);
  rf.replaceData(fond, out.take());
}

}  // namespace typeprint
