// TrueType collections: each face rebuilt as a stand-alone sfnt font (its directory, then its
// tables one after the other, each padded to four bytes with a fresh checksum), read in place
// as an assembled face or copied out and written to its own file.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/sfnt_directory.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/fork_locator.h"

namespace typeprint {

// Status codes of the collection operations.
enum TTCStatus {
  kTTCSuccess = 0,
  kTTCNoFace = 1,        // index not below the count, empty face data, or a face not smaller than the file
  kTTCNotCollection = 2, // the file does not begin with "ttcf"
  kTTCBadVersion = 3,    // empty file, or a version other than 1.0 and 2.0
  kTTCFileError = 4,     // could not be opened, measured, read or written
  kTTCDamaged = 5,       // a face's offset table, directory or a table lies outside the file
};

// One table of a collection as a rebuilt face holds it: its word sum and CRC, each taken over
// the table and its zero padding.
struct TTCTableDigest {
  uint32_t checkSum = 0;
  uint32_t crc = 0;
};

// One face as rebuilt: its new directory in memory, its tables left where they lie in the
// collection. Reads, word sums and the CRC come out exactly as from the rebuilt bytes.
class TTCFace : public SfntAssembly {
 public:
  size_t size() const override { return size_; }
  ByteSpan read(size_t offset, size_t length, std::vector<uint8_t>& scratch) const override;
  bool knownWordSum(size_t offset, size_t length, uint32_t& sum) const override;
  const SfntDirectory* directory() const override { return &directory_; }
  // The CRC-32 of the rebuilt face.
  uint32_t crc() const;
  // The rebuilt face, byte for byte.
  void materialise(std::vector<uint8_t>& out) const;

 private:
  friend class TrueTypeCollectionFont;
  struct Table {
    uint32_t sourceOffset, length, paddedLength, newOffset;
    TTCTableDigest digest;
  };
  // The bytes at `offset`: a view of the piece it falls in (data null for padding) and how many
  // bytes of that piece remain from there.
  ByteSpan pieceAt(size_t offset, bool& zeros) const;

  std::vector<uint8_t> header_;  // offset table and directory with new offsets and checksums
  std::vector<Table> tables_;    // directory order, which is also their order in the face
  SfntDirectory directory_;      // the rebuilt directory, read back once
  ByteSpan source_;
  size_t size_ = 0;
};

class TrueTypeCollectionFont {
 public:
  // Maps and checks the file; a failure leaves no data and shows only in faceCount().
  explicit TrueTypeCollectionFont(const std::string& path);
  // Checks a collection already in memory; the bytes are borrowed.
  explicit TrueTypeCollectionFont(ByteSpan bytes);
  virtual ~TrueTypeCollectionFont() = default;
  TrueTypeCollectionFont(const TrueTypeCollectionFont&) = delete;
  TrueTypeCollectionFont& operator=(const TrueTypeCollectionFont&) = delete;

  // Maps the file at the path given and checks its header; the status of that.
  int ReadIntoMemory();
  // numFonts, or 0 when there is no data of more than 12 bytes.
  unsigned int faceCount() const;
  // The faces whose offset entry lies inside the file: no face after them can be read, so walks
  // over a damaged count stop there.
  unsigned int faceCountInFile() const;
  // Of the faces in the file, those whose offset no earlier face has, in order: a face listed
  // again reads exactly as it did the first time.
  std::vector<unsigned int> facesAtDistinctOffsets() const;
  // Face `face` rebuilt in place (see TTCFace).
  int GetFaceLayout(unsigned int face, TTCFace& out);
  // Face `face` rebuilt as bytes; out is emptied on failure.
  int GetDataPtrForFace(unsigned int face, std::vector<uint8_t>& out);
  // Writes a rebuilt face to <outputDirectory>[/]<n>.ttf, n the first free number from `face`.
  // A failed write gives kTTCFileError, and *writeFailure (when given) says why.
  int WriteTTF(const std::vector<uint8_t>& faceData, unsigned int face, const std::string& outputDirectory,
               std::string& writtenPath, WriteResult* writeFailure = nullptr);
  // Rebuilds and writes every face; the status of the last face that failed, else 0. When a
  // write failed, *writeFailure (when given) holds the last such failure.
  static int SeparateTTCFonts(const std::string& collectionPath, const std::string& outputDirectory,
                              std::vector<std::string>& writtenPaths, WriteResult* writeFailure = nullptr);

 private:
  int checkHeader();
  TTCTableDigest digest(uint32_t offset, uint32_t length);

  std::string path_;
  std::optional<FileForks> forks_;
  ByteSpan data_;
  // Tables that several faces share are summed once.
  std::map<std::pair<uint32_t, uint32_t>, TTCTableDigest> digests_;
};

}  // namespace typeprint
