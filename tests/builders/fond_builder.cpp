#include "builders/fond_builder.h"

namespace typeprint::test {
namespace {

void putU16(Bytes& b, uint16_t v) {
  b.push_back(uint8_t(v >> 8));
  b.push_back(uint8_t(v));
}

void putU32(Bytes& b, uint32_t v) {
  putU16(b, uint16_t(v >> 16));
  putU16(b, uint16_t(v));
}

constexpr size_t kHeaderSize = 52;

}  // namespace

FondBuilder& FondBuilder::familyID(int16_t id) {
  familyID_ = id;
  return *this;
}

FondBuilder& FondBuilder::intl1(int16_t value) {
  intl1_ = value;
  return *this;
}

FondBuilder& FondBuilder::entry(int16_t pointSize, uint16_t style, int16_t resID) {
  entries_.push_back({pointSize, style, resID});
  return *this;
}

FondBuilder& FondBuilder::kerning(uint16_t style, int16_t pairCount) {
  kerning_.push_back({style, pairCount});
  return *this;
}

FondBuilder& FondBuilder::styleStrings(std::vector<Bytes> strings) {
  hasStyleTable_ = true;
  strings_ = std::move(strings);
  return *this;
}

FondBuilder& FondBuilder::styleIndex(int index, uint8_t stringNumber) {
  hasStyleTable_ = true;
  index_[index] = stringNumber;
  return *this;
}

FondBuilder& FondBuilder::postScriptNames(const std::string& base,
                                          const std::vector<std::pair<int, std::string>>& suffixes) {
  std::vector<Bytes> strings{bytesOf(base.c_str())};
  const size_t firstSuffix = 2 + suffixes.size();
  for (size_t i = 0; i < suffixes.size(); ++i) {
    strings.push_back(Bytes{uint8_t(firstSuffix + i)});
    styleIndex(suffixes[i].first, uint8_t(2 + i));
  }
  for (const auto& suffix : suffixes) strings.push_back(bytesOf(suffix.second.c_str()));
  return styleStrings(std::move(strings));
}

FondBuilder::Layout FondBuilder::layout() const {
  Layout l{kHeaderSize + 2, 0, 0};
  size_t at = l.entries + 6 * entries_.size();
  if (!kerning_.empty()) {
    l.kernTable = at;
    at += 2;
    for (const Kern& k : kerning_) at += 4 + 4 * size_t(k.pairCount > 0 ? k.pairCount : 0);
  }
  if (hasStyleTable_) l.styleTable = at;
  return l;
}

Bytes FondBuilder::build() const {
  const Layout l = layout();
  Bytes b;
  putU16(b, 0x1000);  // flags
  putU16(b, uint16_t(familyID_));
  putU16(b, 0);    // first character
  putU16(b, 255);  // last character
  while (b.size() < 16) b.push_back(0);
  putU32(b, 0);  // no glyph-width table
  putU32(b, uint32_t(l.kernTable));
  putU32(b, uint32_t(l.styleTable));
  while (b.size() < 48) b.push_back(0);
  putU16(b, uint16_t(intl1_));
  putU16(b, 2);  // version
  putU16(b, uint16_t(entries_.size() - 1));
  for (const Entry& e : entries_) {
    putU16(b, uint16_t(e.pointSize));
    putU16(b, e.style);
    putU16(b, uint16_t(e.resID));
  }
  if (!kerning_.empty()) {
    putU16(b, uint16_t(kerning_.size() - 1));
    for (const Kern& k : kerning_) {
      putU16(b, k.style);
      putU16(b, uint16_t(k.pairCount));
      for (int i = 0; i < k.pairCount; ++i) {
        b.push_back(uint8_t(i));
        b.push_back(uint8_t(i + 1));
        putU16(b, uint16_t(i));
      }
    }
  }
  if (hasStyleTable_) {
    putU16(b, 0x005D);  // font class
    putU32(b, 0);       // no glyph-encoding subtable
    putU32(b, 0);
    b.insert(b.end(), index_, index_ + 48);
    putU16(b, uint16_t(strings_.size()));
    for (const Bytes& s : strings_) {
      b.push_back(uint8_t(s.size()));
      b.insert(b.end(), s.begin(), s.end());
    }
  }
  return b;
}

}  // namespace typeprint::test
