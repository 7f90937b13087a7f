#include "formats/type1_font.h"

#include <cctype>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "analysis/checksums.h"
#include "analysis/type1_header.h"
#include "platform/linux/mapped_file.h"
#include "resources/resource_file.h"
#include "resources/resource_metadata.h"

namespace typeprint::formats {
namespace {

constexpr uint8_t kSegmentMarker = 0x80;
enum EPfbSegment : uint8_t { kSegmentText = 1, kSegmentBinary = 2, kSegmentEnd = 3 };
enum EPostSegment : uint8_t { kPostComment = 0, kPostText = 1, kPostBinary = 2, kPostEnd = 5 };
constexpr size_t kPfbHeaderSize = 6;
constexpr size_t kRandomLeadBytes = 4;
constexpr const char* kEexec = "eexec";
constexpr const char* kClosefile = "closefile";
constexpr int kMaxPostResources = 32767 - kFirstPOSTResourceID;

bool startsWith(ByteSpan bytes, const char* prefix) {
  const std::string_view p(prefix);
  return bytes.size >= p.size() && std::string_view(reinterpret_cast<const char*>(bytes.data), p.size()) == p;
}

bool isHexDigit(uint8_t c) { return std::isxdigit(c) != 0; }
bool isSpace(uint8_t c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f'; }
int hexValue(uint8_t c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; }

// The program gathered from segments: text before the first binary segment, all binary segments.
class ProgramBuilder {
 public:
  void text(ByteSpan bytes) {
    if (program_.encrypted.empty()) program_.clearText.append(bytes.begin(), bytes.end());
  }
  void binary(ByteSpan bytes) { program_.encrypted.insert(program_.encrypted.end(), bytes.begin(), bytes.end()); }
  std::optional<TType1Program> take() {
    if (program_.clearText.empty()) return std::nullopt;
    return std::move(program_);
  }

 private:
  TType1Program program_;
};

// PFB: segments of marker 0x80, type, little-endian length, bytes; type 3 ends the file.
std::optional<TType1Program> readPfb(ByteSpan bytes) {
  ProgramBuilder builder;
  BEReader r(bytes);
  while (r.remaining() > 0) {
    const uint8_t marker = r.u8(), type = r.u8();
    if (marker != kSegmentMarker) return std::nullopt;
    if (type == kSegmentEnd) break;
    const uint32_t length = uint32_t(r.u8()) | uint32_t(r.u8()) << 8 | uint32_t(r.u8()) << 16 | uint32_t(r.u8()) << 24;
    const ByteSpan segment = r.span(length);
    if (!r.ok() || (type != kSegmentText && type != kSegmentBinary)) return std::nullopt;
    if (type == kSegmentText) builder.text(segment); else builder.binary(segment);
  }
  return builder.take();
}

// PFA: clear text through `eexec`, then the encrypted part in hexadecimal (up to the first
// character that is neither a hex digit nor a space) or, when its first four bytes are not all
// hex digits, as raw bytes to the end of the file.
std::optional<TType1Program> readPfa(ByteSpan bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data), bytes.size);
  const size_t eexec = text.find(kEexec);
  if (eexec == std::string_view::npos) return std::nullopt;
  TType1Program program;
  size_t at = eexec + std::string_view(kEexec).size();
  program.clearText.assign(text.substr(0, at));
  while (at < bytes.size && isSpace(bytes.data[at])) ++at;
  const ByteSpan rest = bytes.sub(at, bytes.size - at);
  bool hex = rest.size >= kRandomLeadBytes;
  for (size_t i = 0; hex && i < kRandomLeadBytes; ++i) hex = isHexDigit(rest.data[i]);
  if (!hex) {
    program.encrypted.assign(rest.begin(), rest.end());
    return program;
  }
  int high = -1;
  for (uint8_t c : rest) {
    if (isSpace(c)) continue;
    if (!isHexDigit(c)) break;
    if (high < 0) {
      high = hexValue(c);
    } else {
      program.encrypted.push_back(uint8_t(high << 4 | hexValue(c)));
      high = -1;
    }
  }
  return program;
}

// Line ends made LF, so that a program whose text a Mac tool rewrote with CR sums the same.
std::string normalisedLines(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      out.push_back(text[i]);
    } else {
      out.push_back('\n');
      if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
    }
  }
  return out;
}

