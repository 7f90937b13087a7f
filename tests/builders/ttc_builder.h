// Builds TrueType collections whose faces may share tables: the header, each face's offset
// table and directory, then every table once, padded to four bytes.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "builders/sfnt_builder.h"

namespace typeprint::test {

class TtcBuilder {
 public:
  explicit TtcBuilder(uint32_t version = 0x00010000) : version_(version) {}
  // Adds a table that faces refer to by the returned number.
  int addTable(Bytes data);
  // Adds a face made of (tag, table number) pairs, in directory order.
  TtcBuilder& face(std::vector<std::pair<std::string, int>> tables);
  Bytes build() const;

  // Where the offset of face `index` stands in the header.
  static size_t faceOffsetEntry(size_t index) { return 12 + 4 * index; }

 private:
  uint32_t version_;
  std::vector<Bytes> tables_;
  std::vector<std::vector<std::pair<std::string, int>>> faces_;
};

}  // namespace typeprint::test
