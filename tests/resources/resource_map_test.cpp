// The resource map reader and writer: damaged maps, byte-exact rewriting of real forks, edits.
#include <gtest/gtest.h>

#include "builders/resource_fork_builder.h"
#include "platform/linux/fork_locator.h"
#include "resources/resource_map.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::patchU16;
using test::patchU32;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

// sfnt -5 carries the "changed" bit (0x02) on disk, which is never taken from a file.
const test::ResourceForkBuilder kThreeTypes = test::ResourceForkBuilder()
                                                  .add("sfnt", 300, Bytes(10, 1))
                                                  .add("FOND", 128, Bytes(60, 2), "Family")
                                                  .add("sfnt", -5, Bytes(3, 3), "", 0x22)
                                                  .add("NFNT", 128, {})
                                                  .add("sfnt", 128, Bytes(7, 4), "Outline");

TEST(ResourceMap, DamagedMapsAreRejectedAndDamagedResourcesSkipped) {
  const Bytes good = kThreeTypes.build();
  const auto l = kThreeTypes.layout();
  // References in type order: sfnt 300, sfnt -5, sfnt 128, FOND 128, NFNT 128. sfnts and FONDs
  // left, or -1 for no map at all.
  const struct { const char* what; Bytes bytes; int sfnts, fonds; } rows[] = {
      {"empty fork", {}, -1, -1},
      {"fork cut inside the map", test::truncated(good, good.size() - 1), -1, -1},
      {"data runs past the end", patchU32(good, 8, uint32_t(good.size())), -1, -1},
      {"data offset wraps", patchU32(good, 0, 0xFFFFFFF0), -1, -1},
      {"map length past the end", patchU32(good, 12, 0xFFFFFFFF), -1, -1},
      {"map too short for its header", patchU32(good, 12, 29), -1, -1},
      {"type list offset past the map", patchU16(good, l.mapOffset + 24, 0xFFF0), -1, -1},
      {"more types than the map holds", patchU16(good, l.typeList, 0x7FFF), -1, -1},
      {"reference list past the map", patchU16(good, l.typeEntries[0] + 6, 0xFFF0), -1, -1},
      {"more references than the map holds", patchU16(good, l.typeEntries[0] + 4, 0xFFFF), -1, -1},
      {"two types share a reference list", patchU16(good, l.typeEntries[1] + 6, uint16_t(l.references[0] - l.typeList)),
       -1, -1},
      {"reference list overlaps the type list", patchU16(good, l.typeEntries[2] + 6, 2), -1, -1},
      {"data offset past the data area", test::patchU24(good, l.references[0] + 5, 0xFFFFFF), 2, 1},
      {"length word runs past the data area", patchU32(good, 256, 0x7FFFFFFF), 2, 1},
      {"name offset past the name list", patchU16(good, l.references[3] + 2, 0x7000), 3, 0},
      {"name runs past the map", test::patchU8(good, good.size() - 15, 0xFF), 2, 1},  // "Outline"
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto map = ResourceMap::read(row.bytes);
    ASSERT_EQ(bool(map), row.sfnts >= 0);
    if (!map) continue;
    EXPECT_EQ(map->count(tag("sfnt")), row.sfnts);
    EXPECT_EQ(map->count(tag("FOND")), row.fonds);
    EXPECT_EQ(map->count(tag("NFNT")), 1);
  }
}

TEST(ResourceMap, RewritingReproducesRealForksByteForByte) {
  for (const auto& file : test::loadMacExpectations()) {
    if (file.mapSource == "none") continue;
    SCOPED_TRACE(file.path);
    auto forks = openForks(test::macFixture(file.path));
    ASSERT_TRUE(forks);
    ByteSpan fork = file.mapSource == "resource" ? forks->resourceFork : forks->dataFork;
    auto map = ResourceMap::read(fork);
    ASSERT_TRUE(map);
    EXPECT_EQ(map->write().value_or(Bytes{}), copyOf(fork));
  }
}

TEST(ResourceMap, AddedAndRemovedResourcesAreWritten) {
  const Bytes fork = kThreeTypes.build();
  auto map = ResourceMap::read(fork);
  ASSERT_TRUE(map);
  EXPECT_EQ(map->find(tag("sfnt"), -5)->attributes, 0x20);  // the changed bit is never read
  EXPECT_FALSE(map->changed());
  EXPECT_TRUE(map->remove(map->find(tag("NFNT"), 128)));
  map->add(tag("POST"), 501, nullptr, Bytes{1, 0, 'x'});
  const Bytes written = map->write().value();  // the map read from it borrows these bytes
  auto again = ResourceMap::read(written);
  ASSERT_TRUE(again && again->find(tag("POST"), 501));
  EXPECT_EQ(again->countTypes(), 3);  // the last NFNT took its type with it
  EXPECT_EQ(copyOf(again->find(tag("POST"), 501)->data()), (Bytes{1, 0, 'x'}));
  EXPECT_FALSE(again->find(tag("POST"), 501)->hasName);
  EXPECT_FALSE(again->remove(map->find(tag("FOND"), 128)));  // an entry of another map
  // A resource whose data would start past 16 MiB cannot be written.
  const Bytes empty = test::ResourceForkBuilder().build();
  auto big = ResourceMap::read(empty);
  big->add(tag("sfnt"), 1, nullptr, Bytes(0x1000000, 0));
  EXPECT_TRUE(big->write());  // the second resource's offset would be just past 16 MiB
  big->add(tag("sfnt"), 2, nullptr, Bytes(1, 0));
  EXPECT_FALSE(big->write());
}

}  // namespace
}  // namespace typeprint
