#include "resources/resource_checksums.h"

#include "analysis/checksums.h"
#include "resources/families.h"
#include "resources/fond.h"
#include "resources/printer_files.h"
#include "resources/resource_file.h"
#include "resources/resource_metadata.h"

namespace typeprint {
namespace {

constexpr size_t kKernEntryHeaderSize = 4;
constexpr size_t kKernPairSize = 4;

// Visits the kerning-table entries of one style: their 4-byte header, then their pairs when the
// pairs lie within the family. Layout at the kerning-table offset: entries - 1 (s16), then per
// entry: style (u16), pair count n (s16), 4n bytes of pairs.
//
// An entry whose header does not fit leaves the position where it is, so the remaining rounds
// test the same place again; the walk is bounded by the entry count all the same. A negative
// pair count steps back; a step before the start of the family ends the walk.
template <typename Visit>
void walkKerningEntries(ByteSpan bytes, short style, Visit visit) {
  if (bytes.size < kFondHeaderSize) return;
  const uint64_t offset = fondTableOffset(bytes, kFondKerningTableOffsetField);
  if (offset == 0 || offset > bytes.size || bytes.size - offset < 2) return;
  const int32_t entries = int32_t(BEReader(bytes).at(size_t(offset), 2).s16()) + 1;
  int64_t pos = int64_t(offset) + 2;
  const int64_t end = int64_t(bytes.size);
  for (int32_t round = 0; round < entries; ++round) {
    if (pos < 0 || pos > end || end - pos < int64_t(kKernEntryHeaderSize)) continue;
    ByteSpan header = bytes.sub(size_t(pos), kKernEntryHeaderSize);
    BEReader r(header);
    const bool matches = r.u16() == uint16_t(style);
    const int64_t pairBytes = int64_t(kKernPairSize) * r.s16();
    const int64_t pairsAt = pos + int64_t(kKernEntryHeaderSize);
    pos = pairsAt + pairBytes;
    if (matches) {
      ByteSpan pairs;
      if (pos <= end && pairBytes > 0) pairs = bytes.sub(size_t(pairsAt), size_t(pairBytes));
      visit(header, pairs);
    }
    if (pos < 0) return;
  }
}

uint32_t byteSum(uint32_t sum, ByteSpan bytes) {
  for (uint8_t b : bytes) sum += b;
  return sum;
}

}  // namespace

uint32_t GetBastionChecksum(ByteSpan fond, short style) {
  uint32_t sum = 0;
  walkKerningEntries(fond, style, [&](ByteSpan header, ByteSpan pairs) { sum = byteSum(byteSum(sum, header), pairs); });
  return sum;
}

uint32_t ChecksumPrinterFile(ResourceFile* rf, ByteSpan fond, short style, uint32_t crc) {
  std::optional<UxString> path = CreatePrinterPath(rf, fond, style);
  if (!path) return crc;
  auto printer = ResourceFile::open(*path, true);
  if (!printer) {
    uint32_t fileCrc = crc;
    return CChecksum::CalculateFileChecksum(*path, &fileCrc, nullptr) ? fileCrc : crc;
  }
  for (int id = kFirstPOSTResourceID; id <= INT16_MAX; ++id) {
    ByteSpan post = dataOf(printer->find(kTypePOST, int16_t(id)));
    if (post.empty()) break;
    crc = CChecksum::icrc(post, crc);
  }
  return crc;
}

uint32_t ChecksumNFNTsfntFONT(const ResourceFile* rf, ByteSpan fond, short style, uint32_t crc) {
  if (!rf || fond.empty()) return crc;
  const std::vector<int16_t> ids = getSortedResIDsForStyle(fond, style);
  const auto continueOver = [&](uint32_t type, int16_t id) {
    if (Resource r = rf->find(type, id)) crc = CChecksum::icrc(r->data(), crc);
  };
  for (int16_t id : ids) continueOver(kTypeSfnt, id);
  // Tested for 0, not for "nothing added": a CRC that arrives non-zero skips the bitmaps.
  if (crc != 0) return crc;
  for (int16_t id : ids) {
    continueOver(kTypeNFNT, id);
    continueOver(kTypeFONT, id);
  }
  return crc;
}

uint32_t GetLanternChecksum(const UxString& path, ResourceFile* rf, ByteSpan fond, short style, bool useDataFork,
                            uint32_t& chained, const FileForks* openedForks) {
  chained = 0;
  uint32_t kerning = 0;
  walkKerningEntries(fond, style, [&](ByteSpan, ByteSpan pairs) { kerning = CChecksum::icrc(pairs, kerning); });
  uint32_t crc = ChecksumPrinterFile(rf, fond, style, kerning);
  chained = crc;
  if (crc == kerning) {
    crc = ChecksumNFNTsfntFONT(rf, fond, style, crc);
    chained = crc;
  }
  if (crc != kerning && !useDataFork) return crc;
  uint32_t fileCrc = kerning, dataForkCrc = 0;
  uint32_t* dataForkOut = useDataFork ? &dataForkCrc : nullptr;
  const bool summed = openedForks ? CChecksum::CalculateFileChecksum(openedForks, &fileCrc, dataForkOut)
                                  : CChecksum::CalculateFileChecksum(path, &fileCrc, dataForkOut);
  if (!summed) return crc;
  chained = fileCrc;
  return useDataFork ? dataForkCrc : fileCrc;
}

}  // namespace typeprint