// One "Key value" line of an AFM file's header.
std::string afmValue(const std::string& afm, const std::string& key) {
  std::istringstream lines(afm);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.compare(0, key.size() + 1, key + " ") != 0) continue;
    std::string value = line.substr(key.size() + 1);
    while (!value.empty() && isSpace(uint8_t(value.back()))) value.pop_back();
    return value;
  }
  return {};
}

// A companion file, or its first 4 MB; empty when it cannot be read.
std::string readSmallFile(const std::string& path) {
  constexpr size_t kMaxCompanionSize = 4 * 1024 * 1024;
  std::shared_ptr<const MappedFile> file = MappedFile::open(path);
  if (!file) return {};
  const ByteSpan bytes = file->bytes();
  return std::string(reinterpret_cast<const char*>(bytes.data), std::min(bytes.size, kMaxCompanionSize));
}

// What a metrics companion tells about the face.
struct TCompanionValues {
  std::string postScriptName, family, fullName, version, weight, italicAngle;
};

std::string stemOf(const std::string& path) {
  const size_t dot = path.find_last_of('.');
  const size_t slash = path.find_last_of('/');
  return dot == std::string::npos || (slash != std::string::npos && dot < slash) ? path : path.substr(0, dot);
}

// NAME.afm: "Key value" lines before the metrics.
std::optional<TCompanionValues> afmCompanion(const std::string& stem) {
  for (const char* extension : {".afm", ".AFM"}) {
    std::string afm = readSmallFile(stem + extension);
    if (afm.compare(0, 16, "StartFontMetrics") != 0) continue;
    afm = afm.substr(0, afm.find("StartCharMetrics"));
    return TCompanionValues{afmValue(afm, "FontName"), afmValue(afm, "FamilyName"), afmValue(afm, "FullName"),
                            afmValue(afm, "Version"),  afmValue(afm, "Weight"),     afmValue(afm, "ItalicAngle")};
  }
  return std::nullopt;
}

// NAME.pfm, little-endian: dfItalic (u8) at 80, dfWeight (u16) at 83, dfFace at 105 and
// dfDriverInfo at 139 (u32 offsets from the file start of the family and PostScript names).
std::optional<TCompanionValues> pfmCompanion(const std::string& stem) {
  constexpr size_t kItalicAt = 80, kWeightAt = 83, kFaceAt = 105, kDriverInfoAt = 139;
  constexpr uint16_t kBoldWeight = 600;
  for (const char* extension : {".pfm", ".PFM"}) {
    const std::string pfm = readSmallFile(stem + extension);
    const ByteSpan bytes(reinterpret_cast<const uint8_t*>(pfm.data()), pfm.size());
    BEReader r(bytes);
    auto le = [&](size_t at, int n) {
      BEReader field = r.at(at, size_t(n));
      uint32_t v = 0;
      for (int i = 0; i < n; ++i) v |= uint32_t(field.u8()) << (8 * i);
      return v;
    };
    auto text = [&](uint32_t at) {
      std::string s;
      for (BEReader t = r.from(at); t.remaining() > 0;) {
        const char c = char(t.u8());
        if (c == '\0') break;
        s.push_back(c);
      }
      return s;
    };
    if (pfm.size() <= kDriverInfoAt + 4) continue;
    TCompanionValues values;
    values.family = text(le(kFaceAt, 4));
    values.postScriptName = text(le(kDriverInfoAt, 4));
    values.weight = le(kWeightAt, 2) >= kBoldWeight ? "Bold" : "Regular";
    values.italicAngle = le(kItalicAt, 1) ? "-1" : "0";
    return values;
  }
  return std::nullopt;
}

void fillFrom(std::string& field, const std::string& value) {
  if (field.empty()) field = value;
}

// Weight, and "Italic" when the font leans.
std::string styleFrom(const std::string& weight, const std::string& italicAngle) {
  std::string style = weight.empty() ? "Regular" : weight;
  const double angle = std::strtod(italicAngle.c_str(), nullptr);
  if (angle != 0 && style.find("Italic") == std::string::npos && style.find("Oblique") == std::string::npos)
    style = style == "Regular" || style == "Roman" ? "Italic" : style + " Italic";
  return style;
}

}  // namespace

std::vector<uint8_t> decryptType1(ByteSpan cipher, uint16_t key, size_t skip) {
  std::vector<uint8_t> plain;
  if (cipher.size <= skip) return plain;
  plain.reserve(cipher.size - skip);
  uint16_t r = key;
  for (size_t i = 0; i < cipher.size; ++i) {
    const uint8_t c = cipher.data[i];
    if (i >= skip) plain.push_back(uint8_t(c ^ (r >> 8)));
    r = uint16_t((uint32_t(c) + r) * 52845u + 22719u);  // unsigned: the product exceeds int
  }
  return plain;
}

