#include "analysis/checksums.h"

#include <libdeflate.h>
#include <zlib.h>

#include <vector>

namespace typeprint {
namespace {

constexpr uint8_t kZeros[64] = {};

// The table a kerning checksum is taken from, in order of preference.
const char* const kKerningTables[] = {"kern", "GPOS", "glyf"};

}  // namespace

uint32_t CChecksum::icrc(const uint8_t* data, size_t length, uint32_t crc) {
  // libdeflate's CRC-32 gives zlib's values bit for bit, several times faster.
  if (!data || length == 0) return crc;
  return libdeflate_crc32(crc, data, length);
}

uint32_t CChecksum::combine(uint32_t crcA, uint32_t crcB, uint64_t lengthB) {
  return uint32_t(crc32_combine64(crcA, crcB, z_off64_t(lengthB)));
}

uint32_t CChecksum::zeros(uint32_t crc, size_t count) {
  while (count > 0) {
    size_t n = count < sizeof(kZeros) ? count : sizeof(kZeros);
    crc = icrc(kZeros, n, crc);
    count -= n;
  }
  return crc;
}

bool CChecksum::CalculateFileChecksum(const std::string& path, uint32_t* crc, uint32_t* dataForkCrc) {
  if (!crc) return true;
  std::optional<FileForks> forks = openForks(path);
  return CalculateFileChecksum(forks ? &*forks : nullptr, crc, dataForkCrc);
}

bool CChecksum::CalculateFileChecksum(const FileForks* forks, uint32_t* crc, uint32_t* dataForkCrc) {
  if (!crc) return true;
  const uint32_t before = *crc;
  *crc = 0;
  if (!forks) return *crc != before;  // neither fork could be opened
  *crc = icrc(forks->dataFork, *crc);
  if (dataForkCrc) *dataForkCrc = *crc;
  // A plain file has no resource fork to open; it counts only when its CRC changed.
  if (forks->resourceFork.empty()) return *crc != before;
  *crc = icrc(forks->resourceFork, *crc);
  return true;
}

uint32_t ChecksumLongAlignedData(uint32_t sum, ByteSpan data) {
  // The one loop over whole tables: indexed within the span's own size, so that the compiler can
  // turn it into vector loads instead of a bounds check per word.
  const size_t words = data.size / 4;
  const uint8_t* bytes = data.data;
  for (size_t i = 0; i < words; ++i) {
    const size_t at = 4 * i;
    sum += uint32_t(bytes[at]) << 24 | uint32_t(bytes[at + 1]) << 16 | uint32_t(bytes[at + 2]) << 8 | bytes[at + 3];
  }
  BEReader tail = BEReader(data).from(4 * words);
  uint32_t last = 0;
  for (int shift = 24; tail.remaining() > 0; shift -= 8) last |= uint32_t(tail.u8()) << shift;
  return sum + last;
}

bool GetTrueTypeKerningTableChecksum(const SfntBytes& font, uint32_t* checksum) {
  std::optional<TDirectoryEntry> entry;
  for (const char* table : kKerningTables)
    if ((entry = FindSpecifiedTable(font, table))) break;
  if (!entry || !ValidateDirectoryEntry(&*entry, font)) return false;
  if (!checksum) return true;
  *checksum = 0;
  if (entry->length % 4 != 0) {
    *checksum = entry->checkSum;
    return true;
  }
  // A table at offset 0 or one that reaches the last byte of the font counts as empty.
  if (int32_t(entry->offset) <= 0 || uint64_t(entry->offset) + entry->length >= font.size()) return true;
  if (font.knownWordSum(entry->offset, entry->length, *checksum)) return true;
  std::vector<uint8_t> scratch;
  *checksum = ChecksumLongAlignedData(0, font.read(entry->offset, entry->length, scratch));
  return true;
}

}  // namespace typeprint
