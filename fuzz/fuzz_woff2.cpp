// The WOFF2 decoder over arbitrary bytes, and the faces of what it decodes.
#include <cstddef>
#include <cstdint>

#include "formats/sfnt_faces.h"
#include "formats/woff2.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  std::vector<uint8_t> sfnt;
  if (formats::decodeWoff2(ByteSpan(data, size), sfnt) != formats::EDecodeStatus::kDecoded) return 0;
  volatile size_t sink = formats::readSfntFaces(sfnt).size() + sfnt.size();
  (void)sink;
  return 0;
}
