// The plain Type 1 reader (PFB segments, PFA hex or binary) and its content checksum.
#include <cstddef>
#include <cstdint>

#include "formats/type1_font.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  std::optional<formats::TType1Program> program = formats::readType1Program(ByteSpan(data, size));
  if (!program) return 0;
  const formats::TFormatFace face = formats::type1Face(*program, "");
  volatile size_t sink = face.postScriptName.size() + face.family.size() + face.contentChecksum;
  (void)sink;
  return 0;
}
