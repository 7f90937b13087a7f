#include "analysis/ttc_split.h"

#include <algorithm>
#include <unordered_set>

#include "analysis/checksums.h"
#include "base/be_writer.h"
#include "base/diagnostics.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/file_system.h"

namespace typeprint {
namespace {

// Collection header: tag "ttcf", version u32 (1.0 or 2.0), numFonts u32, then numFonts u32
// offsets of each face's offset table from the start of the file. Version 2.0 fields after the
// offsets are not read.
constexpr uint32_t kTagTTCF = tag("ttcf");
constexpr size_t kTTCHeaderSize = 12;
constexpr unsigned kNameAttempts = 100;
constexpr const char* kTopic = "collection";

uint64_t padded(uint64_t length) { return (length + 3) & ~uint64_t(3); }

}  // namespace

ByteSpan TTCFace::pieceAt(size_t offset, bool& zeros) const {
  zeros = false;
  if (offset < header_.size()) return ByteSpan(header_).sub(offset, header_.size() - offset);
  auto next = std::upper_bound(tables_.begin(), tables_.end(), offset,
                               [](size_t at, const Table& t) { return at < t.newOffset; });
  if (next == tables_.begin()) return {};
  const Table& t = *(next - 1);
  size_t into = offset - t.newOffset;
  if (into < t.length) return source_.sub(t.sourceOffset + into, t.length - into);
  zeros = true;
  return ByteSpan(nullptr, t.paddedLength - into);
}

ByteSpan TTCFace::read(size_t offset, size_t length, std::vector<uint8_t>& scratch) const {
  if (offset > size_ || length > size_ - offset || length == 0) return {};
  bool zeros = false;
  ByteSpan first = pieceAt(offset, zeros);
  if (!zeros && first.size >= length) return first.sub(0, length);
  // The range spans pieces: put it together.
  scratch.clear();
  while (scratch.size() < length) {
    ByteSpan piece = pieceAt(offset + scratch.size(), zeros);
    size_t n = std::min(piece.size, length - scratch.size());
    if (n == 0) return {};
    if (zeros) scratch.insert(scratch.end(), n, 0);
    else scratch.insert(scratch.end(), piece.data, piece.data + n);
  }
  return ByteSpan(scratch);
}

bool TTCFace::knownWordSum(size_t offset, size_t length, uint32_t& sum) const {
  for (const Table& t : tables_) {
    if (t.newOffset == offset && t.length == length && length % 4 == 0) {
      sum = t.digest.checkSum;
      return true;
    }
  }
  return false;
}

uint32_t TTCFace::crc() const {
  uint32_t crc = CChecksum::icrc(ByteSpan(header_), 0);
  for (const Table& t : tables_) crc = CChecksum::combine(crc, t.digest.crc, t.paddedLength);
  return crc;
}

void TTCFace::materialise(std::vector<uint8_t>& out) const {
  out.assign(size_, 0);
  std::copy(header_.begin(), header_.end(), out.begin());
  for (const Table& t : tables_) {
    ByteSpan bytes = source_.sub(t.sourceOffset, t.length);
    std::copy(bytes.begin(), bytes.end(), out.begin() + t.newOffset);
  }
}

TrueTypeCollectionFont::TrueTypeCollectionFont(const std::string& path) : path_(path) { ReadIntoMemory(); }

TrueTypeCollectionFont::TrueTypeCollectionFont(ByteSpan bytes) : data_(bytes) {
  if (checkHeader() != kTTCSuccess) data_ = {};
}

int TrueTypeCollectionFont::ReadIntoMemory() {
  data_ = {};
  forks_ = openForks(path_);
  if (!forks_) return kTTCFileError;
  data_ = forks_->dataFork;
  int status = checkHeader();
  if (status != kTTCSuccess) {
    data_ = {};
    forks_.reset();
  }
  return status;
}

int TrueTypeCollectionFont::checkHeader() {
  if (data_.empty()) return kTTCBadVersion;
  BEReader r(data_);
  uint32_t tagValue = r.u32();
  if (!r.ok() || tagValue != kTagTTCF) return kTTCNotCollection;
  uint32_t version = r.u32();
  if (!r.ok()) return kTTCDamaged;
  if (version != 0x00010000 && version != 0x00020000) return kTTCBadVersion;
  if (data_.size <= kTTCHeaderSize) return kTTCDamaged;
  return kTTCSuccess;
}

unsigned int TrueTypeCollectionFont::faceCount() const {
  if (data_.size <= kTTCHeaderSize) return 0;
  BEReader r(data_);
  r.skip(8);
  return r.u32();
}

TTCTableDigest TrueTypeCollectionFont::digest(uint32_t offset, uint32_t length) {
  auto found = digests_.find({offset, length});
  if (found != digests_.end()) return found->second;
  ByteSpan bytes = data_.sub(offset, length);
  size_t padding = size_t(padded(length) - length);
  TTCTableDigest d;
  WordSumAndCrc(bytes, &d.checkSum, &d.crc);
  d.crc = CChecksum::zeros(d.crc, padding);
  digests_.emplace(std::make_pair(offset, length), d);
  return d;
}

unsigned int TrueTypeCollectionFont::faceCountInFile() const {
  const unsigned int listed = faceCount();
  if (listed == 0) return 0;
  // Entry i is readable while 12 + 4i + 4 < size.
  return unsigned(std::min<uint64_t>(listed, (data_.size - kTTCHeaderSize - 1) / 4));
}

std::vector<unsigned int> TrueTypeCollectionFont::facesAtDistinctOffsets() const {
  std::vector<unsigned int> faces;
  std::unordered_set<uint32_t> seen;
  BEReader list = BEReader(data_).from(kTTCHeaderSize);
  for (unsigned int face = 0, count = faceCountInFile(); face < count; ++face)
    if (seen.insert(list.u32()).second) faces.push_back(face);
  return faces;
}

int TrueTypeCollectionFont::GetFaceLayout(unsigned int face, TTCFace& out) {
  out = TTCFace();
  if (face >= faceCount()) return kTTCNoFace;
  // The face's entry in the offset list, and its 12-byte offset table, lie inside the file.
  uint64_t entryAt = kTTCHeaderSize + 4 * uint64_t(face);
  if (entryAt + 4 >= data_.size) {
    TP_REFUSE(kTopic, entryAt, "offset of face %u lies beyond the file's 0x%zX bytes", face, data_.size);
    return kTTCDamaged;
  }
  BEReader list = BEReader(data_).from(size_t(entryAt));
  uint64_t faceOffset = list.u32();
  if (faceOffset + kSfntHeaderSize >= data_.size) {
    TP_REFUSE(kTopic, entryAt, "face %u at 0x%llX lies beyond the file's 0x%zX bytes", face,
              static_cast<unsigned long long>(faceOffset), data_.size);
    return kTTCDamaged;
  }
  BEReader head = BEReader(data_).from(size_t(faceOffset));
  head.skip(4);
  uint16_t numTables = head.u16();
  uint64_t headerSize = kSfntHeaderSize + kDirectoryEntrySize * uint64_t(numTables);
  if (!head.ok() || headerSize > data_.size - faceOffset) {
    TP_REFUSE(kTopic, faceOffset, "table directory of face %u (%u tables) runs past the end of the file", face,
              unsigned(numTables));
    return kTTCDamaged;
  }

  // The directory entries: tag, checkSum, offset, length.
  BEReader dir = BEReader(data_).at(size_t(faceOffset + kSfntHeaderSize), size_t(headerSize - kSfntHeaderSize));
  uint64_t newSize = headerSize;
  out.tables_.reserve(numTables);
  for (unsigned i = 0; i < numTables; ++i) {
    dir.skip(8);
    TTCFace::Table t{};
    t.sourceOffset = dir.u32();
    t.length = dir.u32();
    t.paddedLength = uint32_t(padded(t.length));
    out.tables_.push_back(t);
    newSize += padded(t.length);
  }
  if (newSize >= data_.size) {
    TP_REFUSE(kTopic, faceOffset, "the tables of face %u add up to more than the file's 0x%zX bytes", face, data_.size);
    return kTTCNoFace;
  }

  BEWriter header;
  header.bytes(data_.sub(size_t(faceOffset), size_t(headerSize)));
  uint64_t at = headerSize;
  for (unsigned i = 0; i < numTables; ++i) {
    TTCFace::Table& t = out.tables_[i];
    if (t.sourceOffset > data_.size || t.paddedLength > data_.size - t.sourceOffset) {
      TP_REFUSE(kTopic, faceOffset + kSfntHeaderSize + kDirectoryEntrySize * i,
                "table %u of face %u at 0x%X, 0x%X bytes, runs past the file's 0x%zX bytes", i, face, t.sourceOffset,
                t.length, data_.size);
      out = TTCFace();
      return kTTCDamaged;
    }
    t.newOffset = uint32_t(at);
    t.digest = digest(t.sourceOffset, t.length);
    size_t entry = kSfntHeaderSize + kDirectoryEntrySize * i;
    header.patchU32(entry + 4, t.digest.checkSum);
    header.patchU32(entry + 8, t.newOffset);
    at += t.paddedLength;
  }
  out.header_ = header.take();
  out.source_ = data_;
  out.size_ = size_t(newSize);
  out.directory_ = SfntDirectory(SfntBytes(static_cast<const SfntAssembly&>(out)));
  return kTTCSuccess;
}

int TrueTypeCollectionFont::GetDataPtrForFace(unsigned int face, std::vector<uint8_t>& out) {
  out.clear();
  TTCFace layout;
  int status = GetFaceLayout(face, layout);
  if (status == kTTCSuccess) layout.materialise(out);
  return status;
}

int TrueTypeCollectionFont::WriteTTF(const std::vector<uint8_t>& faceData, unsigned int face,
                                     const std::string& outputDirectory, std::string& writtenPath,
                                     WriteResult* writeFailure) {
  writtenPath.clear();
  if (faceData.empty()) return kTTCNoFace;
  // A directory given with a slash anywhere gets one more before the number; a bare word does not.
  const std::string prefix = outputDirectory + (outputDirectory.find('/') != std::string::npos ? "/" : "");
  std::string name;
  for (unsigned n = face; n < face + kNameAttempts; ++n) {
    name = prefix + std::to_string(n) + ".ttf";
    if (posix::entryKind(name, false) == posix::EntryKind::Missing) break;
  }
  const WriteResult written = replaceFileAtomically(name, ByteSpan(faceData));
  if (!written) {
    if (writeFailure) *writeFailure = written;
    return kTTCFileError;
  }
  writtenPath = name;
  return kTTCSuccess;
}

int TrueTypeCollectionFont::SeparateTTCFonts(const std::string& collectionPath, const std::string& outputDirectory,
                                             std::vector<std::string>& writtenPaths, WriteResult* writeFailure) {
  TrueTypeCollectionFont collection(collectionPath);
  int status = kTTCSuccess;
  std::vector<uint8_t> faceData;
  for (unsigned face = 0; face < collection.faceCount(); ++face) {
    // Every face whose offset lies past the end of the list fails alike: stop at the first.
    if (kTTCHeaderSize + 4 * uint64_t(face) + 4 >= collection.data_.size) return kTTCDamaged;
    std::string written;
    int faceStatus = collection.GetDataPtrForFace(face, faceData);
    if (faceStatus == kTTCSuccess)
      faceStatus = collection.WriteTTF(faceData, face, outputDirectory, written, writeFailure);
    if (faceStatus == kTTCSuccess) writtenPaths.push_back(written);
    else status = faceStatus;
  }
  return status;
}

}  // namespace typeprint
