#include "builders/resource_fork_builder.h"

#include <algorithm>

#include "base/be_writer.h"

namespace typeprint::test {

ResourceForkBuilder& ResourceForkBuilder::add(const char (&type)[5], int16_t id, Bytes data, const std::string& name,
                                              uint8_t attributes) {
  resources_.push_back({tag(type), id, std::move(data), name, attributes});
  return *this;
}

std::vector<uint32_t> ResourceForkBuilder::typeOrder() const {
  std::vector<uint32_t> types;
  for (const Resource& r : resources_)
    if (std::find(types.begin(), types.end(), r.type) == types.end()) types.push_back(r.type);
  return types;
}

ResourceForkBuilder::Layout ResourceForkBuilder::layout() const {
  std::vector<uint32_t> types = typeOrder();
  size_t dataLength = 0;
  for (const Resource& r : resources_) dataLength += 4 + r.data.size();
  Layout l;
  l.dataOffset = 256;
  l.mapOffset = 256 + dataLength;
  l.typeList = l.mapOffset + 28;
  for (size_t t = 0; t < types.size(); ++t) l.typeEntries.push_back(l.typeList + 2 + 8 * t);
  size_t reference = l.typeList + 2 + 8 * types.size();
  for (uint32_t type : types)
    for (const Resource& r : resources_)
      if (r.type == type) {
        l.references.push_back(reference);
        reference += 12;
      }
  l.nameList = reference;
  return l;
}

Bytes ResourceForkBuilder::build() const {
  std::vector<uint32_t> types = typeOrder();
  Layout l = layout();
  BEWriter w;
  w.zeros(256);
  std::vector<uint32_t> dataOffsets;
  for (uint32_t type : types)
    for (const Resource& r : resources_)
      if (r.type == type) {
        dataOffsets.push_back(uint32_t(w.size() - 256));
        w.u32(uint32_t(r.data.size()));
        w.bytes(r.data);
      }
  w.zeros(16 + 6);
  w.u16(0);
  w.u16(28);
  w.u16(uint16_t(l.nameList - l.mapOffset));
  w.u16(uint16_t(types.size() - 1));
  size_t before = 0;
  for (uint32_t type : types) {
    size_t n = size_t(std::count_if(resources_.begin(), resources_.end(), [&](const Resource& r) { return r.type == type; }));
    w.u32(type);
    w.u16(uint16_t(n - 1));
    w.u16(uint16_t(2 + 8 * types.size() + 12 * before));
    before += n;
  }
  size_t index = 0, nameOffset = 0;
  std::string names;
  for (uint32_t type : types)
    for (const Resource& r : resources_)
      if (r.type == type) {
        w.u16(uint16_t(r.id));
        w.u16(r.name.empty() ? 0xFFFF : uint16_t(nameOffset));
        w.u8(r.attributes);
        w.u24(dataOffsets[index++]);
        w.u32(0);
        if (!r.name.empty()) {
          names += char(r.name.size());
          names += r.name;
          nameOffset += 1 + r.name.size();
        }
      }
  for (char c : names) w.u8(uint8_t(c));
  const uint32_t header[4] = {256, uint32_t(l.mapOffset), uint32_t(l.mapOffset - 256), uint32_t(w.size() - l.mapOffset)};
  for (size_t i = 0; i < 4; ++i) {
    w.patchU32(4 * i, header[i]);
    w.patchU32(l.mapOffset + 4 * i, header[i]);
  }
  return w.take();
}

}  // namespace typeprint::test
