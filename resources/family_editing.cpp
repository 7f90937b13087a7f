#include "resources/family_editing.h"

#include <algorithm>
#include <vector>

#include "foundation/be_writer.h"

namespace typeprint {
namespace {

// Family record fields edited here; offsets from the start of the `FOND`. The three table
// offsets count from the start of the family too, and 0 means the table is absent.
constexpr size_t kWidthTableField = 16;   // glyph-width table offset, signed 32
constexpr size_t kKernTableField = 20;    // kerning table offset, signed 32
constexpr size_t kStyleTableField = 24;   // style-mapping table offset, signed 32
constexpr size_t kEntryCountField = 52;   // number of association entries - 1, signed 16
constexpr size_t kFirstEntry = 54;        // association entries: point size, style, resource ID
constexpr size_t kEntrySize = 6;
constexpr size_t kEntryStyle = 2;
constexpr size_t kEntryResID = 4;

// Puts new bytes into a handle, resizing it.
void replaceHandleBytes(Handle h, const std::vector<uint8_t>& bytes) {
  SetHandleSize(h, bytes.size());
  std::copy(bytes.begin(), bytes.end(), *h);
}

// The number of association entries that lie wholly within the family: the count field's claim,
// cut to the data. Zero for a negative count.
size_t presentEntries(ByteSpan family, int16_t countField) {
  if (countField < 0 || family.size < kFirstEntry) return 0;
  return std::min(size_t(countField) + 1, (family.size - kFirstEntry) / kEntrySize);
}

// Lowers a table offset by `by`, flooring at 0, so an absent table stays absent.
uint32_t loweredOffset(ByteSpan family, size_t field, size_t by) {
  int64_t offset = BEReader(family).at(field, 4).s32();
  return uint32_t(std::max<int64_t>(0, offset - int64_t(by)));
}

// The association-entry removal shared by both purges. Entries are visited from the last to the
// first; `removes(style)` decides each one, and with deleteFonts its `NFNT`, `sfnt` and `FONT`
// resources go first. The tables after the entries move down by 6 bytes per removed entry, so
// their offsets are lowered by as much.
template <typename Removes>
void removeEntries(TypeprintResourceFile& rf, Handle fond, Removes removes, bool deleteFonts) {
  const ByteSpan family = HandleBytes(fond);
  if (family.size < kFirstEntry) return;
  const int16_t countField = BEReader(family).at(kEntryCountField, 2).s16();
  if (countField < 0) return;
  const size_t present = presentEntries(family, countField);
  std::vector<bool> removed(present, false);
  size_t k = 0;
  for (size_t i = present; i-- > 0;) {
    BEReader entry = BEReader(family).at(kFirstEntry + kEntrySize * i, kEntrySize);
    const uint16_t style = entry.at(kEntryStyle, 2).u16();
    const int16_t resID = entry.at(kEntryResID, 2).s16();
    if (!removes(style)) continue;
    if (deleteFonts) {
      purgeResource(rf, kTypeNFNT, resID);
      purgeResource(rf, kTypeSfnt, resID);
      purgeResource(rf, kTypeFONT, resID);
    }
    removed[i] = true;
    ++k;
  }
  if (k == 0) return;

  BEWriter out;
  out.bytes(family.sub(0, kFirstEntry));
  for (size_t i = 0; i < present; ++i)
    if (!removed[i]) out.bytes(family.sub(kFirstEntry + kEntrySize * i, kEntrySize));
  const size_t tail = kFirstEntry + kEntrySize * present;
  out.bytes(family.sub(tail, family.size - tail));
  const size_t shift = kEntrySize * k;
  out.patchU16(kEntryCountField, uint16_t(countField - int(k)));
  for (size_t field : {kWidthTableField, kKernTableField, kStyleTableField})
    out.patchU32(field, loweredOffset(family, field, shift));
  replaceHandleBytes(fond, out.data());
  ChangedResource(fond);
}

}  // namespace

bool purgeResource(TypeprintResourceFile& rf, uint32_t type, int16_t resID) {
  Handle h = rf.getResourceHandleForType(type, resID);
  if (!h) return false;
  if (!rf.removeResource(h)) return false;
  DisposeHandle(h);
  return true;
}

// Removing a resource moves the next one into its index, so the walk then steps the index and
// the count back to visit it. A resource that could not be removed is passed over, which keeps
// the walk finite.
bool purgeAllButOfType(TypeprintResourceFile& rf, const std::set<int16_t>& keep, uint32_t type) {
  std::set<int16_t> notYetKept = keep;
  bool removedAny = false;
  int count = rf.countResType(type);
  for (int index = 1; index <= count; ++index) {
    Handle h = rf.getResourceHandleViaGet1IndResource(type, index);
    int16_t id = 0;
    if (!rf.getResInfo(h, &id, nullptr, nullptr)) continue;
    if (notYetKept.erase(id) || !rf.removeResource(h)) {
      rf.releaseResource(h);
      continue;
    }
    DisposeHandle(h);
    removedAny = true;
    --index;
    --count;
  }
  return removedAny;
}

void purgeAllButFromFOND(TypeprintResourceFile& rf, short style, Handle fond) {
  removeEntries(rf, fond, [style](uint16_t entryStyle) { return entryStyle != uint16_t(style); }, false);
}

void purgeFromFOND(TypeprintResourceFile& rf, Handle fond, const std::set<short>& styles, bool deleteFONTs) {
  removeEntries(rf, fond, [&styles](uint16_t entryStyle) { return styles.count(short(entryStyle)) > 0; },
                deleteFONTs);
}

}  // namespace typeprint
