// The WOFF 1.0 decoder over arbitrary bytes, and the faces of what it decodes.
#include <cstddef>
#include <cstdint>

#include "formats/sfnt_faces.h"
#include "formats/woff.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  std::vector<uint8_t> sfnt;
  if (formats::decodeWoff(ByteSpan(data, size), sfnt) != formats::EDecodeStatus::kDecoded) return 0;
  volatile size_t sink = formats::readSfntFaces(sfnt).size() + sfnt.size();
  (void)sink;
  return 0;
}
