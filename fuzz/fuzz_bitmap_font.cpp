// The PCF and BDF readers over arbitrary bytes, and over the gzip decoder's output.
#include <cstddef>
#include <cstdint>

#include "formats/bitmap_font.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  const ByteSpan bytes(data, size);
  std::vector<uint8_t> inflated;
  const bool gz = formats::decodeGzip(bytes, inflated) == formats::EDecodeStatus::kDecoded;
  const ByteSpan font = gz ? ByteSpan(inflated) : bytes;
  size_t total = 0;
  for (const auto& face : {formats::readPcfFace(font), formats::readBdfFace(font)})
    if (face) total += face->family.size() + face->style.size() + size_t(face->pixelSize) + face->contentChecksum;
  volatile size_t sink = total;
  (void)sink;
  return 0;
}
