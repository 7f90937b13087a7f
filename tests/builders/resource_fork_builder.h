// Builds a resource fork from a list of resources: header, 240 reserved bytes, data, map with
// the type list at 28 and the names after the reference lists. layout() says where each part
// landed, so a test can break one field.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "builders/byte_edits.h"

namespace typeprint::test {

class ResourceForkBuilder {
 public:
  ResourceForkBuilder& add(const char (&type)[5], int16_t id, Bytes data, const std::string& name = "",
                           uint8_t attributes = 0);
  Bytes build() const;

  // Offsets from the start of the fork, of the built fork.
  struct Layout {
    size_t dataOffset, mapOffset, typeList, nameList;
    std::vector<size_t> typeEntries;  // one per type, type-list order
    std::vector<size_t> references;   // one per resource, in the order added within each type
  };
  Layout layout() const;

 private:
  struct Resource {
    uint32_t type;
    int16_t id;
    Bytes data;
    std::string name;
    uint8_t attributes;
  };
  std::vector<uint32_t> typeOrder() const;
  std::vector<Resource> resources_;
};

}  // namespace typeprint::test
