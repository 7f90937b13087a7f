// Reads arbitrary bytes as the property-list exchange form (XML or binary); whatever is accepted
// must write back and read again. After one round every attribute is present, so from then on
// the document is stable.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "typeprint.h"

namespace {

std::string writePropertyList(TP_FontArray* array) {
  char probe[1];
  uint32_t size = 0;
  TP_GetPropertyListRepresentation(array, probe, &size);
  std::vector<char> buffer(size);
  TP_GetPropertyListRepresentation(array, buffer.data(), &size);
  return std::string(buffer.data());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  TP_FontArray* first = nullptr;
  if (TP_CreateSpecifierFromPropertyList(text.c_str(), &first) != TP_STATUS_OK) return 0;
  TP_FontArray* second = nullptr;
  if (TP_CreateSpecifierFromPropertyList(writePropertyList(first).c_str(), &second) != TP_STATUS_OK) std::abort();
  const std::string settled = writePropertyList(second);
  TP_FontArray* third = nullptr;
  if (TP_CreateSpecifierFromPropertyList(settled.c_str(), &third) != TP_STATUS_OK) std::abort();
  if (writePropertyList(third) != settled) std::abort();
  TP_SpecifierFree(first);
  TP_SpecifierFree(second);
  TP_SpecifierFree(third);
  return 0;
}
