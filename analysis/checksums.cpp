#include "analysis/checksums.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <vector>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace typeprint {
namespace {

constexpr uint8_t kZeros[64] = {};

uint32_t bigEndianWord(const uint8_t* at) {
  uint32_t word;
  std::memcpy(&word, at, sizeof word);
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  word = __builtin_bswap32(word);
#endif
  return word;
}

// The table a kerning checksum is taken from, in order of preference.
const char* const kKerningTables[] = {"kern", "GPOS", "glyf"};

// The sum of `words` big-endian 32-bit words, modulo 2^32. Addition modulo 2^32 is associative,
// so the words may be added in any grouping: four running sums keep four additions in flight.
uint32_t wordSumPortable(const uint8_t* bytes, size_t words) {
  uint32_t sums[4] = {};
  size_t i = 0;
  for (; i + 4 <= words; i += 4)
    for (size_t lane = 0; lane < 4; ++lane) sums[lane] += bigEndianWord(bytes + 4 * (i + lane));
  for (; i < words; ++i) sums[0] += bigEndianWord(bytes + 4 * i);
  return sums[0] + sums[1] + sums[2] + sums[3];
}

#if defined(__x86_64__)
// The same sum eight words at a time: a byte shuffle turns each word big-endian side up, and two
// vector sums keep two loads in flight.
__attribute__((target("avx2"))) uint32_t wordSumAvx2(const uint8_t* bytes, size_t words) {
  const __m256i swap = _mm256_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12,  //
                                        3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12);
  __m256i a = _mm256_setzero_si256(), b = _mm256_setzero_si256();
  size_t i = 0;
  for (; i + 16 <= words; i += 16) {
    const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 4 * i));
    const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 4 * i + 32));
    a = _mm256_add_epi32(a, _mm256_shuffle_epi8(x, swap));
    b = _mm256_add_epi32(b, _mm256_shuffle_epi8(y, swap));
  }
  alignas(32) uint32_t lanes[8];
  _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), _mm256_add_epi32(a, b));
  uint32_t sum = 0;
  for (uint32_t lane : lanes) sum += lane;
  return sum + wordSumPortable(bytes + 4 * i, words - i);
}
#endif

using WordSumFunction = uint32_t (*)(const uint8_t*, size_t);

// The fastest sum this processor runs, chosen once.
WordSumFunction wordSum() {
#if defined(__x86_64__)
  static const WordSumFunction chosen = __builtin_cpu_supports("avx2") ? wordSumAvx2 : wordSumPortable;
  return chosen;
#else
  return wordSumPortable;
#endif
}

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
  if (data.empty()) return sum;
  const size_t words = data.size / 4;
  sum += wordSum()(data.data, words);
  // A last partial word counts as if padded with zeros.
  uint32_t last = 0;
  for (size_t at = 4 * words, shift = 24; at < data.size; ++at, shift -= 8) last |= uint32_t(data.data[at]) << shift;
  return sum + last;
}

void WordSumAndCrc(ByteSpan data, uint32_t* sum, uint32_t* crc) {
  constexpr size_t kSlice = 16 * 1024;  // a multiple of 4: only the last slice can end in a partial word
  *sum = 0;
  *crc = 0;
  for (size_t at = 0; at < data.size; at += kSlice) {
    const ByteSpan slice = data.sub(at, std::min(kSlice, data.size - at));
    *sum = ChecksumLongAlignedData(*sum, slice);
    *crc = CChecksum::icrc(slice, *crc);
  }
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
