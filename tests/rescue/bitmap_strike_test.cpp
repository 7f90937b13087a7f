#include <gtest/gtest.h>

#include <string>

#include "builders/byte_edits.h"
#include "rescue/bdf_writer.h"
#include "rescue/bitmap_strike.h"

namespace typeprint::rescue {
namespace {

using test::Bytes;
using test::patchU16;
using test::truncated;

// Codes 'A' and 'B' ('B' absent), 16-pixel rows, 2 rows: 'A' is columns 0-2 (101 / 010), the
// missing-glyph symbol columns 3-4 (11 / 11); kernMax -1; 'A' has image offset 1, advance 4.
const Bytes kStrike = {
    0x90, 0x00, 0x00, 0x41, 0x00, 0x42, 0x00, 0x04, 0xFF, 0xFF,  // fontType, first, last, widMax, kernMax
    0x00, 0x00, 0x00, 0x05, 0x00, 0x02, 0x00, 0x0B,              // nDescent, fRectWidth, fRectHeight, owTLoc 11
    0x00, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01,              // ascent, descent, leading, rowWords
    0xB8, 0x00, 0x58, 0x00,                                      // image rows
    0x00, 0x00, 0x00, 0x03, 0x00, 0x03, 0x00, 0x05,              // locations
    0x01, 0x04, 0xFF, 0xFF, 0x00, 0x03, 0xFF, 0xFF,              // offsets/widths at 16 + 2 * 11
};

TEST(BitmapStrike, WritesEachGlyphOfTheStrikeAsBdf) {
  std::optional<BitmapStrike> strike = readBitmapStrike(kStrike);
  ASSERT_TRUE(strike);
  ASSERT_EQ(strike->glyphs.size(), 2u);
  const std::string bdf = writeBdf(*strike, {"Sample-Face", 1, 12});
  const char* expected[] = {
      "FONT -Mac-Sample Face-Bold-R-Normal--12-120-72-72-P-0-Apple-Roman\n",
      "FONTBOUNDINGBOX 5 2 -1 0\n",
      "CHARS 2\n",
      "STARTCHAR A\nENCODING 65\nSWIDTH 333 0\nDWIDTH 4 0\nBBX 3 2 0 0\nBITMAP\nA0\n40\nENDCHAR\n",
      "STARTCHAR .notdef\nENCODING -1\nSWIDTH 250 0\nDWIDTH 3 0\nBBX 2 2 -1 0\nBITMAP\nC0\nC0\nENDCHAR\n",
  };
  for (const char* part : expected) EXPECT_NE(bdf.find(part), std::string::npos) << part;
}

TEST(BitmapStrike, RejectsDamagedStrikes) {
  const struct {
    const char* what;
    Bytes bytes;
  } rows[] = {
      {"header cut", truncated(kStrike, 25)},
      {"last code before the first", patchU16(kStrike, 4, 0x40)},
      {"code range past 255", patchU16(kStrike, 4, 0x100)},
      {"two bits per pixel", patchU16(kStrike, 0, 0x9004)},
      {"offset table past the end", patchU16(kStrike, 16, 0x0C)},
      {"locations run backwards", patchU16(kStrike, 32, 0x0004)},
      {"last location past the image", patchU16(kStrike, 36, 0x0011)},
      {"image taller than the resource", patchU16(kStrike, 14, 0x0100)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_FALSE(readBitmapStrike(row.bytes));
  }
}

}  // namespace
}  // namespace typeprint::rescue
