// Fork location: each place on its own, the order between places, the same font in every
// container form, and which files are companions rather than fonts.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "builders/apple_double_builder.h"
#include "builders/mac_binary_builder.h"
#include "builders/resource_fork_builder.h"
#include "platform/linux/fork_locator.h"
#include "support/mac_fixtures.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::AppleDoubleBuilder;
using test::Bytes;
using test::MacBinaryBuilder;
using test::ResourceForkBuilder;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

void put(const fs::path& path, const Bytes& bytes) {
  fs::create_directories(path.parent_path());
  test::writeFile(path.string(), std::string(bytes.begin(), bytes.end()));
}

Bytes sampleFork() { return ResourceForkBuilder().add("FOND", 128, Bytes(60, 1), "Sample").build(); }
Bytes sampleData() { return test::bytesOf("data fork bytes"); }
Bytes companion() { return AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, sampleFork()).build(); }

using Place = std::optional<FileForks> (*)(std::shared_ptr<const MappedFile>);

struct PlaceRow {
  const char* what;
  std::function<void(const fs::path& folder)> setUp;  // the font is folder/a/b/Font
  Place place;
  ForkSource source;
  const char* companionRelative;  // from folder; "" when the font itself holds the forks
  bool dataIsFile;                // the data fork is the font file's own bytes
  uint32_t type, creator;
};

std::vector<PlaceRow> placeRows() {
  const fs::path font = "a/b/Font";
  auto plainData = [](const fs::path& dir) { put(dir / "a/b/Font", sampleData()); };
  return {
      {"MacBinary", [](const fs::path& dir) {
         put(dir / "a/b/Font", MacBinaryBuilder().typeCreator("FFIL", "DMOV").dataFork(sampleData()).resourceFork(sampleFork()).build());
       }, forksFromContainer, ForkSource::MacBinary, "", false, tag("FFIL"), tag("DMOV")},
      {"AppleSingle", [](const fs::path& dir) {
         put(dir / "a/b/Font", AppleDoubleBuilder::appleSingle().finderInfo("LWFN", "T1UT").entry(2, sampleFork()).entry(1, sampleData()).build());
       }, forksFromContainer, ForkSource::AppleSingle, "", false, tag("LWFN"), tag("T1UT")},
      {"._N", [=](const fs::path& dir) { plainData(dir); put(dir / "a/b/._Font", companion()); },
       forksFromDotUnderscore, ForkSource::AppleDouble, "a/b/._Font", true, tag("FFIL"), tag("DMOV")},
      {".AppleDouble/N", [=](const fs::path& dir) { plainData(dir); put(dir / "a/b/.AppleDouble/Font", companion()); },
       forksFromNetatalk, ForkSource::AppleDouble, "a/b/.AppleDouble/Font", true, tag("FFIL"), tag("DMOV")},
      {"%N", [=](const fs::path& dir) { plainData(dir); put(dir / "a/b/%Font", companion()); },
       forksFromPercentDouble, ForkSource::AppleDouble, "a/b/%Font", true, tag("FFIL"), tag("DMOV")},
      {".resource/N with .finderinfo/N", [=](const fs::path& dir) {
         plainData(dir);
         put(dir / "a/b/.resource/Font", sampleFork());
         Bytes info = test::bytesOf("LWFNGWp1");
         info.resize(32);
         put(dir / "a/b/.finderinfo/Font", info);
       }, forksFromResourceFolder, ForkSource::BareFork, "a/b/.resource/Font", true, tag("LWFN"), tag("GWp1")},
      {"resource.frk/N", [=](const fs::path& dir) { plainData(dir); put(dir / "a/b/resource.frk/Font", sampleFork()); },
       forksFromResourceFrk, ForkSource::BareFork, "a/b/resource.frk/Font", true, 0, 0},
      {"__MACOSX mirror two levels up", [=](const fs::path& dir) { plainData(dir); put(dir / "__MACOSX/a/b/._Font", companion()); },
       forksFromMacosxMirror, ForkSource::AppleDouble, "__MACOSX/a/b/._Font", true, tag("FFIL"), tag("DMOV")},
      {"__MACOSX mirror in the same folder", [=](const fs::path& dir) { plainData(dir); put(dir / "a/b/__MACOSX/._Font", companion()); },
       forksFromMacosxMirror, ForkSource::AppleDouble, "a/b/__MACOSX/._Font", true, tag("FFIL"), tag("DMOV")},
  };
}

TEST(ForkLocator, EachPlaceOnItsOwn) {
  for (const PlaceRow& row : placeRows()) {
    SCOPED_TRACE(row.what);
    test::ScratchDir scratch;
    fs::path dir = scratch.path();
    row.setUp(dir);
    const std::string font = (dir / "a/b/Font").string();
    auto file = MappedFile::open(font);
    ASSERT_TRUE(file);
    auto forks = row.place(file);
    ASSERT_TRUE(forks);
    EXPECT_EQ(forks->source, row.source);
    EXPECT_EQ(copyOf(forks->resourceFork), sampleFork());
    EXPECT_EQ(copyOf(forks->dataFork), sampleData());
    EXPECT_EQ(forks->type, row.type);
    EXPECT_EQ(forks->creator, row.creator);
    EXPECT_EQ(forks->finderSize(), sampleFork().size() + sampleData().size());
    if (*row.companionRelative) {
      EXPECT_TRUE(fs::equivalent(forks->companionPath, dir / row.companionRelative));
    }
    // The place-finding order reaches the same answer.
    auto opened = openForks(font);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->source, row.source);
    EXPECT_EQ(copyOf(opened->resourceFork), sampleFork());
    // No other place claims this setup's fork.
    for (const PlaceRow& other : placeRows()) {
      if (other.place == row.place) continue;
      SCOPED_TRACE(other.what);
      EXPECT_FALSE(other.place(file));
    }
  }
}

