// Identifies arbitrary bytes as a whole font file. The first byte picks the file's extension, so
// the collection, resource and extension-driven paths are all reached; the rest is the file.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "typeprint.h"

namespace {

const char* const kExtensions[] = {".ttf", ".otf", ".ttc", ".dfont", "", ".ps", ".pfm", ".mmm"};

std::string scratchPath(uint8_t selector) {
  static const std::string folder = [] {
    char pattern[] = "/tmp/fuzz-create-XXXXXX";
    const char* made = mkdtemp(pattern);
    return std::string(made ? made : "/tmp");
  }();
  return folder + "/font" + kExtensions[selector % (sizeof kExtensions / sizeof *kExtensions)];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string path = scratchPath(data[0]);
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data + 1, 1, size - 1, f);
  std::fclose(f);
  TP_FontArray* array = nullptr;
  if (TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &array) == TP_STATUS_OK) {
    char probe[1];
    uint32_t length = 0;
    TP_GetXMLRepresentation(array, probe, &length);
    std::vector<char> xml(length);
    TP_GetXMLRepresentation(array, xml.data(), &length);
    TP_SpecifierFree(array);
  }
  unlink(path.c_str());
  return 0;
}
