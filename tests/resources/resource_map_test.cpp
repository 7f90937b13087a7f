// The resource map reader and writer: lookups over built forks, damaged maps, byte-exact
// rewriting of real forks, and edits.
#include <gtest/gtest.h>

#include <string>

#include "builders/resource_fork_builder.h"
#include "platform/linux/fork_locator.h"
#include "resources/resource_map.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::ResourceForkBuilder;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

ResourceForkBuilder threeTypes() {
  return ResourceForkBuilder()
      .add("sfnt", 300, Bytes(10, 1))
      .add("FOND", 128, Bytes(60, 2), "Family")
      .add("sfnt", -5, Bytes(3, 3), "", 0x20)
      .add("NFNT", 128, {})
      .add("sfnt", 128, Bytes(7, 4), "Outline");
}

TEST(ResourceMap, LooksUpByIndexTypeAndId) {
  Bytes fork = threeTypes().build();
  auto map = ResourceMap::read(fork);
  ASSERT_TRUE(map);
  EXPECT_EQ(map->countTypes(), 3);
  EXPECT_EQ(map->typeAt(1), tag("sfnt"));
  EXPECT_EQ(map->typeAt(2), tag("FOND"));
  EXPECT_EQ(map->typeAt(3), tag("NFNT"));
  EXPECT_EQ(map->typeAt(0), 0u);
  EXPECT_EQ(map->typeAt(4), 0u);
  EXPECT_EQ(map->count(tag("sfnt")), 3);
  EXPECT_EQ(map->count(tag("POST")), 0);

  // The n-th resource is the n-th reference in file order, not in ID order.
  const struct {
    int index;
    int16_t id;
    size_t size;
    const char* name;
    uint8_t attributes;
  } rows[] = {{1, 300, 10, nullptr, 0}, {2, -5, 3, nullptr, 0x20}, {3, 128, 7, "Outline", 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.index);
    const ResourceEntry* e = map->indexed(tag("sfnt"), row.index);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->id, row.id);
    EXPECT_EQ(e->data().size, row.size);
    EXPECT_EQ(e->hasName, row.name != nullptr);
    EXPECT_EQ(e->name, row.name ? row.name : "");
    EXPECT_EQ(e->attributes, row.attributes);
    EXPECT_EQ(map->find(tag("sfnt"), row.id), e);
  }
  EXPECT_FALSE(map->indexed(tag("sfnt"), 0));
  EXPECT_FALSE(map->indexed(tag("sfnt"), 4));
  EXPECT_FALSE(map->find(tag("sfnt"), 129));
  EXPECT_FALSE(map->find(tag("POST"), 128));
  ASSERT_TRUE(map->find(tag("NFNT"), 128));
  EXPECT_TRUE(map->find(tag("NFNT"), 128)->data().empty());
  EXPECT_EQ(copyOf(map->find(tag("FOND"), 128)->data()), Bytes(60, 2));
}

TEST(ResourceMap, TheChangedAttributeIsNeverTakenFromDisk) {
  const Bytes fork = ResourceForkBuilder().add("FOND", 1, {}, "", 0x22).build();
  auto map = ResourceMap::read(fork);
  ASSERT_TRUE(map);
  EXPECT_EQ(map->find(tag("FOND"), 1)->attributes, 0x20);
  EXPECT_FALSE(map->changed());
}

TEST(ResourceMap, AMapWithNoTypesIsUsable) {
  const Bytes fork = ResourceForkBuilder().build();
  auto map = ResourceMap::read(fork);
  ASSERT_TRUE(map);
  EXPECT_EQ(map->countTypes(), 0);
  EXPECT_EQ(map->count(tag("FOND")), 0);
}

