#include "rescue/fond_metrics.h"

#include <cmath>

namespace typeprint::rescue {
namespace {

constexpr size_t kFirstCharOffset = 4;
constexpr size_t kWidthTableOffsetField = 16;
constexpr size_t kKerningTableOffsetField = 20;
constexpr size_t kHeaderSize = 52;
constexpr size_t kPairSize = 4;
constexpr int kLastCode = 255;
constexpr int kExtraWidths = 2;  // the missing glyph and one more
constexpr double kFixedOne = 4096.0;

// The reader on a table, from its offset to the end of the family; failed for offset 0 (no
// table) is not an error, so the caller checks that first.
BEReader tableAt(ByteSpan fond, uint32_t offset) { return BEReader(fond).from(offset); }

bool readWidths(ByteSpan fond, uint32_t offset, FondMetrics* metrics) {
  if (metrics->firstChar < 0 || metrics->lastChar > kLastCode || metrics->firstChar > metrics->lastChar)
    return false;
  const size_t codes = size_t(metrics->lastChar - metrics->firstChar + 1);
  const size_t rowSize = 2 + 2 * (codes + kExtraWidths);
  BEReader r = tableAt(fond, offset);
  const int32_t entries = int32_t(r.s16()) + 1;
  if (!r.ok() || entries < 0 || size_t(entries) > r.remaining() / rowSize) return false;
  for (int32_t i = 0; i < entries; ++i) {
    StyleWidths row;
    row.style = r.u16();
    for (size_t c = 0; c < codes; ++c) row.widths.push_back(r.s16());
    r.skip(2 * kExtraWidths);
    metrics->widths.push_back(std::move(row));
  }
  return r.ok();
}

bool readKerning(ByteSpan fond, uint32_t offset, FondMetrics* metrics) {
  BEReader r = tableAt(fond, offset);
  const int32_t entries = int32_t(r.s16()) + 1;
  if (!r.ok() || entries < 0) return false;
  for (int32_t i = 0; i < entries; ++i) {
    StyleKerning entry;
    entry.style = r.u16();
    const int16_t count = r.s16();
    if (!r.ok() || count < 0 || size_t(count) > r.remaining() / kPairSize) return false;
    for (int16_t p = 0; p < count; ++p) {
      KernPair pair;
      pair.first = r.u8();
      pair.second = r.u8();
      pair.value = r.s16();
      entry.pairs.push_back(pair);
    }
    metrics->kerning.push_back(std::move(entry));
  }
  return r.ok();
}

}  // namespace

const StyleWidths* FondMetrics::widthsFor(uint16_t style) const {
  for (const StyleWidths& row : widths)
    if (row.style == style) return &row;
  return nullptr;
}

const StyleKerning* FondMetrics::kerningFor(uint16_t style) const {
  for (const StyleKerning& entry : kerning)
    if (entry.style == style) return &entry;
  return nullptr;
}

std::optional<FondMetrics> readFondMetrics(ByteSpan fond) {
  if (fond.size < kHeaderSize) return std::nullopt;
  BEReader header(fond);
  FondMetrics metrics;
  BEReader range = header.at(kFirstCharOffset, 4);
  metrics.firstChar = range.s16();
  metrics.lastChar = range.s16();
  const uint32_t widthOffset = header.at(kWidthTableOffsetField, 4).u32();
  const uint32_t kerningOffset = header.at(kKerningTableOffsetField, 4).u32();
  if (widthOffset != 0 && !readWidths(fond, widthOffset, &metrics)) return std::nullopt;
  if (kerningOffset != 0 && !readKerning(fond, kerningOffset, &metrics)) return std::nullopt;
  return metrics;
}

int fixedToThousandths(int16_t fraction) { return int(std::lround(fraction * 1000.0 / kFixedOne)); }

}  // namespace typeprint::rescue
