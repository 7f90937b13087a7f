#include "analysis/sfnt_directory.h"

#include <cstring>
#include <string>

namespace typeprint {
namespace {

// Offset table: sfnt version u32, numTables s16, searchRange, entrySelector, rangeShift.
// Directory entries follow at byte 12, 16 bytes each.
constexpr size_t kNumTablesOffset = 4;

// The tag as a C string: up to four characters, stopping at a zero byte.
std::string tagText(uint32_t value) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    char c = char(value >> shift);
    if (c == 0) break;
    text.push_back(c);
  }
  return text;
}

bool presentAndValid(const SfntBytes& font, const char* tableTag) {
  std::optional<TDirectoryEntry> entry = FindSpecifiedTable(font, tableTag);
  return entry && ValidateDirectoryEntry(&*entry, font);
}

bool absentOrValid(const SfntBytes& font, const char* tableTag) {
  std::optional<TDirectoryEntry> entry = FindSpecifiedTable(font, tableTag);
  return !entry || ValidateDirectoryEntry(&*entry, font);
}

}  // namespace

ByteSpan SfntBytes::read(size_t offset, size_t length, std::vector<uint8_t>& scratch) const {
  if (offset > size_ || length > size_ - offset) return {};
  if (assembly_) return assembly_->read(offset, length, scratch);
  return whole_.sub(offset, length);
}

BEReader SfntBytes::reader(size_t offset, size_t length, std::vector<uint8_t>& scratch) const {
  if (!present() || offset > size_ || length > size_ - offset) return BEReader::failed();
  return BEReader(read(offset, length, scratch));
}

std::optional<TDirectoryEntry> FindSpecifiedTable(const SfntBytes& font, const char* tableTag) {
  if (!tableTag || font.size() < 13) return std::nullopt;
  std::vector<uint8_t> scratch;
  BEReader header = font.reader(kNumTablesOffset, 2, scratch);
  int16_t numTables = header.s16();
  if (!header.ok()) return std::nullopt;
  for (int i = 0; i < numTables; ++i) {
    // An entry must end before the last byte of the font.
    size_t entryOffset = kSfntHeaderSize + kDirectoryEntrySize * size_t(i);
    if (entryOffset + kDirectoryEntrySize >= font.size()) break;
    BEReader r = font.reader(entryOffset, kDirectoryEntrySize, scratch);
    TDirectoryEntry entry;
    entry.tag = r.u32();
    entry.checkSum = r.u32();
    entry.offset = r.u32();
    entry.length = r.u32();
    entry.entryOffset = entryOffset;
    if (!r.ok()) break;
    if (tagText(entry.tag) == tableTag) return entry;
  }
  return std::nullopt;
}

bool ValidateDirectoryEntry(const TDirectoryEntry* entry, const SfntBytes& font) {
  if (!entry || !font.present()) return false;
  if (entry->entryOffset > font.size() || kDirectoryEntrySize > font.size() - entry->entryOffset) return false;
  // Added without wrap-around: a 32-bit sum that wrapped would pass a table lying far outside.
  return uint64_t(entry->offset) + entry->length <= font.size();
}

bool GetPlatformTTF(const SfntBytes& font, UxString* platform) {
  if (!platform || !font.present() || font.size() < 5) return false;
  *platform = "mac";
  std::vector<uint8_t> scratch;
  BEReader header = font.reader(0, 4, scratch);
  uint32_t version = header.u32();
  if (version != kSfntVersionTrueType && version != kSfntVersionOTTO) return true;
  static const char* const kRequired[] = {"cmap", "name", "post", "maxp", "head", "hhea", "hmtx"};
  bool crossPlatform = absentOrValid(font, "OS/2") && absentOrValid(font, "kern");
  for (const char* required : kRequired) crossPlatform = crossPlatform && presentAndValid(font, required);
  if (crossPlatform) *platform = "crossplatform";
  return true;
}

}  // namespace typeprint
