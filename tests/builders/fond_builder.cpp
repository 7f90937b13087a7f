#include "builders/fond_builder.h"

#include "base/be_writer.h"

namespace typeprint::test {
namespace {

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
  std::vector<Bytes> strings{bytesOf(base)};
  const size_t firstSuffix = 2 + suffixes.size();
  for (size_t i = 0; i < suffixes.size(); ++i) {
    strings.push_back(Bytes{uint8_t(firstSuffix + i)});
    styleIndex(suffixes[i].first, uint8_t(2 + i));
  }
  for (const auto& suffix : suffixes) strings.push_back(bytesOf(suffix.second));
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
  BEWriter b;
  b.u16(0x1000);  // flags
  b.u16(uint16_t(familyID_));
  b.u16(0);    // first character
  b.u16(255);  // last character
  b.zeros(8);
  b.u32(0);  // no glyph-width table
  b.u32(uint32_t(l.kernTable));
  b.u32(uint32_t(l.styleTable));
  b.zeros(20);
  b.u16(uint16_t(intl1_));
  b.u16(2);  // version
  b.u16(uint16_t(entries_.size() - 1));
  for (const Entry& e : entries_)
    for (uint16_t field : {uint16_t(e.pointSize), e.style, uint16_t(e.resID)}) b.u16(field);
  if (!kerning_.empty()) {
    b.u16(uint16_t(kerning_.size() - 1));
    for (const Kern& k : kerning_) {
      b.u16(k.style);
      b.u16(uint16_t(k.pairCount));
      for (int i = 0; i < k.pairCount; ++i) {
        b.u8(uint8_t(i));
        b.u8(uint8_t(i + 1));
        b.u16(uint16_t(i));
      }
    }
  }
  if (hasStyleTable_) {
    b.u16(0x005D);  // font class
    b.zeros(8);     // no glyph-encoding subtable
    b.bytes(ByteSpan(index_, 48));
    b.u16(uint16_t(strings_.size()));
    for (const Bytes& s : strings_) {
      b.u8(uint8_t(s.size()));
      b.bytes(s);
    }
  }
  return b.take();
}

}  // namespace typeprint::test
