// Edits of resource files that must either happen whole and report success, or not happen and
// report the failure: files without a map, failing writes, and two edits of one file at once.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "resources/family_editing.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;

// Files without a resource map opened for editing: refused, and the file left as it was (the
// half-built object must not write a map it never read).
TEST(EditSafety, FilesWithoutAMapAreRefusedAndLeftAlone) {
  const struct { const char* what; std::string source; } rows[] = {
      {"TrueType font", test::fontPath("sfnt/DejaVuSans-kern.ttf")},
      {"collection", test::fontPath("sfnt/DejaVuSans-3faces.ttc")},
      {"AppleDouble companion alone", test::macFixture("d-t1mac-lwfn/appledouble/._C059Rom")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    const std::string path = dir.file("font");
    fs::copy_file(row.source, path);
    const std::string before = test::readFile(path);
    ResourceOpenFailure why = ResourceOpenFailure::None;
    EXPECT_FALSE(ResourceFile::open(path, false, &why));
    EXPECT_EQ(why, ResourceOpenFailure::NoResourceMap);
    EXPECT_EQ(test::readFile(path), before);
  }
}

int gFailuresLeft = 0;

// A write that fails once abandons the edit: closing the file afterwards does not apply it.
TEST(EditSafety, AFailedWriteIsNeverAppliedLater) {
  const struct { const char* fixture; uint32_t purged; } rows[] = {
      {"a-dfont/DejaVuSans.dfont", kTypeFOND}, {"d-t1mac-lwfn/appledouble/C059Rom", kTypePOST}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fixture);
    test::ScratchDir dir;
    const std::string path = test::copyMacFixture(row.fixture, dir.path());
    const auto before = test::readFile(path) + test::readFile(dir.file("._C059Rom"));
    gFailuresLeft = 1;
    setWriteFaultForTesting([](WriteStep step, const std::string&) { return step == WriteStep::Write && gFailuresLeft-- > 0 ? ENOSPC : 0; });
    {
      auto rf = ResourceFile::open(path, false);
      EXPECT_TRUE(rf && purgeAllButOfType(*rf, {}, row.purged));
      EXPECT_FALSE(rf && rf->update());
      EXPECT_EQ(rf ? rf->lastWrite().reason() : "", "cannot write the file: No space left on device");
    }
    setWriteFaultForTesting(nullptr);
    EXPECT_EQ(test::readFile(path) + test::readFile(dir.file("._C059Rom")), before);
  }
}

// While one edit holds a file, a second edit of it (through any path naming it) is refused, and
// reading is not; once the first is done, the second sees its result.
TEST(EditSafety, ASecondEditOfAFileIsRefusedWhileTheFirstHoldsIt) {
  test::ScratchDir dir;
  const std::string path = test::copyMacFixture("a-dfont/DejaVuSans.dfont", dir.path());
  fs::create_symlink(path, dir.file("link"));
  {
    auto first = ResourceFile::open(path, false);
    ASSERT_TRUE(first);
    ASSERT_TRUE(purgeAllButOfType(*first, {}, kTypeFOND));
    for (const std::string& other : {path, dir.file("link")}) {
      SCOPED_TRACE(other);
      ResourceOpenFailure why = ResourceOpenFailure::None;
      EXPECT_FALSE(ResourceFile::open(other, false, &why));
      EXPECT_EQ(why, ResourceOpenFailure::BeingEdited);
      EXPECT_TRUE(ResourceFile::open(other, true));
    }
    EXPECT_TRUE(first->update());
  }
  auto second = ResourceFile::open(path, false);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->count(kTypeFOND), 0);
}

}  // namespace
}  // namespace typeprint
