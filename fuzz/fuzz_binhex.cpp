// The BinHex 4.0 decoder over arbitrary bytes.
#include <cstddef>
#include <cstdint>

#include "formats/binhex.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  formats::TMacFile file;
  const formats::EDecodeStatus status = formats::decodeBinHex(ByteSpan(data, size), file);
  volatile size_t sink = size_t(status) + file.name.size() + file.dataFork.size() + file.resourceFork.size() + file.type;
  (void)sink;
  return 0;
}
