// Fork location: each place alone, their order, and companion files. Every container form of the
// real fixtures is read in resources/resource_file_test.cpp.
#include "platform/linux/fork_locator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "builders/apple_double_builder.h"
#include "builders/mac_binary_builder.h"
#include "builders/resource_fork_builder.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::AppleDoubleBuilder;
using test::Bytes;
using Files = std::vector<std::pair<std::string, Bytes>>;  // path below a scratch folder, contents

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

void put(const std::string& dir, const Files& files) {
  for (const auto& [path, bytes] : files) {
    fs::create_directories(fs::path(dir + "/" + path).parent_path());
    test::writeFile(dir + "/" + path, std::string(bytes.begin(), bytes.end()));
  }
}

const Bytes kFork = test::ResourceForkBuilder().add("FOND", 128, Bytes(60, 1), "Sample").build();
const Bytes kData = test::bytesOf("data fork bytes");
const Bytes kCompanion = AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, kFork).build();

TEST(ForkLocator, EachPlaceOnItsOwn) {
  const Bytes finderInfo = [] { Bytes b = test::bytesOf("LWFNGWp1"); b.resize(32); return b; }();
  const Bytes macBinary = test::MacBinaryBuilder().typeCreator("LWFN", "T1UT").dataFork(kData).resourceFork(kFork).build();
  const Bytes single = AppleDoubleBuilder::appleSingle().finderInfo("LWFN", "T1UT").entry(2, kFork).entry(1, kData).build();
  using Place = std::optional<FileForks> (*)(std::shared_ptr<const MappedFile>);
  // The font is a/b/Font; a second file, when there is one, holds the resource fork.
  const struct { Files files; Place place; ForkSource source; const char* codes; } rows[] = {
      {{{"a/b/Font", macBinary}}, forksFromContainer, ForkSource::MacBinary, "LWFNT1UT"},
      {{{"a/b/Font", single}}, forksFromContainer, ForkSource::AppleSingle, "LWFNT1UT"},
      {{{"a/b/Font", kData}, {"a/b/._Font", kCompanion}}, forksFromDotUnderscore, ForkSource::AppleDouble, "FFILDMOV"},
      {{{"a/b/Font", kData}, {"a/b/.AppleDouble/Font", kCompanion}}, forksFromNetatalk, ForkSource::AppleDouble, "FFILDMOV"},
      {{{"a/b/Font", kData}, {"a/b/%Font", kCompanion}}, forksFromPercentDouble, ForkSource::AppleDouble, "FFILDMOV"},
      {{{"a/b/Font", kData}, {"a/b/.resource/Font", kFork}, {"a/b/.finderinfo/Font", finderInfo}}, forksFromResourceFolder,
       ForkSource::BareFork, "LWFNGWp1"},
      {{{"a/b/Font", kData}, {"a/b/resource.frk/Font", kFork}}, forksFromResourceFrk, ForkSource::BareFork, "\0\0\0\0\0\0\0\0"},
      {{{"a/b/Font", kData}, {"__MACOSX/a/b/._Font", kCompanion}}, forksFromMacosxMirror, ForkSource::AppleDouble, "FFILDMOV"},
      {{{"a/b/Font", kData}, {"a/b/__MACOSX/._Font", kCompanion}}, forksFromMacosxMirror, ForkSource::AppleDouble, "FFILDMOV"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.files.back().first);
    test::ScratchDir dir;
    put(dir.path(), row.files);
    auto file = MappedFile::open(dir.file("a/b/Font"));
    auto forks = row.place(file);
    ASSERT_TRUE(forks);
    EXPECT_EQ(forks->source, row.source);
    EXPECT_EQ(std::make_pair(copyOf(forks->resourceFork), copyOf(forks->dataFork)), std::make_pair(kFork, kData));
    EXPECT_EQ(std::make_pair(forks->type, forks->creator),
              std::make_pair(test::fourCC(std::string(row.codes, 4)), test::fourCC(std::string(row.codes + 4, 4))));
    EXPECT_EQ(forks->finderSize(), kFork.size() + kData.size());
    if (row.files.size() > 1) {
      EXPECT_TRUE(fs::equivalent(forks->companionPath, dir.file(row.files[1].first)));
    }
    for (bool cached : {false, true}) {  // the fixed order reaches the same answer, folders read once or not
      std::optional<ForkLookupCache> folders;
      if (cached) folders.emplace();
      auto opened = openForks(dir.file("a/b/Font"));
      EXPECT_TRUE(opened && opened->source == row.source && copyOf(opened->resourceFork) == kFork) << cached;
    }
    for (const auto& other : rows)  // and no other place claims this fork
      if (other.place != row.place) {
        EXPECT_FALSE(other.place(file)) << "taken for " << other.files.back().first;
      }
  }
}

TEST(ForkLocator, PlacesAreTriedInOrder) {
  const Bytes other = AppleDoubleBuilder::appleDouble().entry(2, Bytes(300, 2)).build();
  const Files rows[] = {
      {{"Font", test::MacBinaryBuilder().resourceFork(kFork).build()}, {"._Font", other}},  // the container first
      {{"Font", {}}, {"._Font", kCompanion}, {".AppleDouble/Font", other}},
      {{"Font", {}}, {".AppleDouble/Font", kCompanion}, {"%Font", other}},
      {{"Font", {}}, {"._Font", test::bytesOf("no header")}, {"resource.frk/Font", kFork}},  // unreadable: passed over
  };
  for (bool cached : {false, true}) {
    std::optional<ForkLookupCache> folders;
    if (cached) folders.emplace();
    for (const auto& files : rows) {
      test::ScratchDir dir;
      put(dir.path(), files);
      auto forks = openForks(dir.file("Font"));
      EXPECT_TRUE(forks && copyOf(forks->resourceFork) == kFork) << files[1].first << (cached ? ", folders cached" : "");
    }
    auto plain = openForks(test::fontPath("sfnt/DejaVuSans-kern.ttf"));
    EXPECT_TRUE(plain && plain->source == ForkSource::Plain && plain->resourceFork.size + plain->type + plain->creator == 0);
    EXPECT_FALSE(openForks(test::fontPath("sfnt/missing.ttf")) || openForks(test::fontPath("sfnt")));
  }
}

TEST(ForkLocator, CompanionFilesAreNotFonts) {
  test::ScratchDir dir;
  put(dir.path(), {{"Font", {}}, {"%Font", kCompanion}, {"%Lone", kData}});
  for (const std::string& path : std::vector<std::string>{"/f/._Font", "._Font", "/f/.AppleDouble/Font", "/f/.resource/Font",
       "/f/.finderinfo/Font", "/f/resource.frk/Font", "/x/__MACOSX/f/Font", dir.file("%Font")})
    EXPECT_TRUE(isForkCompanion(path)) << path;
  for (const std::string& path : std::vector<std::string>{dir.file("%Lone"), dir.file("Font"), "/f/Font._", "/f/.AppleDoubleFont"})
    EXPECT_FALSE(isForkCompanion(path)) << path;
}

}  // namespace
}  // namespace typeprint
