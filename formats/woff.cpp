#include "formats/woff.h"

#include <zlib.h>

#include <algorithm>

#include "analysis/sfnt_directory.h"
#include "base/be_writer.h"

namespace typeprint::formats {
namespace {

constexpr size_t kWoffHeaderSize = 44;
constexpr size_t kWoffEntrySize = 20;

// One 20-byte directory entry: tag, offset (from the start of the WOFF file), compLength,
// origLength, origChecksum.
struct TWoffTable {
  uint32_t tag, offset, compLength, origLength, origChecksum;
};

uint64_t padded(uint64_t length) { return (length + 3) & ~uint64_t(3); }

// The binary-search fields of an sfnt header for `numTables` entries.
void writeSfntHeader(BEWriter& w, uint32_t flavor, uint16_t numTables) {
  uint16_t power = 1, selector = 0;
  while (uint32_t(power) * 2 <= numTables) {
    power = uint16_t(power * 2);
    ++selector;
  }
  const uint16_t searchRange = uint16_t(power * 16);
  w.u32(flavor);
  w.u16(numTables);
  w.u16(searchRange);
  w.u16(selector);
  w.u16(uint16_t(numTables * 16 - searchRange));
}

// Inflates exactly `outSize` bytes from a zlib stream.
bool inflateTable(ByteSpan compressed, uint8_t* out, size_t outSize) {
  uLongf produced = uLongf(outSize);
  if (uncompress(out, &produced, compressed.data, uLong(compressed.size)) != Z_OK) return false;
  return produced == outSize;
}

}  // namespace

EDecodeStatus decodeWoff(ByteSpan woff, std::vector<uint8_t>& sfnt) {
  sfnt.clear();
  // Header: signature, flavor, length, numTables, reserved, totalSfntSize, then versions and the
  // metadata and private blocks, which the sfnt does not carry.
  BEReader header(woff);
  if (header.u32() != kWoffSignature) return EDecodeStatus::kNotThisFormat;
  const uint32_t flavor = header.u32();
  const uint32_t length = header.u32();
  const uint16_t numTables = header.u16();
  const uint16_t reserved = header.u16();
  const uint32_t totalSfntSize = header.u32();
  if (!header.ok() || woff.size < kWoffHeaderSize || length != woff.size || reserved != 0 || numTables == 0)
    return EDecodeStatus::kDamaged;
  BEReader directory = BEReader(woff).from(kWoffHeaderSize);
  if (numTables > directory.remaining() / kWoffEntrySize) return EDecodeStatus::kDamaged;

  std::vector<TWoffTable> tables(numTables);
  uint64_t sfntSize = kSfntHeaderSize + uint64_t(kDirectoryEntrySize) * numTables;
  for (TWoffTable& t : tables) {
    t = {directory.u32(), directory.u32(), directory.u32(), directory.u32(), directory.u32()};
    if (t.compLength > t.origLength || t.offset > woff.size || t.compLength > woff.size - t.offset)
      return EDecodeStatus::kDamaged;
    sfntSize += padded(t.origLength);
  }
  if (sfntSize > decodedSizeLimit(woff.size)) return EDecodeStatus::kTooLarge;
  if (sfntSize != totalSfntSize) return EDecodeStatus::kDamaged;

  std::vector<size_t> order(numTables);
  for (size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return tables[a].offset < tables[b].offset; });

  std::vector<uint32_t> newOffsets(numTables);
  uint64_t at = kSfntHeaderSize + uint64_t(kDirectoryEntrySize) * numTables;
  for (size_t i : order) {
    newOffsets[i] = uint32_t(at);
    at += padded(tables[i].origLength);
  }
  BEWriter w;
  writeSfntHeader(w, flavor, numTables);
  for (size_t i = 0; i < tables.size(); ++i) {
    w.u32(tables[i].tag);
    w.u32(tables[i].origChecksum);
    w.u32(newOffsets[i]);
    w.u32(tables[i].origLength);
  }
  std::vector<uint8_t> out = w.take();
  out.resize(size_t(sfntSize), 0);
  for (size_t i : order) {
    const TWoffTable& t = tables[i];
    const ByteSpan stored = woff.sub(t.offset, t.compLength);
    uint8_t* target = out.data() + newOffsets[i];
    if (t.compLength < t.origLength) {
      if (!inflateTable(stored, target, t.origLength)) return EDecodeStatus::kDamaged;
    } else {
      std::copy(stored.begin(), stored.end(), target);
    }
  }
  sfnt = std::move(out);
  return EDecodeStatus::kDecoded;
}

}  // namespace typeprint::formats
