// Table search, entry validation, platform decision and kerning checksum over arbitrary bytes.
#include <cstddef>
#include <cstdint>

#include "analysis/checksums.h"
#include "analysis/sfnt_directory.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  SfntBytes font(ByteSpan(data, size));
  volatile uint32_t sink = 0;
  for (const char* table : {"name", "kern", "GPOS", "glyf", "OS/2", "head"}) {
    std::optional<TDirectoryEntry> entry = FindSpecifiedTable(font, table);
    if (entry) sink = sink + entry->offset + ValidateDirectoryEntry(&*entry, font);
  }
  UxString platform;
  sink = sink + GetPlatformTTF(font, &platform) + platform.size();
  uint32_t kerning = 0;
  sink = sink + GetTrueTypeKerningTableChecksum(font, &kerning) + kerning;
  return 0;
}
