// Builds sfnt fonts and naming tables byte by byte, with offsets, padding and checksums filled
// in, so that a test can start from a valid font and break exactly one thing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "builders/byte_edits.h"

namespace typeprint::test {

// UTF-16 big-endian code units of the given units.
Bytes utf16be(const std::u16string& text);
// The sum of the big-endian words of `bytes` padded with zeros to a multiple of four.
uint32_t wordSum(const Bytes& bytes);

class SfntBuilder {
 public:
  explicit SfntBuilder(uint32_t version = 0x00010000) : version_(version) {}
  // Adds a table; tables are laid out in the order added, each padded to four bytes.
  SfntBuilder& table(const std::string& tag, Bytes data);
  // A table of `length` bytes counting 1, 2, 3...
  SfntBuilder& table(const std::string& tag, size_t length);
  // Leaves the last table unpadded, so that it ends at the font's last byte.
  SfntBuilder& unpaddedEnd() { unpaddedEnd_ = true; return *this; }
  Bytes build() const;

  // Where directory entry `index` stands, and where build() puts table `index`.
  static size_t entryOffset(size_t index) { return 12 + 16 * index; }
  size_t tableOffset(size_t index) const;

 private:
  struct Table { std::string tag; Bytes data; };
  uint32_t version_;
  std::vector<Table> tables_;
  bool unpaddedEnd_ = false;
};

struct NameRecordSpec {
  uint16_t platformID, encodingID, languageID, nameID;
  Bytes text;
};

// A naming table (format 0) holding the records in the order given, strings after them.
Bytes nameTable(const std::vector<NameRecordSpec>& records);

// A font with the tables every platform needs and the given naming table.
Bytes fontWithNames(const std::vector<NameRecordSpec>& records);

}  // namespace typeprint::test
