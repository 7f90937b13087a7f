// The checksums of a face of a resource-fork font file: the kerning checksum of one style of a
// family resource, and the chained CRC-32 over the family's kerning pairs, the face's printer
// file and its outline or bitmap resources (with the whole file as the fallback).
#pragma once

#include <cstdint>

#include "foundation/ux_string.h"
#include "platform/linux/fork_locator.h"
#include "resources/resource_file.h"

namespace typeprint {

// Byte sum of the kerning-table entries of this style (their 4-byte headers and their pairs);
// 0 when the family has no kerning table or no entry for the style.
uint32_t GetBastionChecksum(ByteSpan fond, short style);

// `crc` continued over the POST resources (501 up) of the face's printer file; a printer file
// without a resource map gives the CRC of its whole file instead. `crc` unchanged when the face
// has no printer file or the file is not open.
uint32_t ChecksumPrinterFile(ResourceFile* rf, ByteSpan fond, short style, uint32_t crc);

// `crc` continued over the `sfnt` resources of the face's resource IDs; only when the result is
// still 0, over their `NFNT` and `FONT` resources. `crc` unchanged when the file is not open.
uint32_t ChecksumNFNTsfntFONT(const ResourceFile* rf, ByteSpan fond, short style, uint32_t crc);

// The face checksum of a face of the resource-fork font file at `path`; `chained` receives the
// legacy checksum. With useDataFork (cross-platform faces) the result is the CRC of the file's
// data fork whenever the whole-file CRC can be taken.
// `openedForks`, when given, are the forks of `path` already mapped, so the file is not read again.
uint32_t GetLanternChecksum(const UxString& path, ResourceFile* rf, ByteSpan fond, short style, bool useDataFork,
                            uint32_t& chained, const FileForks* openedForks = nullptr);

}  // namespace typeprint
