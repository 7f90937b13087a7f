#include "platform/linux/apple_double.h"

#include "base/be_writer.h"
#include "base/diagnostics.h"

namespace typeprint {
namespace {

constexpr uint32_t kVersion1 = 0x00010000;
constexpr uint32_t kVersion2 = 0x00020000;
constexpr size_t kFillerSize = 16;
constexpr size_t kHeaderSize = 26;
constexpr size_t kDescriptorSize = 12;
constexpr const char* kTopic = "container";

uint32_t finderInfoWord(const AppleFile& file, size_t offset) {
  const AppleEntry* info = file.entry(kAppleEntryFinderInfo);
  if (!info) return 0;
  BEReader r = BEReader(info->bytes).at(offset, 4);
  uint32_t v = r.u32();
  return r.ok() ? v : 0;
}

}  // namespace

const AppleEntry* AppleFile::entry(uint32_t id) const {
  for (const AppleEntry& e : entries)
    if (e.id == id) return &e;
  return nullptr;
}

void AppleFile::setEntry(uint32_t id, ByteSpan bytes) {
  for (AppleEntry& e : entries) {
    if (e.id == id) {
      e.bytes = bytes;
      return;
    }
  }
  entries.push_back({id, bytes});
}

uint32_t AppleFile::fileType() const { return finderInfoWord(*this, 0); }
uint32_t AppleFile::fileCreator() const { return finderInfoWord(*this, 4); }

std::optional<AppleFile> readAppleFile(ByteSpan bytes) {
  // Header: magic (4), version (4), filler (16), number of entries (2), then per entry an ID,
  // an offset from the start of the file and a length, 4 bytes each.
  BEReader r(bytes);
  AppleFile file;
  file.magic = r.u32();
  file.version = r.u32();
  file.filler = r.span(kFillerSize);
  uint16_t count = r.u16();
  // Without the magic number the bytes are simply not this format: nothing to report.
  if (file.magic != kAppleSingleMagic && file.magic != kAppleDoubleMagic) return std::nullopt;
  if (!r.ok()) return TP_REFUSE(kTopic, 0, "AppleSingle/AppleDouble header cut short at %zu bytes", bytes.size);
  if (file.version != kVersion1 && file.version != kVersion2)
    return TP_REFUSE(kTopic, 4, "AppleSingle/AppleDouble version %08X is not 1 or 2", file.version);
  if (count > r.remaining() / kDescriptorSize)
    return TP_REFUSE(kTopic, 24, "AppleSingle/AppleDouble entry count %u exceeds the %zu bytes after the header",
                     unsigned(count), r.remaining());
  file.entries.reserve(count);
  for (uint16_t i = 0; i < count; ++i) {
    uint32_t id = r.u32(), offset = r.u32(), length = r.u32();
    if (offset > bytes.size || length > bytes.size - offset)
      return TP_REFUSE(kTopic, 26 + kDescriptorSize * i,
                       "AppleSingle/AppleDouble entry %u at 0x%X, 0x%X bytes, runs past the file's 0x%zX bytes", id,
                       offset, length, bytes.size);
    file.entries.push_back({id, bytes.sub(offset, length)});
  }
  return file;
}

std::vector<uint8_t> writeAppleFile(const AppleFile& file) {
  BEWriter w;
  w.u32(file.magic);
  w.u32(file.version);
  w.bytes(file.filler.sub(0, kFillerSize));
  w.zeros(kHeaderSize - 2 - w.size());
  w.u16(uint16_t(file.entries.size()));
  uint64_t offset = kHeaderSize + kDescriptorSize * file.entries.size();
  for (const AppleEntry& e : file.entries) {
    if (offset + e.bytes.size > UINT32_MAX) return {};
    w.u32(e.id);
    w.u32(uint32_t(offset));
    w.u32(uint32_t(e.bytes.size));
    offset += e.bytes.size;
  }
  for (const AppleEntry& e : file.entries) w.bytes(e.bytes);
  return w.take();
}

}  // namespace typeprint
