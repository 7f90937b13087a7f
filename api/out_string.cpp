#include "api/out_string.h"

#include <cstring>

namespace typeprint {

void copyOutString(const std::string& text, char* buffer, int32_t size) {
  if (size < 1) return;
  size_t length = std::strlen(text.c_str());
  size_t n = length < size_t(size) - 1 ? length : size_t(size) - 1;
  std::memcpy(buffer, text.c_str(), n);
  buffer[n] = '\0';
}

}  // namespace typeprint
