#include "compare/file_content.h"

#include <algorithm>
#include <vector>

#include "analysis/checksums.h"
#include "base/be_reader.h"
#include "platform/linux/mapped_file.h"

namespace typeprint::compare {
namespace {

constexpr uint32_t kCollectionTag = tag("ttcf");
constexpr uint32_t kHeadTag = tag("head");
constexpr size_t kTableRecordSize = 16;
constexpr size_t kHeadChecksumAdjustment = 8;

struct TableRecord {
  uint32_t tag, offset, length;
};

// The offset of face `face`'s table directory: 0 for a single font; from the collection header
// (tag, version, numFonts, then one u32 offset per font) otherwise.
std::optional<uint32_t> directoryOffset(ByteSpan bytes, uint32_t face) {
  BEReader header(bytes);
  if (header.u32() != kCollectionTag) return face == 0 ? std::optional<uint32_t>(0) : std::nullopt;
  header.skip(4);
  const uint32_t numFonts = header.u32();
  if (!header.ok() || face >= numFonts) return std::nullopt;
  header.skip(size_t(face) * 4);
  const uint32_t offset = header.u32();
  if (!header.ok()) return std::nullopt;
  return offset;
}

// The table directory at `offset`: sfntVersion, numTables, three search fields, then records of
// tag, checksum, offset (from the start of the file) and length.
std::optional<std::vector<TableRecord>> tableRecords(ByteSpan bytes, uint32_t offset) {
  BEReader dir = BEReader(bytes).at(offset, bytes.size - std::min<size_t>(offset, bytes.size));
  dir.skip(4);
  const uint16_t numTables = dir.u16();
  dir.skip(6);
  if (!dir.ok() || offset > bytes.size || numTables > dir.remaining() / kTableRecordSize) return std::nullopt;
  std::vector<TableRecord> records(numTables);
  for (TableRecord& r : records) {
    r.tag = dir.u32();
    dir.skip(4);
    r.offset = dir.u32();
    r.length = dir.u32();
    if (r.offset > bytes.size || r.length > bytes.size - r.offset) return std::nullopt;
  }
  std::sort(records.begin(), records.end(), [](const TableRecord& a, const TableRecord& b) { return a.tag < b.tag; });
  return records;
}

uint32_t crcOfWord(uint32_t value, uint32_t crc) {
  const uint8_t word[4] = {uint8_t(value >> 24), uint8_t(value >> 16), uint8_t(value >> 8), uint8_t(value)};
  return CChecksum::icrc(word, sizeof word, crc);
}

}  // namespace

std::optional<uint32_t> FileContent::wholeCrc(const std::string& path) {
  auto found = crcs_.find(path);
  if (found != crcs_.end()) return found->second;
  std::optional<uint32_t> crc;
  if (std::shared_ptr<const MappedFile> file = MappedFile::open(path)) crc = CChecksum::icrc(file->bytes(), 0);
  crcs_[path] = crc;
  return crc;
}

bool FileContent::sameBytes(const std::string& a, const std::string& b) {
  const std::optional<uint32_t> crcA = wholeCrc(a), crcB = wholeCrc(b);
  if (!crcA || !crcB || *crcA != *crcB) return false;
  // Equal CRCs of files of equal size are very likely equal files; the bytes settle it.
  std::shared_ptr<const MappedFile> fileA = MappedFile::open(a), fileB = MappedFile::open(b);
  if (!fileA || !fileB || fileA->bytes().size != fileB->bytes().size) return false;
  return std::equal(fileA->bytes().data, fileA->bytes().data + fileA->bytes().size, fileB->bytes().data);
}

const std::optional<FileContent::TableSums>& FileContent::tableSums(const std::string& path, uint32_t face) {
  const auto key = std::make_pair(path, face);
  auto found = tables_.find(key);
  if (found != tables_.end()) return found->second;
  std::optional<TableSums>& sums = tables_[key];
  std::shared_ptr<const MappedFile> file = MappedFile::open(path);
  if (!file) return sums;
  const ByteSpan bytes = file->bytes();
  const std::optional<uint32_t> offset = directoryOffset(bytes, face);
  if (!offset) return sums;
  const std::optional<std::vector<TableRecord>> records = tableRecords(bytes, *offset);
  if (!records || records->empty()) return sums;
  sums.emplace();
  for (const TableRecord& r : *records) {
    const ByteSpan table = bytes.sub(r.offset, r.length);
    uint32_t crc = 0;
    if (r.tag == kHeadTag && table.size >= kHeadChecksumAdjustment + 4) {
      const size_t rest = kHeadChecksumAdjustment + 4;
      crc = CChecksum::icrc(table.sub(0, kHeadChecksumAdjustment), 0);
      crc = CChecksum::icrc(table.sub(rest, table.size - rest), CChecksum::zeros(crc, 4));
    } else {
      crc = CChecksum::icrc(table, 0);
    }
    const char name[5] = {char(r.tag >> 24), char(r.tag >> 16), char(r.tag >> 8), char(r.tag), 0};
    sums->tables[name] = crc;
    sums->digest = crcOfWord(crc, crcOfWord(r.length, crcOfWord(r.tag, sums->digest)));
  }
  return sums;
}

}  // namespace typeprint::compare
