// Questions about file bytes that only some pairs of copies raise, answered by reading the files
// when first asked and remembering the answer: whether two files hold the same bytes, and a
// digest of an sfnt face's tables that no layout changes.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace typeprint::compare {

class FileContent {
 public:
  // Whether the two files hold the same bytes; false when either cannot be read.
  bool sameBytes(const std::string& a, const std::string& b);

  // The CRC-32 of each of the face's tables by tag, `head` without its checksum adjustment, and
  // a digest of them all: the same for a face inside a collection and the same face written
  // alone, whatever the table order and padding. Nothing when the file holds no sfnt face at
  // that index.
  struct TableSums {
    std::map<std::string, uint32_t> tables;
    uint32_t digest = 0;
  };
  const std::optional<TableSums>& tableSums(const std::string& path, uint32_t face);

 private:
  std::optional<uint32_t> wholeCrc(const std::string& path);
  std::map<std::string, std::optional<uint32_t>> crcs_;
  std::map<std::pair<std::string, uint32_t>, std::optional<TableSums>> tables_;
};

}  // namespace typeprint::compare