bool looksLikeType1(ByteSpan bytes) {
  if (bytes.size >= kPfbHeaderSize && bytes.data[0] == kSegmentMarker && bytes.data[1] == kSegmentText)
    return startsWith(bytes.sub(kPfbHeaderSize, bytes.size - kPfbHeaderSize), "%!");
  return startsWith(bytes, "%!PS-AdobeFont") || startsWith(bytes, "%!FontType1");
}

std::optional<TType1Program> readType1Program(ByteSpan bytes) {
  if (!looksLikeType1(bytes)) return std::nullopt;
  return bytes.data[0] == kSegmentMarker ? readPfb(bytes) : readPfa(bytes);
}

std::optional<TType1Program> readType1ProgramFromPrinterFile(const std::string& path, const FileForks* forks) {
  std::unique_ptr<ResourceFile> file = forks ? ResourceFile::open(path, *forks, true) : ResourceFile::open(path, true);
  if (!file) return std::nullopt;
  ProgramBuilder builder;
  // POST resource: segment type, a zero byte, then the payload.
  for (int i = 0; i < kMaxPostResources; ++i) {
    const ByteSpan bytes = dataOf(file->find(kTypePOST, int16_t(kFirstPOSTResourceID + i)));
    if (bytes.size < 2 || bytes.data[0] == kPostEnd) break;
    const ByteSpan payload = bytes.sub(2, bytes.size - 2);
    if (bytes.data[0] == kPostText) builder.text(payload);
    if (bytes.data[0] == kPostBinary) builder.binary(payload);
  }
  return builder.take();
}

uint32_t type1ContentChecksum(const TType1Program& program) {
  std::string_view clear(program.clearText);
  const size_t eexec = clear.find(kEexec);
  if (eexec != std::string_view::npos) clear = clear.substr(0, eexec + std::string_view(kEexec).size());
  const std::string text = normalisedLines(clear);
  uint32_t crc = CChecksum::icrc(reinterpret_cast<const uint8_t*>(text.data()), text.size(), 0);
  if (program.encrypted.size() <= kRandomLeadBytes) return crc;
  const std::vector<uint8_t> plain = decryptType1(ByteSpan(program.encrypted), kType1EexecKey, 0);
  const std::string_view plainText(reinterpret_cast<const char*>(plain.data()) + kRandomLeadBytes,
                                   plain.size() - kRandomLeadBytes);
  const size_t closefile = plainText.find(kClosefile);
  const size_t length =
      closefile == std::string_view::npos ? plainText.size() : closefile + std::string_view(kClosefile).size();
  return CChecksum::icrc(reinterpret_cast<const uint8_t*>(plainText.data()), length, crc);
}

TFormatFace type1Face(const TType1Program& program, const std::string& path) {
  TFormatFace face;
  const TType1HeaderText header(
      ByteSpan(reinterpret_cast<const uint8_t*>(program.clearText.data()), program.clearText.size()));
  auto value = [&](const char* token) {
    UxString found;
    findBlobForToken(header.lower, header.text, token, &found);
    return std::string(found);
  };
  face.postScriptName = value("/fontname");
  face.family = value("/familyname");
  face.fullName = value("/fullname");
  face.version = value("/version");
  std::string weight = value("/weight"), italicAngle = value("/italicangle");
  UxString kind, foundry;
  GatherPostScriptMetaDataFromData(header.lower, header.text, &kind, &foundry, nullptr, nullptr, nullptr, nullptr,
                                   nullptr);
  face.kind = kind;
  face.foundry = foundry;

  const std::string stem = stemOf(path);
  std::optional<TCompanionValues> companion = afmCompanion(stem);
  if (!companion) companion = pfmCompanion(stem);
  if (companion) {
    fillFrom(face.postScriptName, companion->postScriptName);
    fillFrom(face.family, companion->family);
    fillFrom(face.fullName, companion->fullName);
    fillFrom(face.version, companion->version);
    fillFrom(weight, companion->weight);
    fillFrom(italicAngle, companion->italicAngle);
  }
  fillFrom(face.family, face.fullName);
  face.style = styleFrom(weight, italicAngle);
  face.contentChecksum = type1ContentChecksum(program);
  return face;
}

}  // namespace typeprint::formats