TEST(ResourceMap, RejectsDamagedMaps) {
  const ResourceForkBuilder builder = threeTypes();
  const Bytes good = builder.build();
  const auto l = builder.layout();
  const struct {
    const char* what;
    Bytes bytes;
  } rows[] = {
      {"empty fork", {}},
      {"header cut at 15 bytes", test::truncated(good, 15)},
      {"fork cut inside the map", test::truncated(good, good.size() - 1)},
      {"data runs past the end", test::patchU32(good, 8, uint32_t(good.size()))},
      {"data offset wraps", test::patchU32(good, 0, 0xFFFFFFF0)},
      {"map offset past the end", test::patchU32(good, 4, uint32_t(good.size() + 1))},
      {"map length past the end", test::patchU32(good, 12, 0xFFFFFFFF)},
      {"map too short for its header", test::patchU32(good, 12, 29)},
      {"type list offset past the map", test::patchU16(good, l.mapOffset + 24, 0xFFF0)},
      {"more types than the map holds", test::patchU16(good, l.typeList, 0x7FFF)},
      {"negative type count below -1", test::patchU16(good, l.typeList, 0xFFFE)},
      {"reference list past the map", test::patchU16(good, l.typeEntries[0] + 6, 0xFFF0)},
      {"more references than the map holds", test::patchU16(good, l.typeEntries[0] + 4, 0xFFFF)},
      {"two types share a reference list",
       test::patchU16(good, l.typeEntries[1] + 6, uint16_t(l.references[0] - l.typeList))},
      {"reference list overlaps the type list", test::patchU16(good, l.typeEntries[2] + 6, 2)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_FALSE(ResourceMap::read(row.bytes));
  }
}

TEST(ResourceMap, SkipsDamagedResources) {
  const ResourceForkBuilder builder = threeTypes();
  const Bytes good = builder.build();
  const auto l = builder.layout();
  // References in type order: sfnt 300, sfnt -5, sfnt 128, FOND 128, NFNT 128.
  const struct {
    const char* what;
    Bytes bytes;
    int sfntCount;
    int fondCount;
  } rows[] = {
      {"data offset past the data area", test::patchU24(good, l.references[0] + 5, 0xFFFFFF), 2, 1},
      {"length word runs past the data area", test::patchU32(good, 256, 0x7FFFFFFF), 2, 1},
      {"name offset past the name list", test::patchU16(good, l.references[3] + 2, 0x7000), 3, 0},
      {"name runs past the map", test::patchU8(good, good.size() - 15, 0xFF), 2, 1},  // "Outline"
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    auto map = ResourceMap::read(row.bytes);
    ASSERT_TRUE(map);
    EXPECT_EQ(map->count(tag("sfnt")), row.sfntCount);
    EXPECT_EQ(map->count(tag("FOND")), row.fondCount);
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
    auto written = map->write();
    ASSERT_TRUE(written);
    EXPECT_EQ(*written, copyOf(fork));
  }
}

TEST(ResourceMap, EditsAreWrittenAndReadBack) {
  Bytes fork = threeTypes().build();
  auto map = ResourceMap::read(fork);
  ASSERT_TRUE(map);
  const std::string newName = "Renamed";
  map->setInfo(map->find(tag("sfnt"), 300), 301, &newName);
  map->setData(map->find(tag("FOND"), 128), Bytes{9, 9, 9});
  EXPECT_TRUE(map->remove(map->find(tag("NFNT"), 128)));
  map->add(tag("POST"), 501, nullptr, Bytes{1, 0, 'x'});
  EXPECT_TRUE(map->changed());
  auto written = map->write();
  ASSERT_TRUE(written);

  auto again = ResourceMap::read(*written);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->countTypes(), 3);  // the last NFNT took its type with it
  EXPECT_EQ(again->count(tag("NFNT")), 0);
  ASSERT_TRUE(again->find(tag("sfnt"), 301));
  EXPECT_EQ(again->find(tag("sfnt"), 301)->name, "Renamed");
  EXPECT_EQ(copyOf(again->find(tag("sfnt"), 301)->data()), Bytes(10, 1));
  EXPECT_EQ(copyOf(again->find(tag("FOND"), 128)->data()), (Bytes{9, 9, 9}));
  EXPECT_EQ(again->find(tag("FOND"), 128)->name, "Family");
  ASSERT_TRUE(again->find(tag("POST"), 501));
  EXPECT_FALSE(again->find(tag("POST"), 501)->hasName);
  EXPECT_EQ(again->find(tag("sfnt"), -5)->attributes, 0x20);
  EXPECT_FALSE(again->remove(map->find(tag("FOND"), 128)));  // an entry of another map
}

TEST(ResourceMap, WriterRefusesWhatTheFormatCannotHold) {
  const Bytes fork = ResourceForkBuilder().build();
  auto map = ResourceMap::read(fork);
  ASSERT_TRUE(map);
  map->add(tag("sfnt"), 1, nullptr, Bytes(0x1000000, 0));
  EXPECT_TRUE(map->write());  // the second resource's offset is just past 16 MiB
  map->add(tag("sfnt"), 2, nullptr, Bytes(1, 0));
  EXPECT_FALSE(map->write());
}

}  // namespace
}  // namespace typeprint
