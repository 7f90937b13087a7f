// Fork location: each place on its own, the order between places, the same font in every
// container form, and which files are companions rather than fonts.
#include <gtest/gtest.h>

#include <filesystem>

#include "builders/apple_double_builder.h"
#include "builders/mac_binary_builder.h"
#include "builders/resource_fork_builder.h"
#include "platform/linux/fork_locator.h"
#include "support/mac_fixtures.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::AppleDoubleBuilder;
using test::Bytes;
using Files = std::vector<std::pair<std::string, Bytes>>;  // path from the scratch folder, contents
using Place = std::optional<FileForks> (*)(std::shared_ptr<const MappedFile>);

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

void put(const std::string& dir, const Files& files) {
  for (const auto& [path, bytes] : files) {
    fs::create_directories((dir / fs::path(path)).parent_path());
    test::writeFile(dir + "/" + path, std::string(bytes.begin(), bytes.end()));
  }
}

const Bytes kFork = test::ResourceForkBuilder().add("FOND", 128, Bytes(60, 1), "Sample").build();
const Bytes kData = test::bytesOf("data fork bytes");
const Bytes kCompanion = AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, kFork).build();

TEST(ForkLocator, EachPlaceOnItsOwn) {
  Bytes finderInfo = test::bytesOf("LWFNGWp1");
  finderInfo.resize(32);
  const struct { const char* what; Files files; Place place; ForkSource source; uint32_t type, creator; } rows[] = {
      {"MacBinary", {{"a/b/Font", test::MacBinaryBuilder().typeCreator("FFIL", "DMOV").dataFork(kData).resourceFork(kFork).build()}},
       forksFromContainer, ForkSource::MacBinary, tag("FFIL"), tag("DMOV")},
      {"AppleSingle", {{"a/b/Font", AppleDoubleBuilder::appleSingle().finderInfo("LWFN", "T1UT").entry(2, kFork).entry(1, kData).build()}},
       forksFromContainer, ForkSource::AppleSingle, tag("LWFN"), tag("T1UT")},
      {"._N", {{"a/b/Font", kData}, {"a/b/._Font", kCompanion}}, forksFromDotUnderscore, ForkSource::AppleDouble,
       tag("FFIL"), tag("DMOV")},
      {".AppleDouble/N", {{"a/b/Font", kData}, {"a/b/.AppleDouble/Font", kCompanion}}, forksFromNetatalk,
       ForkSource::AppleDouble, tag("FFIL"), tag("DMOV")},
      {"%N", {{"a/b/Font", kData}, {"a/b/%Font", kCompanion}}, forksFromPercentDouble, ForkSource::AppleDouble,
       tag("FFIL"), tag("DMOV")},
      {".resource/N with .finderinfo/N", {{"a/b/Font", kData}, {"a/b/.resource/Font", kFork}, {"a/b/.finderinfo/Font", finderInfo}},
       forksFromResourceFolder, ForkSource::BareFork, tag("LWFN"), tag("GWp1")},
      {"resource.frk/N", {{"a/b/Font", kData}, {"a/b/resource.frk/Font", kFork}}, forksFromResourceFrk,
       ForkSource::BareFork, 0, 0},
      {"__MACOSX mirror two levels up", {{"a/b/Font", kData}, {"__MACOSX/a/b/._Font", kCompanion}},
       forksFromMacosxMirror, ForkSource::AppleDouble, tag("FFIL"), tag("DMOV")},
      {"__MACOSX mirror in the same folder", {{"a/b/Font", kData}, {"a/b/__MACOSX/._Font", kCompanion}},
       forksFromMacosxMirror, ForkSource::AppleDouble, tag("FFIL"), tag("DMOV")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    put(dir.path(), row.files);
    auto file = MappedFile::open(dir.file("a/b/Font"));
    ASSERT_TRUE(file);
    auto forks = row.place(file);
    ASSERT_TRUE(forks);
    EXPECT_EQ(forks->source, row.source);
    EXPECT_EQ(copyOf(forks->resourceFork), kFork);
    EXPECT_EQ(copyOf(forks->dataFork), kData);
    EXPECT_EQ(forks->type, row.type);
    EXPECT_EQ(forks->creator, row.creator);
    EXPECT_EQ(forks->finderSize(), kFork.size() + kData.size());
    if (row.files.size() > 1) EXPECT_TRUE(fs::equivalent(forks->companionPath, dir.file(row.files[1].first)));
    auto opened = openForks(dir.file("a/b/Font"));  // the fixed order reaches the same answer
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->source, row.source);
    EXPECT_EQ(copyOf(opened->resourceFork), kFork);
    for (const auto& other : rows)  // and no other place claims this fork
      if (other.place != row.place) EXPECT_FALSE(other.place(file)) << other.what;
  }
}

