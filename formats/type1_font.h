// Plain Type 1 fonts: the binary form (PFB segments), the text form (PFA, with the encrypted
// part in hexadecimal or as raw bytes), and the program inside a Mac printer file's POST
// resources. One face from the font's own header, completed from its metrics companion.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/be_reader.h"
#include "formats/format_face.h"
#include "platform/linux/fork_locator.h"

namespace typeprint::formats {

// A Type 1 program taken apart: the clear-text part and the eexec-encrypted part as bytes.
struct TType1Program {
  std::string clearText;
  std::vector<uint8_t> encrypted;
};

// The bytes begin a PFB (a 0x80 0x01 segment header) or a PFA (`%!PS-AdobeFont` or `%!FontType1`).
bool looksLikeType1(ByteSpan bytes);

// Type 1 decryption (r = 55665 for the eexec part, 4330 for charstrings): the plain bytes after
// the first `skip`, which are the cipher's random lead-in.
constexpr uint16_t kType1EexecKey = 55665;
std::vector<uint8_t> decryptType1(ByteSpan cipher, uint16_t key, size_t skip);

// Reads a PFB or PFA file; nothing when it is neither or its segments are damaged.
std::optional<TType1Program> readType1Program(ByteSpan bytes);

// Reads the program from a printer file's POST resources (501 up, in order), from the file at
// `path` or from the forks given, already open.
std::optional<TType1Program> readType1ProgramFromPrinterFile(const std::string& path,
                                                             const FileForks* forks = nullptr);

// A checksum of the program that no container changes: the CRC-32 of the clear text up to its
// `eexec` (line ends made LF) followed by the decrypted private part up to its `closefile`,
// without the four random bytes it starts with. The same program as PFB, PFA (hex or binary)
// or in POST resources, even encrypted again with other random bytes, gives the same value.
uint32_t type1ContentChecksum(const TType1Program& program);

// The face of a Type 1 program read from `path`: names, version, foundry and style from its
// header; what the header lacks from NAME.afm beside it (or NAME.pfm).
TFormatFace type1Face(const TType1Program& program, const std::string& path);

}  // namespace typeprint::formats
