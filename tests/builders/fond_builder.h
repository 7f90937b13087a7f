// Builds a family resource (`FOND`): the 52-byte header, the association table, and optionally a
// kerning table and a style-mapping table after it, with their offsets filled in. layout() says
// where each part landed, so a test can break one field.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "builders/byte_edits.h"

namespace typeprint::test {

class FondBuilder {
 public:
  FondBuilder& familyID(int16_t id);
  // The second international word (offset 48); non-zero marks a double-byte family.
  FondBuilder& intl1(int16_t value);
  FondBuilder& entry(int16_t pointSize, uint16_t style, int16_t resID);
  // A kerning-table entry of `pairCount` pairs; pair i is (i, i + 1, distance i).
  FondBuilder& kerning(uint16_t style, int16_t pairCount);
  // A style-mapping table with these name-table strings (string 1 first, raw bytes) and index
  // bytes (style index -> string number; unset indexes are 0).
  FondBuilder& styleStrings(std::vector<Bytes> strings);
  FondBuilder& styleIndex(int index, uint8_t stringNumber);
  // The usual way of writing PostScript names: base, then for each style index its suffix,
  // stored as a one-number list string pointing at the suffix string.
  FondBuilder& postScriptNames(const std::string& base, const std::vector<std::pair<int, std::string>>& suffixes);
  Bytes build() const;

  struct Layout {
    size_t entries;     // first association entry
    size_t kernTable;   // 0 when none
    size_t styleTable;  // 0 when none
  };
  Layout layout() const;

 private:
  struct Entry {
    int16_t pointSize;
    uint16_t style;
    int16_t resID;
  };
  struct Kern {
    uint16_t style;
    int16_t pairCount;
  };
  int16_t familyID_ = 128;
  int16_t intl1_ = 0;
  std::vector<Entry> entries_;
  std::vector<Kern> kerning_;
  bool hasStyleTable_ = false;
  std::vector<Bytes> strings_;
  uint8_t index_[48] = {};
};

}  // namespace typeprint::test
