// Reads the input as a family resource: its entries, styles, the PostScript name and printer-file
// name of every style, and the kerning sum of every style.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "resources/families.h"
#include "resources/fond.h"
#include "resources/printer_files.h"
#include "resources/resource_checksums.h"

using namespace typeprint;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const ByteSpan fond(data, size);
  uint32_t sum = fondStyleTableOffset(fond) + (fondIsDoubleByte(fond) ? 1 : 0);
  for (const FondEntry& entry : fondEntries(fond)) sum += uint32_t(entry.resID) + entry.style;
  for (int16_t style : getSortedStylesForFOND(fond)) sum += uint32_t(getSortedNFNTsForFOND(fond, style).size());
  for (int style = 0; style < 0x80; ++style) {
    unsigned char name[kStr255Capacity], fileName[kStr255Capacity];
    GetPrinterFontNameFromResource(fond, uint16_t(style), name, sizeof name);
    GetPostScriptFontFileName(name, fileName);
    for (int i = 1; i <= fileName[0]; ++i)
      if (fileName[i] < 32 || fileName[i] > 126) abort();
    sum += name[0] + fileName[0] + GetBastionChecksum(fond, short(style));
    sum += shouldHavePrinterFile(fond, int16_t(style)) ? 1 : 0;
  }
  return sum == 0xFFFFFFFF;
}
