#include "formats/bitmap_font.h"

#include <zlib.h>

#include <map>
#include <sstream>
#include <string>

#include "analysis/checksums.h"

namespace typeprint::formats {
namespace {

constexpr uint32_t kPcfPropertiesType = 1;
constexpr uint32_t kPcfMostSignificantByteFirst = 1u << 2;
constexpr size_t kPcfTocEntrySize = 16;
constexpr size_t kPcfPropertySize = 9;
constexpr size_t kBdfHeaderScanLimit = 64 * 1024;
constexpr size_t kInflateChunk = 64 * 1024;

using TProperties = std::map<std::string, std::string>;

// PCF words are little-endian in the table of contents and in either order inside a table.
uint32_t word32(BEReader& r, bool bigEndian) {
  const uint32_t b0 = r.u8(), b1 = r.u8(), b2 = r.u8(), b3 = r.u8();
  return bigEndian ? b0 << 24 | b1 << 16 | b2 << 8 | b3 : b3 << 24 | b2 << 16 | b1 << 8 | b0;
}

std::string cString(BEReader strings, uint32_t offset) {
  BEReader r = strings.from(offset);
  std::string s;
  while (r.remaining() > 0) {
    const char c = char(r.u8());
    if (c == '\0') break;
    s.push_back(c);
  }
  return s;
}

// Properties table: format (little-endian), then in the format's byte order: nprops, nprops
// entries of name offset (4), isString (1), value (4), padding to four bytes, the string pool's
// size and the pool. Offsets count from the start of the pool.
bool readPcfProperties(BEReader table, TProperties& properties) {
  const uint32_t format = word32(table, false);
  const bool bigEndian = format & kPcfMostSignificantByteFirst;
  const uint32_t count = word32(table, bigEndian);
  if (!table.ok() || count > table.remaining() / kPcfPropertySize) return false;
  BEReader entries = table.at(table.position(), size_t(count) * kPcfPropertySize);
  const size_t padding = (count & 3) ? 4 - (count & 3) : 0;
  table.skip(size_t(count) * kPcfPropertySize + padding);
  const uint32_t poolSize = word32(table, bigEndian);
  BEReader pool = table.at(table.position(), poolSize);
  if (!table.ok() || !pool.ok()) return false;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t nameOffset = word32(entries, bigEndian);
    const bool isString = entries.u8() != 0;
    const uint32_t value = word32(entries, bigEndian);
    properties[cString(pool, nameOffset)] = isString ? cString(pool, value) : std::to_string(int32_t(value));
  }
  return entries.ok();
}

std::string unquoted(std::string value) {
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
  return value;
}

// The XLFD field `index` (from 1) of a name like -misc-fixed-medium-r-normal--13-120-75-75-c-70-iso8859-1.
std::string xlfdField(const std::string& name, int index) {
  std::istringstream fields(name);
  std::string field;
  for (int i = 0; i <= index && std::getline(fields, field, '-'); ++i) {
  }
  return field;
}

std::string slantStyle(const std::string& slant) {
  if (slant == "I" || slant == "i") return "Italic";
  if (slant == "O" || slant == "o") return "Oblique";
  return "";
}

std::optional<TFormatFace> faceFromProperties(TProperties& p, const char* kind, ByteSpan bytes) {
  const std::string& xlfd = p["FONT"];
  TFormatFace face;
  face.kind = kind;
  face.family = p.count("FAMILY_NAME") ? p["FAMILY_NAME"] : xlfdField(xlfd, 2);
  if (face.family.empty()) return std::nullopt;
  face.foundry = p.count("FOUNDRY") ? p["FOUNDRY"] : xlfdField(xlfd, 1);
  const std::string weight = p.count("WEIGHT_NAME") ? p["WEIGHT_NAME"] : xlfdField(xlfd, 3);
  const std::string slant = slantStyle(p.count("SLANT") ? p["SLANT"] : xlfdField(xlfd, 4));
  std::string style = weight == "Medium" || weight == "medium" || weight.empty() ? "" : weight;
  if (!slant.empty()) style += (style.empty() ? "" : " ") + slant;
  face.style = style.empty() ? "Regular" : style;
  face.pixelSize = std::atoi((p.count("PIXEL_SIZE") ? p["PIXEL_SIZE"] : xlfdField(xlfd, 7)).c_str());
  face.fullName = face.family + " " + face.style;
  face.contentChecksum = CChecksum::icrc(bytes, 0);
  return face;
}

}  // namespace

bool looksLikePcf(ByteSpan bytes) { return BEReader(bytes).u32() == 0x01666370; }
bool looksLikeGzip(ByteSpan bytes) { return bytes.size >= 2 && bytes.data[0] == 0x1F && bytes.data[1] == 0x8B; }
bool looksLikeBdf(ByteSpan bytes) {
  return bytes.size >= 9 && std::string_view(reinterpret_cast<const char*>(bytes.data), 9) == "STARTFONT";
}

EDecodeStatus decodeGzip(ByteSpan gz, std::vector<uint8_t>& out) {
  out.clear();
  if (!looksLikeGzip(gz)) return EDecodeStatus::kNotThisFormat;
  const uint64_t limit = decodedSizeLimit(gz.size);
  z_stream stream{};
  if (inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK) return EDecodeStatus::kDamaged;
  stream.next_in = const_cast<Bytef*>(gz.data);
  stream.avail_in = uInt(gz.size);
  std::vector<uint8_t> result;
  int status = Z_OK;
  while (status == Z_OK) {
    if (result.size() >= limit) break;
    const size_t at = result.size();
    result.resize(size_t(std::min<uint64_t>(limit, at + kInflateChunk)));
    stream.next_out = result.data() + at;
    stream.avail_out = uInt(result.size() - at);
    status = inflate(&stream, Z_NO_FLUSH);
    result.resize(result.size() - stream.avail_out);
  }
  inflateEnd(&stream);
  if (status == Z_OK) return EDecodeStatus::kTooLarge;
  if (status != Z_STREAM_END) return EDecodeStatus::kDamaged;
  out = std::move(result);
  return EDecodeStatus::kDecoded;
}

std::optional<TFormatFace> readPcfFace(ByteSpan bytes) {
  // Header: "\1fcp", table count (little-endian), then entries of type, format, size, offset.
  BEReader r(bytes);
  if (r.u32() != 0x01666370) return std::nullopt;
  const uint32_t tables = word32(r, false);
  if (!r.ok() || tables > r.remaining() / kPcfTocEntrySize) return std::nullopt;
  for (uint32_t i = 0; i < tables; ++i) {
    const uint32_t type = word32(r, false);
    word32(r, false);
    const uint32_t size = word32(r, false), offset = word32(r, false);
    if (type != kPcfPropertiesType) continue;
    TProperties properties;
    if (!readPcfProperties(BEReader(bytes).at(offset, size), properties)) return std::nullopt;
    return faceFromProperties(properties, "PCF", bytes);
  }
  return std::nullopt;
}

std::optional<TFormatFace> readBdfFace(ByteSpan bytes) {
  if (!looksLikeBdf(bytes)) return std::nullopt;
  const std::string header(reinterpret_cast<const char*>(bytes.data), std::min(bytes.size, kBdfHeaderScanLimit));
  std::istringstream lines(header);
  std::string line;
  TProperties properties;
  while (std::getline(lines, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.compare(0, 5, "CHARS") == 0) break;
    const size_t space = line.find(' ');
    if (space == std::string::npos) continue;
    properties.emplace(line.substr(0, space), unquoted(line.substr(space + 1)));
  }
  return faceFromProperties(properties, "BDF", bytes);
}

}  // namespace typeprint::formats
