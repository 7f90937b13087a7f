#include "resources/fond.h"

#include <algorithm>

#include "base/diagnostics.h"

namespace typeprint {
namespace {

constexpr unsigned char kFirstPrintable = 32;
constexpr unsigned char kLastPrintable = 126;
constexpr const char* kTopic = "family";

// Bytes of the header field at `offset`, or a failed reader when the family is too short.
BEReader headerField(ByteSpan fond, size_t offset, size_t width) {
  if (fond.size < kFondHeaderSize) return BEReader::failed();
  return BEReader(fond).at(offset, width);
}

// The name-table strings of the style-mapping table at `styleOffset`, to the end of the family.
ByteSpan nameTable(ByteSpan fond, uint64_t styleOffset) {
  uint64_t start = styleOffset + kStyleTableStringsOffset;
  if (start > fond.size) return {};
  return fond.sub(size_t(start), fond.size - size_t(start));
}

}  // namespace

int16_t fondFamilyID(ByteSpan fond) { return headerField(fond, kFondFamilyIDOffset, 2).s16(); }

uint32_t fondTableOffset(ByteSpan fond, size_t field) { return headerField(fond, field, 4).u32(); }

uint32_t fondStyleTableOffset(ByteSpan fond) { return fondTableOffset(fond, kFondStyleTableOffsetField); }

size_t fondClaimedEntryCount(ByteSpan fond) {
  if (fond.size < kFondMinTableSize) return 0;
  int16_t countMinusOne = BEReader(fond).at(kFondEntryCountOffset, 2).s16();
  return countMinusOne < 0 ? 0 : size_t(countMinusOne) + 1;
}

bool fondEntryPresent(ByteSpan fond, size_t i) {
  // 60 + 6i <= size, by subtraction.
  if (fond.size < kFondFirstEntryOffset + kFondEntrySize) return false;
  return i <= (fond.size - kFondFirstEntryOffset - kFondEntrySize) / kFondEntrySize;
}

bool fondEntryAt(ByteSpan fond, size_t i, FondEntry* entry) {
  if (i >= fondClaimedEntryCount(fond) || !fondEntryPresent(fond, i)) return false;
  BEReader r = BEReader(fond).at(kFondFirstEntryOffset + kFondEntrySize * i, kFondEntrySize);
  entry->index = i;
  entry->pointSize = r.s16();
  entry->style = r.u16();
  entry->resID = r.s16();
  return r.ok();
}

std::vector<FondEntry> fondEntries(ByteSpan fond) {
  std::vector<FondEntry> entries;
  FondEntry entry;
  // Entries are present from the first on, so the first missing one ends the table.
  for (size_t i = 0; fondEntryAt(fond, i, &entry); ++i) entries.push_back(entry);
  if (fond.size && fond.size < kFondMinTableSize)
    TP_REFUSE(kTopic, 0, "a family of %zu bytes is too short for its entry table", fond.size);
  else if (entries.size() < fondClaimedEntryCount(fond))
    TP_REFUSE(kTopic, kFondFirstEntryOffset + kFondEntrySize * entries.size(),
              "the family lists %zu entries, its %zu bytes hold %zu", fondClaimedEntryCount(fond), fond.size,
              entries.size());
  return entries;
}

bool fondIsDoubleByte(ByteSpan fond) {
  if (fond.size < kFondHeaderSize) return false;
  int16_t id = fondFamilyID(fond);
  return headerField(fond, kFondIntl1Offset, 2).s16() != 0 ||
         (id >= kFirstDoubleByteFamilyID && id <= kLastDoubleByteFamilyID);
}

int GetStyleIndex(uint16_t style) {
  int index = 0;
  if (style & kStyleBold) index += 1;
  if (style & kStyleItalic) index += 2;
  if (style & kStyleOutline) index += 4;
  if (style & kStyleShadow) index += 8;
  if (style & kStyleCondense) index += 16;
  else if (style & kStyleExtend) index += 32;
  return index;
}

void CopyPascalString(const unsigned char* src, unsigned char* dst, size_t capacity) {
  if (capacity == 0) return;
  if (!src) {
    dst[0] = 0;
    return;
  }
  size_t n = std::min<size_t>(size_t(src[0]) + 1, capacity);
  if (src != dst) std::copy(src + 1, src + n, dst + 1);
  dst[0] = static_cast<unsigned char>(n - 1);
}

void AppendPascalString(unsigned char* dst, const unsigned char* src, size_t capacity) {
  if (capacity == 0 || !src) return;
  size_t length = dst[0];
  if (length + 1 >= capacity) return;
  size_t n = std::min<size_t>(src[0], capacity - 1 - length);
  std::copy(src + 1, src + 1 + n, dst + 1 + length);
  dst[0] = static_cast<unsigned char>(length + n);
}

void CopyPascalStringAsciiLimit(const unsigned char* src, unsigned char* dst, size_t capacity) {
  CopyPascalString(src, dst, capacity);
  if (capacity == 0) return;
  for (size_t i = 1; i <= dst[0]; ++i)
    if (dst[i] < kFirstPrintable || dst[i] > kLastPrintable) dst[i] = '?';
}

void GetIndStyleName(ByteSpan table, int n, unsigned char* dst, size_t capacity) {
  if (capacity == 0) return;
  dst[0] = 0;
  if (n < 1) return;
  BEReader r(table);
  for (int skipped = 1; skipped < n && r.ok(); ++skipped) r.skip(r.u8());
  uint8_t length = r.u8();
  if (!r.ok()) return;
  ByteSpan chars = r.span(std::min<size_t>(length, r.remaining()));
  size_t copied = std::min<size_t>(chars.size, capacity - 1);
  std::copy(chars.begin(), chars.begin() + copied, dst + 1);
  dst[0] = static_cast<unsigned char>(copied);
}

void GetPrinterFontNameFromResource(ByteSpan bytes, uint16_t style, unsigned char* dst, size_t capacity) {
  if (capacity == 0) return;
  dst[0] = 0;
  if (bytes.size < kFondHeaderSize) return;
  uint64_t styleOffset = fondStyleTableOffset(bytes);
  // An offset of 0 means the family has no style-mapping table.
  if (styleOffset == 0) return;
  if (styleOffset + kStyleTableStringsOffset > bytes.size) {
    TP_REFUSE(kTopic, kFondStyleTableOffsetField, "style-mapping table offset 0x%llX beyond the family's 0x%zX bytes",
              static_cast<unsigned long long>(styleOffset), bytes.size);
    return;
  }
  BEReader table = BEReader(bytes).from(size_t(styleOffset));
  ByteSpan names = nameTable(bytes, styleOffset);
  // Only the base name is bounds-tested as a whole; its length byte is read signed.
  int8_t baseLength = BEReader(names).s8();
  if (int64_t(styleOffset) + int64_t(kStyleTableStringsOffset) + baseLength > int64_t(bytes.size)) {
    TP_REFUSE(kTopic, styleOffset + kStyleTableStringsOffset, "printer font base name of %d bytes runs past the family",
              int(baseLength));
    return;
  }

  GetIndStyleName(names, 1, dst, capacity);
  int8_t k = table.at(kStyleTableIndexOffset + size_t(GetStyleIndex(style)), 1).s8();
  int16_t stringCount = table.at(kStyleTableStringCountOffset, 2).s16();
  if (k >= 2 && k <= stringCount) {
    unsigned char list[kStr255Capacity];
    unsigned char suffix[kStr255Capacity];
    GetIndStyleName(names, k, list, sizeof list);
    for (size_t i = 1; i <= list[0]; ++i) {
      GetIndStyleName(names, list[i], suffix, sizeof suffix);
      AppendPascalString(dst, suffix, capacity);
    }
  }
  CopyPascalStringAsciiLimit(dst, dst, capacity);
}

}  // namespace typeprint
