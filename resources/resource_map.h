// Reader and writer of the classic resource fork: a header, the resource data (each resource a
// 4-byte length and its bytes) and the resource map (type list, one reference list per type,
// name list). A `.dfont` is the same structure in a data fork.
//
// The map is read once into memory. Resources found damaged (data or name outside its area) are
// left out; a map whose structure is damaged is not usable at all. Lookups are "one deep": they
// search this map only. Edits change the in-memory map; write() lays out a new fork.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/be_reader.h"

namespace typeprint {

// Reference attributes that matter to the library.
constexpr uint8_t kResChanged = 0x02;  // memory only, never written

// One resource of a map. Its bytes are a view into the fork the map was read from, or, once
// replaced, a buffer the entry owns.
struct ResourceEntry {
  uint32_t type = 0;
  int16_t id = 0;
  uint8_t attributes = 0;
  bool hasName = false;
  std::string name;  // Mac Roman bytes, no length byte; at most 255

  // The resource's bytes: the stored ones, or the replacement once setData was called.
  ByteSpan data() const { return replaced_ ? ByteSpan(*replaced_) : stored_; }

 private:
  friend class ResourceMap;
  ByteSpan stored_;
  std::shared_ptr<const std::vector<uint8_t>> replaced_;
};

// The bytes of a resource that may be absent: empty for null.
inline ByteSpan dataOf(const ResourceEntry* entry) { return entry ? entry->data() : ByteSpan(); }

class ResourceMap {
 public:
  // Reads the fork (which must outlive the map); nothing when it holds no usable map.
  static std::optional<ResourceMap> read(ByteSpan fork);

  // Count1Types, Get1IndType (index from 1; 0 when out of range).
  int countTypes() const { return int(types_.size()); }
  uint32_t typeAt(int index) const;
  // Count1Resources; Get1IndResource (index from 1, file order); Get1Resource (by ID).
  int count(uint32_t type) const;
  ResourceEntry* indexed(uint32_t type, int index) const;
  ResourceEntry* find(uint32_t type, int16_t id) const;

  // Edits. Entries keep their addresses until they are removed. Each is false for an entry that
  // is not this map's.
  bool setData(const ResourceEntry* entry, std::vector<uint8_t> bytes);
  // New ID, and a new name unless `name` is null; a name is cut to 255 bytes.
  bool setInfo(const ResourceEntry* entry, int16_t id, const std::string* name);
  // Removes the entry (and its type when it was the last of it); false when it is not here.
  bool remove(const ResourceEntry* entry);
  // Adds a resource at the end of its type's list, the type at the end of the type list.
  ResourceEntry* add(uint32_t type, int16_t id, const std::string* name, std::vector<uint8_t> bytes);
  bool changed() const { return changed_; }
  void clearChanged() { changed_ = false; }

  // A new fork holding this map: data at 256 in type-list and reference-list order, the map
  // after it. Nothing when the resources exceed the format's 16 MiB data or 64 KiB map limits.
  std::optional<std::vector<uint8_t>> write() const;

 private:
  struct TypeGroup {
    uint32_t type = 0;
    std::vector<std::unique_ptr<ResourceEntry>> entries;
  };
  const TypeGroup* group(uint32_t type) const;
  ResourceEntry* own(const ResourceEntry* entry);
  bool readTypes(BEReader map, BEReader data, BEReader names, size_t typeListOffset);

  std::vector<TypeGroup> types_;
  std::vector<uint8_t> reserved_;   // fork bytes 16..255, kept as they were
  bool mapHeaderIsCopy_ = true;     // the map's first 16 bytes repeat the fork header (else zeros)
  uint16_t mapAttributes_ = 0;
  bool changed_ = false;
};

}  // namespace typeprint
