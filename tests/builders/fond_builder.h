// Builds a family record (`FOND`): the 52-byte header, the association entries, and, when asked
// for, a glyph-width table, a kerning table and a style-mapping table, laid out in that order
// after the entries with their offsets filled in. layout() says where each part landed, so a
// test can break one field.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "builders/byte_edits.h"

namespace typeprint::test {

class FondBuilder {
 public:
  FondBuilder& familyID(int16_t id);
  FondBuilder& entry(int16_t pointSize, uint16_t style, int16_t resID);
  // A glyph-width table with one row per style (first and last character 0, so three widths).
  FondBuilder& widths(std::vector<uint16_t> styles);
  // A kerning subtable for `style` holding `pairs` pairs.
  FondBuilder& kerning(uint16_t style, uint16_t pairs);
  // The style-mapping table: index bytes for style indexes 0.. (the rest 0) and the name table's
  // strings, each given without its length byte.
  FondBuilder& styleNames(std::vector<uint8_t> indexes, std::vector<Bytes> strings);
  Bytes build() const;

  // Offsets from the start of the family; 0 for an absent table.
  struct Layout {
    size_t entries, widthTable, kerningTable, styleTable, end;
  };
  Layout layout() const;

  // A name-table string that lists other strings by number.
  static Bytes stringList(std::vector<uint8_t> numbers) { return numbers; }
  static Bytes text(const std::string& s) { return Bytes(s.begin(), s.end()); }

 private:
  struct Entry {
    int16_t pointSize;
    uint16_t style;
    int16_t resID;
  };
  struct Kerning {
    uint16_t style, pairs;
  };
  int16_t familyID_ = 128;
  std::vector<Entry> entries_;
  std::vector<uint16_t> widthStyles_;
  std::vector<Kerning> kerning_;
  bool hasStyleTable_ = false;
  std::vector<uint8_t> indexes_;
  std::vector<Bytes> strings_;
};

}  // namespace typeprint::test