TEST(ForkLocator, PlacesAreTriedInOrder) {
  const Bytes other = AppleDoubleBuilder::appleDouble().entry(2, test::ResourceForkBuilder().add("NFNT", 1, Bytes(8, 2)).build()).build();
  const struct { const char* what; Files files; ForkSource source; } rows[] = {
      {"container before ._N", {{"Font", test::MacBinaryBuilder().resourceFork(kFork).build()}, {"._Font", other}},
       ForkSource::MacBinary},
      {"._N before .AppleDouble/N", {{"Font", {}}, {"._Font", kCompanion}, {".AppleDouble/Font", other}},
       ForkSource::AppleDouble},
      {".AppleDouble/N before %N", {{"Font", {}}, {".AppleDouble/Font", kCompanion}, {"%Font", other}},
       ForkSource::AppleDouble},
      {"an unreadable ._N is passed over", {{"Font", {}}, {"._Font", test::bytesOf("no header")}, {"resource.frk/Font", kFork}},
       ForkSource::BareFork},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    put(dir.path(), row.files);
    auto forks = openForks(dir.file("Font"));
    ASSERT_TRUE(forks);
    EXPECT_EQ(forks->source, row.source);
    EXPECT_EQ(copyOf(forks->resourceFork), kFork);
  }
  auto plain = openForks(test::fontPath("sfnt/DejaVuSans-kern.ttf"));
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->source, ForkSource::Plain);
  EXPECT_TRUE(plain->resourceFork.empty());
  EXPECT_EQ(plain->type | plain->creator, 0u);
  EXPECT_EQ(plain->finderSize(), fs::file_size(test::fontPath("sfnt/DejaVuSans-kern.ttf")));
  EXPECT_FALSE(openForks(test::fontPath("sfnt/missing.ttf")));
  EXPECT_FALSE(openForks(test::fontPath("sfnt")));
}

TEST(ForkLocator, SameFontInEveryContainerForm) {
  const auto expected = test::loadMacExpectations();
  const std::vector<std::vector<const char*>> families = {
      {"d-t1mac-lwfn/macbinary/C059Rom", "d-t1mac-lwfn/macbinary-i/C059Rom", "d-t1mac-lwfn/macbinary-stale-crc/C059Rom",
       "d-t1mac-lwfn/applesingle/C059Rom", "d-t1mac-lwfn/appledouble/C059Rom", "d-t1mac-lwfn/netatalk/C059Rom"},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", "b-suitcase-truetype/appledouble/DejaVuSans"},
      {"c-type1-family/macbinary/NimbusSans", "c-type1-family/appledouble/NimbusSans"},
      {"c-type1-family/macbinary/NimbuSanBolIta", "c-type1-family/appledouble/NimbuSanBolIta"},
  };
  for (const auto& forms : families) {
    auto reference = openForks(test::macFixture(forms[0]));
    const test::ExpectedFile* facts = test::findExpected(expected, forms[0]);
    ASSERT_TRUE(reference && facts) << forms[0];
    EXPECT_EQ(reference->type, test::fourCC(facts->type));
    EXPECT_EQ(reference->creator, test::fourCC(facts->creator));
    for (const char* form : forms) {
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
  test::ScratchDir dir;
  put(dir.path(), {{"Font", {}}, {"%Font", kCompanion}, {"%Lone", kData}});
  const struct { std::string path; bool companion; } rows[] = {
      {"/fonts/._Font", true},            {"._Font", true},          {"/fonts/.AppleDouble/Font", true},
      {"/fonts/.resource/Font", true},    {"/fonts/.finderinfo/Font", true}, {"/fonts/resource.frk/Font", true},
      {"/x/__MACOSX/fonts/Font", true},   {dir.file("%Font"), true}, {dir.file("%Lone"), false},
      {dir.file("Font"), false},          {"/fonts/Font._", false},  {"/fonts/.AppleDoubleFont", false},
  };
  for (const auto& row : rows) EXPECT_EQ(isForkCompanion(row.path), row.companion) << row.path;
}

}  // namespace
}  // namespace typeprint
