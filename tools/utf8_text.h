// Text the command writes must be valid UTF-8, while paths and names are byte strings: this
// repairs the text and keeps the exact bytes in base64.
#pragma once

#include <string>

namespace typeprint::cli {

// `text` with each byte that starts no well-formed UTF-8 sequence (overlong forms, surrogates and
// values above U+10FFFF are not well-formed) replaced by U+FFFD; *valid says whether there was none.
std::string validUTF8(const std::string& text, bool* valid = nullptr);

// Standard base64 with padding.
std::string base64(const std::string& bytes);

}  // namespace typeprint::cli
