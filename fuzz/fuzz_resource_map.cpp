// Reads the input as a resource fork, walks every type and every resource, reads each by ID
// too, then writes the map and reads the result back: it must hold the same resources.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "resources/resource_map.h"

using typeprint::ResourceEntry;
using typeprint::ResourceMap;

namespace {

uint32_t walk(const ResourceMap& map) {
  uint32_t sum = 0;
  for (int t = 1; t <= map.countTypes(); ++t) {
    uint32_t type = map.typeAt(t);
    for (int i = 1; i <= map.count(type); ++i) {
      const ResourceEntry* e = map.indexed(type, i);
      if (!e || !map.find(type, e->id)) abort();
      typeprint::ByteSpan data = e->data();
      for (size_t k = 0; k < data.size; k += 64) sum += data.data[k];
      sum += uint32_t(e->id) + e->attributes + uint32_t(e->name.size());
    }
  }
  return sum;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto map = ResourceMap::read(typeprint::ByteSpan(data, size));
  if (!map) return 0;
  uint32_t sum = walk(*map);
  auto written = map->write();
  if (!written) return 0;
  auto again = ResourceMap::read(*written);
  if (!again || walk(*again) != sum || again->countTypes() != map->countTypes()) abort();
  return 0;
}
