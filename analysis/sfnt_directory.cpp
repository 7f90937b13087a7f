#include "analysis/sfnt_directory.h"

#include <algorithm>

#include "base/diagnostics.h"

namespace typeprint {
namespace {

// Offset table: sfnt version u32, numTables s16, searchRange, entrySelector, rangeShift.
// Directory entries follow at byte 12, 16 bytes each.
constexpr size_t kNumTablesOffset = 4;
constexpr const char* kDirectoryTopic = "sfnt directory";
constexpr const char* kTableTopic = "sfnt table";

std::string tagText(uint32_t tag) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char c = char(tag >> shift);
    text.push_back(c >= 32 && c < 127 ? c : '?');
  }
  return text;
}

// The tag read as a C string (up to four characters, stopping at a zero byte) equals `text`.
bool tagReadsAs(uint32_t value, const char* text) {
  for (int shift = 24; shift >= 0; shift -= 8, ++text) {
    const char c = char(value >> shift);
    if (c == 0 || *text != c) return c == 0 && *text == 0;
  }
  return *text == 0;
}

bool presentAndValid(const SfntDirectory& directory, const SfntBytes& font, const char* tableTag) {
  std::optional<TDirectoryEntry> entry = directory.find(tableTag);
  return entry && ValidateDirectoryEntry(&*entry, font);
}

bool absentOrValid(const SfntDirectory& directory, const SfntBytes& font, const char* tableTag) {
  std::optional<TDirectoryEntry> entry = directory.find(tableTag);
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

SfntDirectory::SfntDirectory(const SfntBytes& font) {
  if (font.size() < 13) return;
  std::vector<uint8_t> scratch;
  BEReader header = font.reader(kNumTablesOffset, 2, scratch);
  const int16_t numTables = header.s16();
  if (!header.ok() || numTables <= 0) {
    TP_REFUSE(kDirectoryTopic, kNumTablesOffset, "the table directory lists %d tables", int(numTables));
    return;
  }
  // An entry must end before the last byte of the font.
  const size_t fitting = (font.size() - 1 - kSfntHeaderSize) / kDirectoryEntrySize;
  const size_t count = std::min(size_t(numTables), fitting);
  BEReader r = font.reader(kSfntHeaderSize, kDirectoryEntrySize * count, scratch);
  entries_.resize(count);
  for (size_t i = 0; i < count; ++i) {
    TDirectoryEntry& entry = entries_[i];
    entry.tag = r.u32();
    entry.checkSum = r.u32();
    entry.offset = r.u32();
    entry.length = r.u32();
    entry.entryOffset = kSfntHeaderSize + kDirectoryEntrySize * i;
  }
  if (!r.ok()) {
    TP_REFUSE(kDirectoryTopic, kSfntHeaderSize, "the table directory's %zu entries cannot be read", count);
    entries_.clear();
  }
}

std::optional<TDirectoryEntry> SfntDirectory::find(const char* tableTag) const {
  if (!tableTag) return std::nullopt;
  for (const TDirectoryEntry& entry : entries_)
    if (tagReadsAs(entry.tag, tableTag)) return entry;
  return std::nullopt;
}

std::optional<TDirectoryEntry> FindSpecifiedTable(const SfntBytes& font, const char* tableTag) {
  if (!tableTag) return std::nullopt;
  if (const SfntDirectory* directory = font.directory()) return directory->find(tableTag);
  return SfntDirectory(font).find(tableTag);
}

bool ValidateDirectoryEntry(const TDirectoryEntry* entry, const SfntBytes& font) {
  if (!entry || !font.present()) return false;
  if (entry->entryOffset > font.size() || kDirectoryEntrySize > font.size() - entry->entryOffset)
    return TP_REFUSE(kTableTopic, entry->entryOffset, "directory entry for '%s' beyond the font's 0x%zX bytes",
                     tagText(entry->tag).c_str(), font.size());
  // Added without wrap-around: a 32-bit sum that wrapped would pass a table lying far outside.
  if (uint64_t(entry->offset) + entry->length <= font.size()) return true;
  return TP_REFUSE(kTableTopic, entry->entryOffset, "'%s' table at 0x%X, 0x%X bytes, runs past the font's 0x%zX bytes",
                   tagText(entry->tag).c_str(), entry->offset, entry->length, font.size());
}

bool GetPlatformTTF(const SfntBytes& font, UxString* platform) {
  if (!platform || !font.present() || font.size() < 5) return false;
  *platform = "mac";
  std::vector<uint8_t> scratch;
  BEReader header = font.reader(0, 4, scratch);
  uint32_t version = header.u32();
  if (version != kSfntVersionTrueType && version != kSfntVersionOTTO) return true;
  static const char* const kRequired[] = {"cmap", "name", "post", "maxp", "head", "hhea", "hmtx"};
  std::optional<SfntDirectory> read;
  const SfntDirectory& directory = font.directory() ? *font.directory() : read.emplace(font);
  bool crossPlatform = absentOrValid(directory, font, "OS/2") && absentOrValid(directory, font, "kern");
  for (const char* required : kRequired) crossPlatform = crossPlatform && presentAndValid(directory, font, required);
  if (crossPlatform) *platform = "crossplatform";
  return true;
}

}  // namespace typeprint
