#include "rescue/bdf_writer.h"

#include <cstdio>
#include <set>

#include "rescue/glyph_names.h"

namespace typeprint::rescue {
namespace {

constexpr int kDotsPerInch = 72;
constexpr uint16_t kBold = 0x01;
constexpr uint16_t kItalic = 0x02;

// XLFD fields cannot hold "-"; property strings cannot hold a double quote.
std::string xlfdField(const std::string& text) {
  std::string out;
  for (char c : text) out.push_back(c == '-' || c == '"' || static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
  return out;
}

std::string glyphName(const StrikeGlyph& glyph, std::set<std::string>* used) {
  std::string name = glyph.code < 0 ? ".notdef" : std::string(macRomanGlyphName(uint8_t(glyph.code)));
  if (name.empty() || used->count(name)) name = "code" + std::to_string(glyph.code);
  used->insert(name);
  return name;
}

std::string hexRow(const std::vector<bool>& row) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string out;
  for (size_t x = 0; x < row.size(); x += 4) {
    int nibble = 0;
    for (size_t b = 0; b < 4; ++b) nibble = nibble << 1 | (x + b < row.size() && row[x + b] ? 1 : 0);
    out.push_back(kDigits[nibble]);
  }
  if (out.size() % 2) out.push_back('0');
  return out;
}

}  // namespace

std::string writeBdf(const BitmapStrike& strike, const BdfFace& face) {
  const std::string family = xlfdField(face.family);
  const std::string weight = face.style & kBold ? "Bold" : "Medium";
  const std::string slant = face.style & kItalic ? "I" : "R";
  const int height = strike.fRectHeight;
  std::string out = "STARTFONT 2.1\n";
  out += "FONT -Mac-" + family + "-" + weight + "-" + slant + "-Normal--" + std::to_string(face.pointSize) + "-" +
         std::to_string(face.pointSize * 10) + "-72-72-P-0-Apple-Roman\n";
  out += "SIZE " + std::to_string(face.pointSize) + " 72 72\n";
  out += "FONTBOUNDINGBOX " + std::to_string(strike.fRectWidth) + " " + std::to_string(height) + " " +
         std::to_string(strike.kernMax) + " " + std::to_string(-strike.descent) + "\n";
  out += "STARTPROPERTIES 12\n";
  out += "FAMILY_NAME \"" + family + "\"\n";
  out += "WEIGHT_NAME \"" + weight + "\"\n";
  out += "SLANT \"" + slant + "\"\n";
  out += "POINT_SIZE " + std::to_string(face.pointSize * 10) + "\n";
  out += "PIXEL_SIZE " + std::to_string(face.pointSize) + "\n";
  out += "RESOLUTION_X " + std::to_string(kDotsPerInch) + "\nRESOLUTION_Y " + std::to_string(kDotsPerInch) + "\n";
  out += "SPACING \"P\"\n";
  out += "CHARSET_REGISTRY \"Apple\"\nCHARSET_ENCODING \"Roman\"\n";
  out += "FONT_ASCENT " + std::to_string(strike.ascent) + "\nFONT_DESCENT " + std::to_string(strike.descent) + "\n";
  out += "ENDPROPERTIES\n";
  out += "CHARS " + std::to_string(strike.glyphs.size()) + "\n";
  std::set<std::string> used;
  for (const StrikeGlyph& glyph : strike.glyphs) {
    const bool inked = glyph.width > 0 && height > 0;
    const int scalable = face.pointSize > 0 ? glyph.advance * 1000 / face.pointSize : 0;
    out += "STARTCHAR " + glyphName(glyph, &used) + "\n";
    out += "ENCODING " + std::to_string(glyph.code) + "\n";
    out += "SWIDTH " + std::to_string(scalable) + " 0\n";
    out += "DWIDTH " + std::to_string(glyph.advance) + " 0\n";
    out += "BBX " + std::to_string(inked ? glyph.width : 0) + " " + std::to_string(inked ? height : 0) + " " +
           std::to_string(inked ? glyph.xOffset : 0) + " " + std::to_string(inked ? -strike.descent : 0) + "\n";
    out += "BITMAP\n";
    if (inked)
      for (const std::vector<bool>& row : glyph.rows) out += hexRow(row) + "\n";
    out += "ENDCHAR\n";
  }
  out += "ENDFONT\n";
  return out;
}

}  // namespace typeprint::rescue
