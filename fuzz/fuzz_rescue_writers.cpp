// Reads the input as every resource the extraction writers take: a bitmap strike written as BDF,
// a family resource's metric tables and a Type 1 header and encrypted part made into AFM text,
// and POST resources (the input cut at each 0xFF byte) written as PFB and PFA.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "rescue/afm_writer.h"
#include "rescue/bdf_writer.h"
#include "rescue/bitmap_strike.h"
#include "rescue/post_font.h"

using namespace typeprint;
using namespace typeprint::rescue;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const ByteSpan input(data, size);
  size_t sum = 0;
  if (std::optional<BitmapStrike> strike = readBitmapStrike(input)) sum += writeBdf(*strike, {"Fuzz", 3, 12}).size();

  const Type1FontInfo info = readType1FontInfo(input);
  const std::map<std::string, GlyphMetrics> glyphs = readGlyphMetrics(input);
  FondMetrics family;
  if (std::optional<FondMetrics> read = readFondMetrics(input)) family = *read;
  for (uint16_t style : {0, 1}) sum += writeAfm(buildAfmFont(info, glyphs, family, style)).size();

  std::vector<PostResource> resources;
  size_t start = 0;
  for (size_t i = 0; i <= size; ++i) {
    if (i == size || data[i] == 0xFF) {
      resources.push_back({int16_t(kFirstPostResourceID + resources.size()), input.sub(start, i - start)});
      start = i + 1;
    }
  }
  sum += writePfb(resources).bytes.size() + writePfa(resources).bytes.size() + clearText(resources).size();
  return sum == 1;
}
