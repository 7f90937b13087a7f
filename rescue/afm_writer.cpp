#include "rescue/afm_writer.h"

#include <cmath>
#include <cstdio>
#include <set>

#include "rescue/glyph_names.h"

namespace typeprint::rescue {
namespace {

std::string nameForCode(const Type1FontInfo& info, uint8_t code) {
  if (info.standardEncoding) return std::string(macRomanGlyphName(code));
  auto it = info.encoding.find(code);
  return it == info.encoding.end() ? std::string() : it->second;
}

std::string number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", std::fabs(v) < 1e-9 ? 0.0 : v);
  return text;
}

// A header value on one line: line ends already became spaces, other control bytes go too.
std::string oneLine(const std::string& text) {
  std::string out;
  for (char c : text) out.push_back(static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
  return out;
}

void line(std::string& out, const std::string& key, const std::string& value) {
  if (!value.empty()) out += key + " " + oneLine(value) + "\n";
}

}  // namespace

AfmFont buildAfmFont(const Type1FontInfo& info, const std::map<std::string, GlyphMetrics>& glyphs,
                     const FondMetrics& family, uint16_t style) {
  AfmFont font;
  font.info = info;
  font.encodingScheme = info.standardEncoding ? "MacRomanEncoding" : "FontSpecific";
  const StyleWidths* widths = family.widthsFor(style);
  const bool outlinesKnown = !glyphs.empty();
  std::set<std::string> listed;
  for (int code = family.firstChar; code <= family.lastChar && code <= 255; ++code) {
    const std::string name = nameForCode(info, uint8_t(code));
    if (name.empty() || listed.count(name)) continue;
    auto glyph = glyphs.find(name);
    if (outlinesKnown && glyph == glyphs.end()) continue;
    AfmGlyph entry{code, name, 0, outlinesKnown ? glyph->second : GlyphMetrics{}};
    if (widths)
      entry.width = fixedToThousandths(widths->widths[size_t(code - family.firstChar)]);
    else if (outlinesKnown)
      entry.width = int(std::lround(glyph->second.width));
    font.glyphs.push_back(entry);
    listed.insert(name);
  }
  for (const auto& [name, metrics] : glyphs)
    if (!listed.count(name)) font.glyphs.push_back({-1, name, int(std::lround(metrics.width)), metrics});

  if (const StyleKerning* kerning = family.kerningFor(style)) {
    for (const KernPair& pair : kerning->pairs) {
      const std::string left = nameForCode(info, pair.first), right = nameForCode(info, pair.second);
      const bool present = !left.empty() && !right.empty() &&
                           (!outlinesKnown || (glyphs.count(left) && glyphs.count(right)));
      if (present)
        font.kerning.push_back({left, right, fixedToThousandths(pair.value)});
      else
        ++font.droppedPairs;
    }
  }
  return font;
}

std::string writeAfm(const AfmFont& font) {
  const Type1FontInfo& info = font.info;
  std::string out = "StartFontMetrics 2.0\n";
  out += "Comment Metrics of a Mac printer font and its family record\n";
  line(out, "FontName", info.fontName);
  line(out, "FullName", info.fullName);
  line(out, "FamilyName", info.familyName);
  line(out, "Weight", info.weight);
  line(out, "ItalicAngle", number(info.italicAngle));
  line(out, "IsFixedPitch", info.isFixedPitch ? "true" : "false");
  if (info.fontBBox) {
    const auto& b = *info.fontBBox;
    line(out, "FontBBox", number(b[0]) + " " + number(b[1]) + " " + number(b[2]) + " " + number(b[3]));
  }
  if (info.underlinePosition) line(out, "UnderlinePosition", number(*info.underlinePosition));
  if (info.underlineThickness) line(out, "UnderlineThickness", number(*info.underlineThickness));
  line(out, "Version", info.version);
  line(out, "Notice", info.notice);
  line(out, "EncodingScheme", font.encodingScheme);

  out += "StartCharMetrics " + std::to_string(font.glyphs.size()) + "\n";
  for (const AfmGlyph& g : font.glyphs) {
    out += "C " + std::to_string(g.code) + " ; WX " + std::to_string(g.width) + " ; N " + g.name + " ; B " +
           std::to_string(g.box.llx) + " " + std::to_string(g.box.lly) + " " + std::to_string(g.box.urx) + " " +
           std::to_string(g.box.ury) + " ;\n";
  }
  out += "EndCharMetrics\n";
  if (!font.kerning.empty()) {
    out += "StartKernData\nStartKernPairs " + std::to_string(font.kerning.size()) + "\n";
    for (const AfmKernPair& pair : font.kerning)
      out += "KPX " + pair.left + " " + pair.right + " " + std::to_string(pair.value) + "\n";
    out += "EndKernPairs\nEndKernData\n";
  }
  out += "EndFontMetrics\n";
  return out;
}

}  // namespace typeprint::rescue