TEST(ForkLocator, PlainFileHasNoResourceForkAndNoCodes) {
  auto forks = openForks(test::fontPath("sfnt/DejaVuSans-kern.ttf"));
  ASSERT_TRUE(forks);
  EXPECT_EQ(forks->source, ForkSource::Plain);
  EXPECT_TRUE(forks->resourceFork.empty());
  EXPECT_EQ(forks->type, 0u);
  EXPECT_EQ(forks->creator, 0u);
  EXPECT_EQ(forks->finderSize(), fs::file_size(test::fontPath("sfnt/DejaVuSans-kern.ttf")));
  EXPECT_FALSE(openForks(test::fontPath("sfnt/missing.ttf")));
  EXPECT_FALSE(openForks(test::fontPath("sfnt")));
}

TEST(ForkLocator, PlacesAreTriedInOrder) {
  const Bytes other = ResourceForkBuilder().add("NFNT", 1, Bytes(8, 2)).build();
  const Bytes otherCompanion = AppleDoubleBuilder::appleDouble().finderInfo("LWFN", "GWp1").entry(2, other).build();
  const struct {
    const char* what;
    std::function<void(const fs::path&)> setUp;
    ForkSource source;
  } rows[] = {
      {"container before ._N", [&](const fs::path& d) {
         put(d / "Font", MacBinaryBuilder().resourceFork(sampleFork()).build());
         put(d / "._Font", otherCompanion);
       }, ForkSource::MacBinary},
      {"._N before .AppleDouble/N", [&](const fs::path& d) {
         put(d / "Font", {});
         put(d / "._Font", companion());
         put(d / ".AppleDouble/Font", otherCompanion);
       }, ForkSource::AppleDouble},
      {".AppleDouble/N before %N", [&](const fs::path& d) {
         put(d / "Font", {});
         put(d / ".AppleDouble/Font", companion());
         put(d / "%Font", otherCompanion);
       }, ForkSource::AppleDouble},
      {"an unreadable ._N is passed over", [&](const fs::path& d) {
         put(d / "Font", {});
         put(d / "._Font", test::bytesOf("not an AppleDouble header"));
         put(d / "resource.frk/Font", sampleFork());
       }, ForkSource::BareFork},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir scratch;
    row.setUp(scratch.path());
    auto forks = openForks(scratch.file("Font"));
    ASSERT_TRUE(forks);
    EXPECT_EQ(forks->source, row.source);
    EXPECT_EQ(copyOf(forks->resourceFork), sampleFork());
  }
}

TEST(ForkLocator, SameFontInEveryContainerForm) {
  const auto expected = test::loadMacExpectations();
  const struct {
    const char* reference;
    std::vector<const char*> forms;
  } families[] = {
      {"d-t1mac-lwfn/macbinary/C059Rom",
       {"d-t1mac-lwfn/macbinary-i/C059Rom", "d-t1mac-lwfn/macbinary-stale-crc/C059Rom", "d-t1mac-lwfn/applesingle/C059Rom",
        "d-t1mac-lwfn/appledouble/C059Rom", "d-t1mac-lwfn/netatalk/C059Rom"}},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", {"b-suitcase-truetype/appledouble/DejaVuSans"}},
      {"c-type1-family/macbinary/NimbusSans", {"c-type1-family/appledouble/NimbusSans"}},
      {"c-type1-family/macbinary/NimbuSanBolIta", {"c-type1-family/appledouble/NimbuSanBolIta"}},
  };
  for (const auto& family : families) {
    auto reference = openForks(test::macFixture(family.reference));
    ASSERT_TRUE(reference);
    const test::ExpectedFile* facts = test::findExpected(expected, family.reference);
    ASSERT_TRUE(facts);
    EXPECT_EQ(reference->type, test::fourCC(facts->type));
    EXPECT_EQ(reference->creator, test::fourCC(facts->creator));
    for (const char* form : family.forms) {
      SCOPED_TRACE(form);
      auto forks = openForks(test::macFixture(form));
      ASSERT_TRUE(forks);
      EXPECT_EQ(copyOf(forks->resourceFork), copyOf(reference->resourceFork));
      EXPECT_EQ(copyOf(forks->dataFork), copyOf(reference->dataFork));
      EXPECT_EQ(forks->type, reference->type);
      EXPECT_EQ(forks->creator, reference->creator);
      EXPECT_EQ(forks->finderSize(), reference->finderSize());
    }
  }
}

TEST(ForkLocator, CompanionFilesAreNotFonts) {
  test::ScratchDir scratch;
  put(fs::path(scratch.path()) / "Font", {});
  put(fs::path(scratch.path()) / "%Font", companion());
  put(fs::path(scratch.path()) / "%Lone", sampleData());
  const struct {
    std::string path;
    bool companion;
  } rows[] = {
      {"/fonts/._Font", true},
      {"._Font", true},
      {"/fonts/.AppleDouble/Font", true},
      {"/fonts/.resource/Font", true},
      {"/fonts/.finderinfo/Font", true},
      {"/fonts/resource.frk/Font", true},
      {"/x/__MACOSX/fonts/Font", true},
      {scratch.file("%Font"), true},
      {scratch.file("%Lone"), false},
      {scratch.file("Font"), false},
      {"/fonts/Font._", false},
      {"/fonts/AppleDouble/Font", false},
      {"/fonts/.AppleDoubleFont", false},
      {"/fonts/DejaVuSans.ttf", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(isForkCompanion(row.path), row.companion);
  }
}

}  // namespace
}  // namespace typeprint
