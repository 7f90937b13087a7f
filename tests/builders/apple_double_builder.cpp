#include "builders/apple_double_builder.h"

#include "base/be_writer.h"

namespace typeprint::test {

AppleDoubleBuilder AppleDoubleBuilder::appleSingle() { return AppleDoubleBuilder(0x00051600); }
AppleDoubleBuilder AppleDoubleBuilder::appleDouble() { return AppleDoubleBuilder(0x00051607); }

AppleDoubleBuilder& AppleDoubleBuilder::entry(uint32_t id, Bytes data) {
  entries_.emplace_back(id, std::move(data));
  return *this;
}

AppleDoubleBuilder& AppleDoubleBuilder::finderInfo(const char (&type)[5], const char (&creator)[5]) {
  BEWriter w;
  w.u32(tag(type));
  w.u32(tag(creator));
  w.zeros(24);
  return entry(9, w.take());
}

AppleDoubleBuilder& AppleDoubleBuilder::version(uint32_t v) {
  version_ = v;
  return *this;
}

Bytes AppleDoubleBuilder::build() const {
  BEWriter w;
  w.u32(magic_);
  w.u32(version_);
  w.zeros(16);
  w.u16(uint16_t(entries_.size()));
  uint32_t offset = uint32_t(26 + 12 * entries_.size());
  for (const auto& [id, data] : entries_) {
    w.u32(id);
    w.u32(offset);
    w.u32(uint32_t(data.size()));
    offset += uint32_t(data.size());
  }
  for (const auto& e : entries_) w.bytes(e.second);
  return w.take();
}

}  // namespace typeprint::test
