#include "formats/binhex.h"

#include <array>
#include <string_view>

namespace typeprint::formats {
namespace {

// BinHex 4.0 tools write "(This file must be converted with BinHex 4.0)"; some word it otherwise.
constexpr std::string_view kBinHexBanner = "(This file must be converted";
constexpr size_t kBannerSearchLimit = 4096;
constexpr char kAlphabet[] = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";
constexpr uint8_t kRunMarker = 0x90;
constexpr uint8_t kNotInAlphabet = 0xFF;

std::array<uint8_t, 256> decodingTable() {
  std::array<uint8_t, 256> table;
  table.fill(kNotInAlphabet);
  for (uint8_t i = 0; i < 64; ++i) table[uint8_t(kAlphabet[i])] = i;
  return table;
}

// CRC-16 with polynomial 0x1021 from 0, as BinHex computes it over each part.
uint16_t crc16(ByteSpan bytes) {
  uint16_t crc = 0;
  for (uint8_t b : bytes) {
    crc ^= uint16_t(b << 8);
    for (int bit = 0; bit < 8; ++bit) crc = uint16_t(crc & 0x8000 ? crc << 1 ^ 0x1021 : crc << 1);
  }
  return crc;
}

// The six-bit characters between the colons after the banner, turned into bytes and then
// expanded: 0x90 n repeats the byte before it n - 1 more times, 0x90 0 is a literal 0x90.
EDecodeStatus decodeStream(ByteSpan bytes, size_t start, std::vector<uint8_t>& out) {
  static const std::array<uint8_t, 256> table = decodingTable();
  const uint64_t limit = decodedSizeLimit(bytes.size);
  uint32_t bits = 0;
  int bitCount = 0;
  bool run = false, closed = false;
  for (size_t i = start; i < bytes.size && !closed; ++i) {
    const uint8_t c = bytes.data[i];
    if (c == ':') {
      closed = true;
      break;
    }
    if (c == '\r' || c == '\n' || c == ' ' || c == '\t') continue;
    if (table[c] == kNotInAlphabet) return EDecodeStatus::kDamaged;
    bits = bits << 6 | table[c];
    bitCount += 6;
    if (bitCount < 8) continue;
    bitCount -= 8;
    const uint8_t byte = uint8_t(bits >> bitCount);
    if (run) {
      run = false;
      if (byte == 0) {
        out.push_back(kRunMarker);
      } else {
        if (out.empty()) return EDecodeStatus::kDamaged;
        if (out.size() + byte - 1 > limit) return EDecodeStatus::kTooLarge;
        out.insert(out.end(), size_t(byte - 1), out.back());
      }
    } else if (byte == kRunMarker) {
      run = true;
    } else {
      out.push_back(byte);
    }
    if (out.size() > limit) return EDecodeStatus::kTooLarge;
  }
  return closed ? EDecodeStatus::kDecoded : EDecodeStatus::kDamaged;
}

// A part followed by its CRC; false when the part or its CRC is missing or wrong.
bool takeChecked(BEReader& r, size_t partStart, ByteSpan whole) {
  const ByteSpan part = whole.sub(partStart, r.position() - partStart);
  const uint16_t crc = r.u16();
  return r.ok() && crc == crc16(part);
}

}  // namespace

bool looksLikeBinHex(ByteSpan bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data), std::min(bytes.size, kBannerSearchLimit));
  return text.find(kBinHexBanner) != std::string_view::npos;
}

EDecodeStatus decodeBinHex(ByteSpan bytes, TMacFile& file) {
  file = TMacFile();
  const std::string_view text(reinterpret_cast<const char*>(bytes.data), bytes.size);
  const size_t banner = text.substr(0, std::min(bytes.size, kBannerSearchLimit)).find(kBinHexBanner);
  if (banner == std::string_view::npos) return EDecodeStatus::kNotThisFormat;
  const size_t colon = text.find(':', text.find('\n', banner));
  if (colon == std::string_view::npos) return EDecodeStatus::kDamaged;
  std::vector<uint8_t> stream;
  const EDecodeStatus status = decodeStream(bytes, colon + 1, stream);
  if (status != EDecodeStatus::kDecoded) return status;

  // Header: name length, name, version (0), type, creator, flags, data length, resource length,
  // CRC. Then the data fork and its CRC, the resource fork and its CRC.
  const ByteSpan whole(stream);
  BEReader r(whole);
  const uint8_t nameLength = r.u8();
  const ByteSpan name = r.span(nameLength);
  r.u8();
  TMacFile out;
  out.name.assign(name.begin(), name.end());
  out.type = r.u32();
  out.creator = r.u32();
  r.u16();
  const uint32_t dataLength = r.u32(), resourceLength = r.u32();
  if (!takeChecked(r, 0, whole)) return EDecodeStatus::kDamaged;
  size_t partStart = r.position();
  const ByteSpan data = r.span(dataLength);
  if (!takeChecked(r, partStart, whole)) return EDecodeStatus::kDamaged;
  partStart = r.position();
  const ByteSpan resource = r.span(resourceLength);
  if (!takeChecked(r, partStart, whole)) return EDecodeStatus::kDamaged;
  out.dataFork.assign(data.begin(), data.end());
  out.resourceFork.assign(resource.begin(), resource.end());
  file = std::move(out);
  return EDecodeStatus::kDecoded;
}

FileForks forksOf(const TMacFile& file) {
  FileForks forks;
  forks.dataFork = ByteSpan(file.dataFork);
  forks.resourceFork = ByteSpan(file.resourceFork);
  forks.type = file.type;
  forks.creator = file.creator;
  forks.source = ForkSource::MacBinary;
  return forks;
}

}  // namespace typeprint::formats
