#include "tools/utf8_text.h"

#include <algorithm>
#include <cstdint>

namespace typeprint::cli {
namespace {

// The length of the well-formed UTF-8 sequence at text[i], or 0 when there is none: no overlong
// forms, no surrogates, nothing above U+10FFFF.
size_t utf8SequenceLength(const std::string& text, size_t i) {
  const auto byte = [&](size_t k) { return k < text.size() ? uint8_t(text[k]) : 0; };
  const auto continuation = [&](size_t k) { return (byte(k) & 0xC0) == 0x80; };
  const uint8_t lead = byte(i);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return continuation(i + 1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const uint8_t second = byte(i + 1);
    const bool inRange = lead == 0xE0 ? second >= 0xA0 : lead == 0xED ? second < 0xA0 : true;
    return inRange && continuation(i + 1) && continuation(i + 2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const uint8_t second = byte(i + 1);
    const bool inRange = lead == 0xF0 ? second >= 0x90 : lead == 0xF4 ? second < 0x90 : true;
    return inRange && continuation(i + 1) && continuation(i + 2) && continuation(i + 3) ? 4 : 0;
  }
  return 0;
}

}  // namespace

std::string validUTF8(const std::string& text, bool* valid) {
  std::string out;
  if (valid) *valid = true;
  for (size_t i = 0; i < text.size();) {
    const size_t length = utf8SequenceLength(text, i);
    if (length == 0) {
      out += "\xEF\xBF\xBD";
      if (valid) *valid = false;
      ++i;
    } else {
      out.append(text, i, length);
      i += length;
    }
  }
  return out;
}

std::string base64(const std::string& bytes) {
  static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t n = std::min<size_t>(3, bytes.size() - i);
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) group = group << 8 | (k < n ? uint8_t(bytes[i + k]) : 0);
    for (size_t k = 0; k < 4; ++k) out += k <= n ? kDigits[(group >> (18 - 6 * k)) & 0x3F] : '=';
  }
  return out;
}

}  // namespace typeprint::cli
