#include "builders/fond_builder.h"

#include "foundation/be_writer.h"

namespace typeprint::test {
namespace {

constexpr size_t kHeaderSize = 52;
constexpr size_t kWidthsPerStyle = 3;  // last - first + 3 with first = last = 0
constexpr size_t kIndexTableSize = 48;

}  // namespace

FondBuilder& FondBuilder::familyID(int16_t id) {
  familyID_ = id;
  return *this;
}

FondBuilder& FondBuilder::entry(int16_t pointSize, uint16_t style, int16_t resID) {
  entries_.push_back({pointSize, style, resID});
  return *this;
}

FondBuilder& FondBuilder::widths(std::vector<uint16_t> styles) {
  widthStyles_ = std::move(styles);
  return *this;
}

FondBuilder& FondBuilder::kerning(uint16_t style, uint16_t pairs) {
  kerning_.push_back({style, pairs});
  return *this;
}

FondBuilder& FondBuilder::styleNames(std::vector<uint8_t> indexes, std::vector<Bytes> strings) {
  hasStyleTable_ = true;
  indexes_ = std::move(indexes);
  strings_ = std::move(strings);
  return *this;
}

FondBuilder::Layout FondBuilder::layout() const {
  Layout l{};
  l.entries = kHeaderSize + 2;
  size_t at = l.entries + 6 * entries_.size();
  if (!widthStyles_.empty()) {
    l.widthTable = at;
    at += 2 + widthStyles_.size() * (2 + 2 * kWidthsPerStyle);
  }
  if (!kerning_.empty()) {
    l.kerningTable = at;
    at += 2;
    for (const Kerning& k : kerning_) at += 4 + 4 * size_t(k.pairs);
  }
  if (hasStyleTable_) {
    l.styleTable = at;
    at += 60;
    for (const Bytes& s : strings_) at += 1 + s.size();
  }
  l.end = at;
  return l;
}

Bytes FondBuilder::build() const {
  const Layout l = layout();
  BEWriter w;
  w.u16(0x1000);  // flags
  w.u16(uint16_t(familyID_));
  w.u16(0);  // first character
  w.u16(0);  // last character
  w.zeros(8);  // ascent, descent, leading, widMax
  w.u32(uint32_t(l.widthTable));
  w.u32(uint32_t(l.kerningTable));
  w.u32(uint32_t(l.styleTable));
  w.zeros(18 + 4);  // extra widths per style, international words
  w.u16(2);         // version
  w.u16(uint16_t(int(entries_.size()) - 1));
  for (const Entry& e : entries_) {
    w.u16(uint16_t(e.pointSize));
    w.u16(e.style);
    w.u16(uint16_t(e.resID));
  }
  if (!widthStyles_.empty()) {
    w.u16(uint16_t(widthStyles_.size() - 1));
    for (uint16_t style : widthStyles_) {
      w.u16(style);
      for (size_t i = 0; i < kWidthsPerStyle; ++i) w.u16(0x1000);
    }
  }
  if (!kerning_.empty()) {
    w.u16(uint16_t(kerning_.size() - 1));
    for (const Kerning& k : kerning_) {
      w.u16(k.style);
      w.u16(k.pairs);
      for (uint16_t p = 0; p < k.pairs; ++p) w.u32(0x41560000u | p);  // 'A' 'V', distance p
    }
  }
  if (hasStyleTable_) {
    w.u16(0x001D);  // font class
    w.u32(0);       // no glyph-encoding subtable
    w.u32(0);
    for (size_t i = 0; i < kIndexTableSize; ++i) w.u8(i < indexes_.size() ? indexes_[i] : 0);
    w.u16(uint16_t(strings_.size()));
    for (const Bytes& s : strings_) {
      w.u8(uint8_t(s.size()));
      w.bytes(s);
    }
  }
  return w.take();
}

}  // namespace typeprint::test
