#include "rescue/bitmap_strike.h"

#include <algorithm>

namespace typeprint::rescue {
namespace {

constexpr size_t kHeaderSize = 26;
constexpr size_t kOwTLocField = 16;
constexpr uint16_t kDepthMask = 0x000C;
constexpr uint16_t kNoGlyph = 0xFFFF;
constexpr int kLastCode = 255;

std::vector<std::vector<bool>> glyphRows(ByteSpan image, size_t rowBytes, int height, int firstColumn, int width) {
  std::vector<std::vector<bool>> rows(size_t(height), std::vector<bool>(size_t(width), false));
  for (int y = 0; y < height; ++y) {
    const uint8_t* row = image.data + size_t(y) * rowBytes;
    for (int x = 0; x < width; ++x) {
      const int column = firstColumn + x;
      rows[size_t(y)][size_t(x)] = (row[column >> 3] >> (7 - (column & 7))) & 1;
    }
  }
  return rows;
}

}  // namespace

std::optional<BitmapStrike> readBitmapStrike(ByteSpan resource) {
  BEReader r(resource);
  const uint16_t fontType = r.u16();
  BitmapStrike strike;
  strike.firstChar = r.s16();
  strike.lastChar = r.s16();
  strike.widMax = r.s16();
  strike.kernMax = r.s16();
  const int16_t nDescent = r.s16();
  strike.fRectWidth = r.s16();
  strike.fRectHeight = r.s16();
  const uint16_t owTLoc = r.u16();
  strike.ascent = r.s16();
  strike.descent = r.s16();
  strike.leading = r.s16();
  const int16_t rowWords = r.s16();
  if (!r.ok() || (fontType & kDepthMask) != 0) return std::nullopt;
  if (strike.firstChar < 0 || strike.lastChar > kLastCode || strike.firstChar > strike.lastChar) return std::nullopt;
  if (strike.fRectHeight < 0 || rowWords < 0) return std::nullopt;

  const size_t rowBytes = size_t(rowWords) * 2;
  const ByteSpan image = r.span(rowBytes * size_t(strike.fRectHeight));
  const size_t entries = size_t(strike.lastChar - strike.firstChar + 3);
  BEReader locations = r;
  const uint64_t owWords = (nDescent > 0 ? uint64_t(nDescent) << 16 : 0) | owTLoc;
  BEReader offsets = BEReader(resource).from(size_t(std::min<uint64_t>(kOwTLocField + 2 * owWords, resource.size + 1)));
  std::vector<uint16_t> loc(entries), ow(entries);
  for (size_t i = 0; i < entries; ++i) {
    loc[i] = locations.u16();
    ow[i] = offsets.u16();
  }
  if (!r.ok() || !locations.ok() || !offsets.ok()) return std::nullopt;

  // Columns run left to right through the image (a code without a glyph repeats the next
  // location), so the glyphs together never hold more pixels than the image.
  const size_t imageColumns = rowBytes * 8;
  for (size_t i = 0; i + 1 < entries; ++i)
    if (loc[i] > loc[i + 1]) return std::nullopt;
  if (loc[entries - 1] > imageColumns) return std::nullopt;
  for (size_t i = 0; i + 1 < entries; ++i) {
    if (ow[i] == kNoGlyph) continue;
    StrikeGlyph glyph;
    const bool missingSymbol = i == entries - 2;
    glyph.code = missingSymbol ? -1 : strike.firstChar + int(i);
    glyph.advance = ow[i] & 0xFF;
    glyph.xOffset = strike.kernMax + (ow[i] >> 8);
    glyph.width = loc[i + 1] - loc[i];
    glyph.rows = glyphRows(image, rowBytes, strike.fRectHeight, loc[i], glyph.width);
    strike.glyphs.push_back(std::move(glyph));
  }
  return strike;
}

}  // namespace typeprint::rescue
