#include "resources/resource_map.h"

#include <algorithm>
#include <utility>

#include "base/be_writer.h"
#include "base/diagnostics.h"

namespace typeprint {
namespace {

constexpr size_t kForkHeaderSize = 16;
constexpr size_t kDataStart = 256;
constexpr size_t kMapHeaderSize = 28;
constexpr size_t kTypeEntrySize = 8;
constexpr size_t kReferenceSize = 12;
constexpr uint16_t kNoName = 0xFFFF;
constexpr uint16_t kMapChanged = 0x20;
constexpr uint32_t kMaxDataOffset = 0xFFFFFF;
constexpr uint32_t kMaxMapOffset = 0xFFFF;
constexpr const char* kTopic = "resource map";

struct Span {
  size_t begin, end;
};

// Reference lists must not overlap each other or the type list: a map whose lists share bytes
// was not written by a resource manager.
bool listsOverlap(std::vector<Span> lists) {
  std::sort(lists.begin(), lists.end(), [](const Span& a, const Span& b) { return a.begin < b.begin; });
  for (size_t i = 1; i < lists.size(); ++i)
    if (lists[i].begin < lists[i - 1].end) return true;
  return false;
}

// The resource's length word and bytes, at `offset` from the start of the data area.
std::optional<ByteSpan> readResourceData(const BEReader& data, uint32_t offset) {
  BEReader r = data.from(offset);
  uint32_t length = r.u32();
  ByteSpan bytes = r.span(length);
  if (!r.ok()) return std::nullopt;
  return bytes;
}

// A Pascal string at `offset` from the start of the name list.
std::optional<std::string> readName(const BEReader& names, uint16_t offset) {
  BEReader r = names.from(offset);
  uint8_t length = r.u8();
  ByteSpan bytes = r.span(length);
  if (!r.ok()) return std::nullopt;
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace

std::optional<ResourceMap> ResourceMap::read(ByteSpan fork) {
  // Fork header: offset of the data, offset of the map, length of the data, length of the map.
  BEReader r(fork);
  uint32_t dataOffset = r.u32(), mapOffset = r.u32(), dataLength = r.u32(), mapLength = r.u32();
  if (!r.ok()) return TP_REFUSE(kTopic, 0, "fork of %zu bytes is shorter than its 16-byte header", fork.size);
  BEReader data = r.at(dataOffset, dataLength);
  BEReader map = r.at(mapOffset, mapLength);
  if (!data.ok())
    return TP_REFUSE(kTopic, 0, "resource data at 0x%X, 0x%X bytes, runs past the fork's 0x%zX bytes", dataOffset,
                     dataLength, fork.size);
  if (!map.ok())
    return TP_REFUSE(kTopic, 4, "map at 0x%X, 0x%X bytes, runs past the fork's 0x%zX bytes", mapOffset, mapLength,
                     fork.size);
  if (mapLength < kMapHeaderSize + 2)
    return TP_REFUSE(kTopic, 12, "map length %u is shorter than a map header", mapLength);

  // Map header: a copy of the fork header (or zeros; never trusted), a handle and a file
  // reference (memory only), the attributes, and the type-list and name-list offsets from the
  // start of the map.
  ResourceMap result;
  ByteSpan copy = map.span(kForkHeaderSize);
  result.mapHeaderIsCopy_ = !std::all_of(copy.begin(), copy.end(), [](uint8_t b) { return b == 0; });
  map.skip(6);
  result.mapAttributes_ = map.u16();
  uint16_t typeListOffset = map.u16();
  uint16_t nameListOffset = map.u16();
  if (!map.ok()) return TP_REFUSE(kTopic, mapOffset, "map header cut short");

  if (dataOffset >= kDataStart) {
    ByteSpan reserved = fork.sub(kForkHeaderSize, kDataStart - kForkHeaderSize);
    result.reserved_.assign(reserved.begin(), reserved.end());
  }
  if (!result.readTypes(map, data, map.from(nameListOffset), typeListOffset)) return std::nullopt;
  return result;
}

bool ResourceMap::readTypes(BEReader map, BEReader data, BEReader names, size_t typeListOffset) {
  // Type list: count - 1 (signed; -1 for none), then per type its code, its count - 1 and the
  // offset of its reference list from the start of the type list.
  BEReader typeList = map.from(typeListOffset);
  int32_t typeCount = int32_t(typeList.s16()) + 1;
  if (!typeList.ok()) return TP_REFUSE(kTopic, typeListOffset, "type list offset 0x%zX lies beyond the map", typeListOffset);
  if (typeCount < 0 || size_t(typeCount) > typeList.remaining() / kTypeEntrySize)
    return TP_REFUSE(kTopic, typeListOffset, "type list count %d exceeds the map's %zu remaining bytes", typeCount,
                     typeList.remaining());

  std::vector<Span> lists{{typeListOffset, typeListOffset + 2 + kTypeEntrySize * size_t(typeCount)}};
  types_.reserve(size_t(typeCount));
  for (int32_t t = 0; t < typeCount; ++t) {
    uint32_t type = typeList.u32();
    size_t refCount = size_t(typeList.u16()) + 1;
    uint16_t refOffset = typeList.u16();
    // Reference: ID (signed), name offset from the name list (0xFFFF: none), attributes,
    // 24-bit offset of the length word from the start of the data, 4 bytes of handle.
    BEReader refs = typeList.at(refOffset, kReferenceSize * refCount);
    if (!typeList.ok()) return TP_REFUSE(kTopic, typeListOffset, "type list of %d types cut short", typeCount);
    if (!refs.ok())
      return TP_REFUSE(kTopic, typeListOffset + refOffset, "reference list of %zu resources at type-list offset 0x%X runs past the map",
                       refCount, refOffset);
    lists.push_back({typeListOffset + refOffset, typeListOffset + refOffset + kReferenceSize * refCount});
    if (group(type)) continue;  // a second list for the same type is never reached by a lookup

    TypeGroup g;
    g.type = type;
    for (size_t i = 0; i < refCount; ++i) {
      auto entry = std::make_unique<ResourceEntry>();
      entry->type = type;
      entry->id = refs.s16();
      uint16_t nameOffset = refs.u16();
      entry->attributes = uint8_t(refs.u8() & ~kResChanged);  // meaningful in memory only
      uint32_t offset = refs.u24();
      refs.skip(4);
      auto bytes = readResourceData(data, offset);
      if (!bytes) {  // damaged resource: left out
        TP_NOTE(kTopic, "resource %d of type %08X left out: its data at 0x%X lies outside the data area", entry->id,
                type, offset);
        continue;
      }
      entry->stored_ = *bytes;
      if (nameOffset != kNoName) {
        auto name = readName(names, nameOffset);
        if (!name) continue;
        entry->hasName = true;
        entry->name = std::move(*name);
      }
      g.entries.push_back(std::move(entry));
    }
    if (!g.entries.empty()) types_.push_back(std::move(g));
  }
  if (listsOverlap(std::move(lists))) return TP_REFUSE_WHOLE(kTopic, "reference lists overlap each other or the type list");
  return true;
}

const ResourceMap::TypeGroup* ResourceMap::group(uint32_t type) const {
  for (const TypeGroup& g : types_)
    if (g.type == type) return &g;
  return nullptr;
}

uint32_t ResourceMap::typeAt(int index) const {
  if (index < 1 || index > countTypes()) return 0;
  return types_[size_t(index - 1)].type;
}

int ResourceMap::count(uint32_t type) const {
  const TypeGroup* g = group(type);
  return g ? int(g->entries.size()) : 0;
}

ResourceEntry* ResourceMap::indexed(uint32_t type, int index) const {
  const TypeGroup* g = group(type);
  if (!g || index < 1 || size_t(index) > g->entries.size()) return nullptr;
  return g->entries[size_t(index - 1)].get();
}

ResourceEntry* ResourceMap::find(uint32_t type, int16_t id) const {
  const TypeGroup* g = group(type);
  if (!g) return nullptr;
  for (const auto& e : g->entries)
    if (e->id == id) return e.get();
  return nullptr;
}

ResourceEntry* ResourceMap::own(const ResourceEntry* entry) {
  if (!entry) return nullptr;
  for (TypeGroup& g : types_)
    for (auto& e : g.entries)
      if (e.get() == entry) return e.get();
  return nullptr;
}

bool ResourceMap::setData(const ResourceEntry* entry, std::vector<uint8_t> bytes) {
  ResourceEntry* mine = own(entry);
  if (!mine) return false;
  mine->replaced_ = std::make_shared<const std::vector<uint8_t>>(std::move(bytes));
  changed_ = true;
  return true;
}

bool ResourceMap::setInfo(const ResourceEntry* entry, int16_t id, const std::string* name) {
  ResourceEntry* mine = own(entry);
  if (!mine) return false;
  mine->id = id;
  if (name) {
    mine->hasName = true;
    mine->name = name->substr(0, 255);
  }
  changed_ = true;
  return true;
}

bool ResourceMap::remove(const ResourceEntry* entry) {
  for (auto g = types_.begin(); g != types_.end(); ++g) {
    auto& entries = g->entries;
    auto it = std::find_if(entries.begin(), entries.end(), [&](const auto& e) { return e.get() == entry; });
    if (it == entries.end()) continue;
    entries.erase(it);
    if (entries.empty()) types_.erase(g);
    changed_ = true;
    return true;
  }
  return false;
}

ResourceEntry* ResourceMap::add(uint32_t type, int16_t id, const std::string* name, std::vector<uint8_t> bytes) {
  auto g = std::find_if(types_.begin(), types_.end(), [&](const TypeGroup& t) { return t.type == type; });
  if (g == types_.end()) {
    types_.push_back(TypeGroup{type, {}});
    g = types_.end() - 1;
  }
  auto entry = std::make_unique<ResourceEntry>();
  entry->type = type;
  ResourceEntry* added = entry.get();
  g->entries.push_back(std::move(entry));
  setInfo(added, id, name);
  setData(added, std::move(bytes));
  return added;
}

std::optional<std::vector<uint8_t>> ResourceMap::write() const {
  BEWriter w;
  w.zeros(kForkHeaderSize);
  if (reserved_.size() == kDataStart - kForkHeaderSize) w.bytes(reserved_); else w.zeros(kDataStart - kForkHeaderSize);

  // Resource data, in type-list order and reference-list order within a type.
  std::vector<uint32_t> dataOffsets;
  size_t referenceCount = 0;
  for (const TypeGroup& g : types_) {
    for (const auto& e : g.entries) {
      size_t offset = w.size() - kDataStart;
      if (offset > kMaxDataOffset || e->data().size > UINT32_MAX) return std::nullopt;
      dataOffsets.push_back(uint32_t(offset));
      w.u32(uint32_t(e->data().size));
      w.bytes(e->data());
      ++referenceCount;
    }
  }
  size_t mapStart = w.size();
  size_t dataLength = mapStart - kDataStart;

  // Map header; the copy of the fork header is patched in with the header itself.
  size_t typeListSize = 2 + kTypeEntrySize * types_.size();
  size_t nameListOffset = kMapHeaderSize + typeListSize + kReferenceSize * referenceCount;
  if (nameListOffset > kMaxMapOffset) return std::nullopt;
  w.zeros(kForkHeaderSize + 6);
  w.u16(uint16_t(mapAttributes_ & ~kMapChanged));
  w.u16(uint16_t(kMapHeaderSize));
  w.u16(uint16_t(nameListOffset));

  w.u16(uint16_t(types_.size() - 1));
  size_t listed = 0;
  for (const TypeGroup& g : types_) {
    w.u32(g.type);
    w.u16(uint16_t(g.entries.size() - 1));
    w.u16(uint16_t(typeListSize + kReferenceSize * listed));
    listed += g.entries.size();
  }
  size_t nameOffset = 0, index = 0;
  for (const TypeGroup& g : types_) {
    for (const auto& e : g.entries) {
      w.u16(uint16_t(e->id));
      if (e->hasName && nameOffset >= kNoName) return std::nullopt;
      w.u16(e->hasName ? uint16_t(nameOffset) : kNoName);
      w.u8(uint8_t(e->attributes & ~kResChanged));
      w.u24(dataOffsets[index++]);
      w.u32(0);
      if (e->hasName) nameOffset += 1 + e->name.size();
    }
  }
  for (const TypeGroup& g : types_) {
    for (const auto& e : g.entries) {
      if (!e->hasName) continue;
      w.u8(uint8_t(e->name.size()));
      w.bytes(ByteSpan(reinterpret_cast<const uint8_t*>(e->name.data()), e->name.size()));
    }
  }
  size_t mapLength = w.size() - mapStart;
  if (w.size() > UINT32_MAX) return std::nullopt;

  const uint32_t header[4] = {uint32_t(kDataStart), uint32_t(mapStart), uint32_t(dataLength), uint32_t(mapLength)};
  for (size_t i = 0; i < 4; ++i) {
    w.patchU32(4 * i, header[i]);
    if (mapHeaderIsCopy_) w.patchU32(mapStart + 4 * i, header[i]);
  }
  return w.take();
}

}  // namespace typeprint
