#include "platform/linux/mac_binary.h"

#include <algorithm>

#include "base/be_writer.h"

namespace typeprint {
namespace {

constexpr size_t kHeaderSize = 128;
constexpr size_t kCrcCoveredBytes = 124;
constexpr uint32_t kMaxForkLength = 0x7FFFFF;
constexpr uint8_t kVersionII = 0x81;
constexpr uint8_t kVersionIII = 0x82;

uint64_t pad128(uint64_t n) { return (n + 127) / 128 * 128; }

// Header fields the detection and the layout need. Offsets from the start of the file:
//   0 old version (0)   1 name length (1..63)   2 name (63)   65 type   69 creator
//   73 Finder flags high   74 zero   82 zero   83 data fork length   87 resource fork length
//   99 comment length (II)   102 'mBIN' (III)   120 secondary header length (II)
//   122 writer version   123 minimum reader version   124 CRC-16 of bytes 0..123
struct HeaderFields {
  uint8_t oldVersion, nameLength, zero74, zero82;
  uint32_t type, creator, dataLength, resourceLength, signature;
  uint16_t commentLength, secondaryLength, crc;
};

HeaderFields readHeaderFields(BEReader h) {
  HeaderFields f{};
  f.oldVersion = h.u8();
  f.nameLength = h.u8();
  h.seek(65);
  f.type = h.u32();
  f.creator = h.u32();
  h.seek(74);
  f.zero74 = h.u8();
  h.seek(82);
  f.zero82 = h.u8();
  f.dataLength = h.u32();
  f.resourceLength = h.u32();
  h.seek(99);
  f.commentLength = h.u16();
  h.seek(102);
  f.signature = h.u32();
  h.seek(120);
  f.secondaryLength = h.u16();
  h.seek(124);
  f.crc = h.u16();
  return f;
}

}  // namespace

uint16_t macBinaryCrc(ByteSpan bytes) {
  uint16_t crc = 0;
  for (uint8_t b : bytes) {
    crc ^= uint16_t(b << 8);
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc & 0x8000) ? uint16_t((crc << 1) ^ 0x1021) : uint16_t(crc << 1);
  }
  return crc;
}

std::optional<MacBinaryFile> readMacBinary(ByteSpan file) {
  BEReader r(file);
  BEReader header = r.at(0, kHeaderSize);
  if (!header.ok()) return std::nullopt;
  HeaderFields f = readHeaderFields(header);
  if (f.oldVersion != 0 || f.zero74 != 0 || f.nameLength < 1 || f.nameLength > 63) return std::nullopt;
  if (f.dataLength > kMaxForkLength || f.resourceLength > kMaxForkLength) return std::nullopt;

  MacBinaryFile mb;
  uint64_t secondary = 0, comment = 0;
  if (macBinaryCrc(file.sub(0, kCrcCoveredBytes)) == f.crc) {
    mb.version = f.signature == tag("mBIN") ? 3 : 2;
    secondary = f.secondaryLength;
    comment = f.commentLength;
  } else if (f.zero82 == 0) {
    // MacBinary I: bytes 99..127 mean nothing, even when a stale II header is left in them.
    mb.version = 1;
  } else {
    return std::nullopt;
  }

  // The file must be exactly as long as its padded parts; ordinary files almost never are.
  uint64_t dataStart = kHeaderSize + pad128(secondary);
  uint64_t resourceStart = dataStart + pad128(f.dataLength);
  uint64_t shortest = resourceStart + f.resourceLength;
  uint64_t longest = resourceStart + pad128(f.resourceLength) + pad128(comment);
  if (file.size < shortest || file.size > longest) return std::nullopt;

  mb.header = file.sub(0, kHeaderSize);
  mb.macName = file.sub(2, f.nameLength);
  mb.type = f.type;
  mb.creator = f.creator;
  mb.secondaryHeader = file.sub(kHeaderSize, size_t(secondary));
  mb.dataFork = file.sub(size_t(dataStart), f.dataLength);
  mb.resourceFork = file.sub(size_t(resourceStart), f.resourceLength);
  uint64_t commentStart = resourceStart + pad128(f.resourceLength);
  if (commentStart <= file.size)
    mb.comment = file.sub(size_t(commentStart), size_t(std::min<uint64_t>(comment, file.size - commentStart)));
  return mb;
}

std::vector<uint8_t> writeMacBinary(const MacBinaryFile& original, ByteSpan dataFork,
                                    ByteSpan resourceFork) {
  if (dataFork.size > kMaxForkLength || resourceFork.size > kMaxForkLength) return {};
  std::vector<uint8_t> header(original.header.begin(), original.header.end());
  header.resize(kHeaderSize, 0);
  // Bytes 99..127 of a MacBinary I header carry nothing worth keeping.
  if (original.version == 1) std::fill(header.begin() + 99, header.end(), 0);

  BEWriter w;
  w.bytes(header);
  w.patchU32(83, uint32_t(dataFork.size));
  w.patchU32(87, uint32_t(resourceFork.size));
  uint8_t writer = original.version == 3 ? kVersionIII : kVersionII;
  w.patchU16(122, uint16_t(writer << 8 | kVersionII));
  w.patchU16(124, macBinaryCrc(ByteSpan(w.data()).sub(0, kCrcCoveredBytes)));
  for (ByteSpan part : {original.secondaryHeader, dataFork, resourceFork, original.comment}) {
    w.bytes(part);
    w.align(128);
  }
  return w.take();
}

}  // namespace typeprint
