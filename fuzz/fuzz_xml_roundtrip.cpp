// Reads arbitrary text as the XML exchange form; whatever is accepted must write back and read
// again. (Values are written unescaped by design, so the second reading may see other blocks.)
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "typeprint.h"

namespace {

std::string writeXML(TP_FontArray* array) {
  char probe[1];
  uint32_t size = 0;
  TP_GetXMLRepresentation(array, probe, &size);
  std::vector<char> buffer(size);
  TP_GetXMLRepresentation(array, buffer.data(), &size);
  return std::string(buffer.data());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  TP_FontArray* first = nullptr;
  if (TP_CreateSpecifierFromXML(text.c_str(), &first) != TP_STATUS_OK) return 0;
  const std::string written = writeXML(first);
  TP_FontArray* second = nullptr;
  if (TP_CreateSpecifierFromXML(written.c_str(), &second) != TP_STATUS_OK) std::abort();
  TP_SpecifierFree(first);
  TP_SpecifierFree(second);
  return 0;
}
