// typeprint FILE...: identifies each font file and prints its face count and XML record.
#include <cstdio>
#include <vector>

#include "typeprint.h"

namespace {

int identify(const char* path) {
  TP_FontArray* array = nullptr;
  if (TP_CreateSpecifier(path, 0, TP_ATTR_ALL, &array) != TP_STATUS_OK) {
    std::fprintf(stderr, "typeprint: %s: not a font file this library can identify\n", path);
    return 1;
  }
  uint32_t count = 0, size = 0;
  TP_GetFontCount(array, &count);
  std::printf("%s: %u face%s\n", path, count, count == 1 ? "" : "s");
  char probe[1];
  TP_GetXMLRepresentation(array, probe, &size);
  std::vector<char> xml(size);
  TP_GetXMLRepresentation(array, xml.data(), &size);
  std::fputs(xml.data(), stdout);
  TP_SpecifierFree(array);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: typeprint FILE...\n");
    return 2;
  }
  int status = 0;
  for (int i = 1; i < argc; ++i) status |= identify(argv[i]);
  return status;
}
