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

  // The CRC-32 of the face's tables in tag order, each with its tag and length, and `head` with
  // its checksum adjustment left out: the same for a face inside a collection and the same face
  // written alone, whatever the table order and padding. Nothing when the file holds no sfnt
  // face at that index.
  std::optional<uint32_t> tableDigest(const std::string& path, uint32_t face);

 private:
  std::optional<uint32_t> wholeCrc(const std::string& path);
  std::map<std::string, std::optional<uint32_t>> crcs_;
  std::map<std::pair<std::string, uint32_t>, std::optional<uint32_t>> digests_;
};

}  // namespace typeprint::compare
