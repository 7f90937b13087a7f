// The checksums of a font: the continued CRC-32 behind every CRC of the library, the sfnt word
// sum, the kerning checksum of an sfnt font, and the CRC of a whole file over both forks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "analysis/sfnt_directory.h"
#include "base/be_reader.h"
#include "platform/linux/fork_locator.h"

namespace typeprint {

class CChecksum {
 public:
  // The CRC-32 of zlib (reflected polynomial 0xEDB88320) of the bytes, continued from `crc`:
  // a chain of calls gives the CRC of the bytes put together. A crc of 0 starts afresh.
  static uint32_t icrc(const uint8_t* data, size_t length, uint32_t crc);
  static uint32_t icrc(ByteSpan bytes, uint32_t crc) { return icrc(bytes.data, bytes.size, crc); }

  // The CRC of A followed by B, from the CRC of A, the CRC of B (from 0) and B's length.
  static uint32_t combine(uint32_t crcA, uint32_t crcB, uint64_t lengthB);
  // `crc` continued over `count` zero bytes.
  static uint32_t zeros(uint32_t crc, size_t count);

  // CRC of the file's data fork followed by its resource fork, and optionally of the data fork
  // alone. *crc is reset first. Without a resource fork the result is true only when the CRC
  // differs from the value *crc held on entry. A null crc does nothing and gives true.
  static bool CalculateFileChecksum(const std::string& path, uint32_t* crc, uint32_t* dataForkCrc);
  // The same over forks already mapped: the bytes are read where they lie, never again.
  static bool CalculateFileChecksum(const FileForks* forks, uint32_t* crc, uint32_t* dataForkCrc);
};

// `sum` plus the (length + 3) / 4 big-endian words of the data, wrapping modulo 2^32. A last
// partial word counts as if padded with zeros; the caller supplies padded data in any case.
uint32_t ChecksumLongAlignedData(uint32_t sum, ByteSpan data);

// The word sum and the CRC-32 (from 0) of the same bytes in one walk: each slice is summed and
// then CRC'd while it is still in the cache.
void WordSumAndCrc(ByteSpan data, uint32_t* sum, uint32_t* crc);

// The kerning checksum of an sfnt font: the word sum of its "kern" table, else "GPOS", else
// "glyf". False (checksum untouched) when none is found or its entry is damaged.
bool GetTrueTypeKerningTableChecksum(const SfntBytes& font, uint32_t* checksum);

}  // namespace typeprint
