// Conversions between byte encodings and UTF-8, and Unicode case folding, through ICU.
// The only place in the library that talks to ICU.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/be_reader.h"

namespace typeprint {

// Text encodings the library decodes. The values are the classic Mac encoding numbers, so that
// codes read from font files (a FOND's script, a name record's encoding) map directly.
enum class TextEncoding : uint32_t {
  MacRoman = 0,
  MacJapanese = 1,
  ASCII = 0x0600,
  UTF8 = 0x08000100,
  UTF16BE = 0x10000100,
  Invalid = 0xFFFFFFFF,  // "the system encoding": UTF-8 on Linux
};

// Decodes `bytes` in `encoding` to UTF-8. Nothing when the bytes are not valid in it.
std::optional<std::string> decodeToUTF8(ByteSpan bytes, TextEncoding encoding);

// Encodes UTF-8 text in `encoding`. Nothing when the text is not valid UTF-8 or cannot be
// represented.
std::optional<std::string> encodeFromUTF8(const std::string& utf8, TextEncoding encoding);

// UTF-16 code units of UTF-8 text; nothing when the text is not valid UTF-8.
std::optional<std::u16string> utf8ToUTF16(const std::string& utf8);

// UTF-8 of UTF-16 code units; nothing when they are not well formed.
std::optional<std::string> utf16ToUTF8(const std::u16string& utf16);

// Unicode lower case of UTF-8 text, without locale rules. Invalid UTF-8 comes back unchanged.
std::string toLowerUnicode(const std::string& utf8);

}  // namespace typeprint
