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
void walkKerningEntries(Handle fond, short style, Visit visit) {
  ByteSpan bytes = HandleBytes(fond);
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

// The CRC of resource `h` continued from `crc`. A read-only file keeps each resource's own CRC,
// so a resource that many faces share (one outline for thousands of families) is read once and
// each face's CRC is combined with it.
uint32_t continueCrc(void* rf, Handle h, uint32_t crc) {
  TypeprintResourceFile& file = *static_cast<TypeprintResourceFile*>(rf);
  const ByteSpan bytes = HandleBytes(h);
  if (!file.isReadOnly()) return CChecksum::icrc(bytes, crc);
  auto [cached, fresh] = file.resourceCrcCache().try_emplace(h, 0);
  if (fresh) cached->second = CChecksum::icrc(bytes, 0);
  return bytes.empty() ? crc : CChecksum::combine(crc, cached->second, bytes.size);
}

uint32_t byteSum(uint32_t sum, ByteSpan bytes) {
  for (uint8_t b : bytes) sum += b;
  return sum;
}

}  // namespace

uint32_t GetBastionChecksum(Handle fond, short style) {
  uint32_t sum = 0;
  walkKerningEntries(fond, style, [&](ByteSpan header, ByteSpan pairs) { sum = byteSum(byteSum(sum, header), pairs); });
  return sum;
}

uint32_t ChecksumPrinterFile(void* rf, Handle fond, short style, uint32_t crc) {
  std::optional<UxString> path = CreatePrinterPath(rf, fond, style);
  if (!path) return crc;
  auto printer = TypeprintResourceFile::initWithFile(*path, true);
  if (!printer) {
    uint32_t fileCrc = crc;
    return CChecksum::CalculateFileChecksum(*path, &fileCrc, nullptr) ? fileCrc : crc;
  }
  for (int id = kFirstPOSTResourceID; id <= INT16_MAX; ++id) {
    Handle h = printer->getResourceHandleForType(kTypePOST, int16_t(id));
    if (GetHandleSize(h) == 0) break;
    crc = CChecksum::icrc(HandleBytes(h), crc);
    printer->releaseResource(h);
  }
  return crc;
}

uint32_t ChecksumNFNTsfntFONT(void* rf, Handle fond, short style, uint32_t crc) {
  if (GetHandleSize(fond) == 0) return crc;
  const std::vector<int16_t> ids = getSortedResIDsForStyle(rf, fond, style);
  const auto continueOver = [&](uint32_t type, int16_t id) {
    Handle h = getHandleOfTypeAndResID(rf, type, id);
    if (!h) return;
    crc = continueCrc(rf, h, crc);
    ReleaseResource(h);
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

uint32_t GetLanternChecksum(const UxString& path, void* rf, Handle fond, short style, bool useDataFork,
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
