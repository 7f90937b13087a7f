// Atomic writing and replacement of files, and the choice of target per container form.
#include "platform/linux/fork_writer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "builders/apple_double_builder.h"
#include "platform/linux/atomic_file.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::Bytes;

TEST(ForkWriter, WritesAtomicallyAndAFailureLeavesTheOriginal) {
  test::ScratchDir dir;
  const std::string path = dir.file("font");
  ASSERT_TRUE(writeFileAtomically(path, test::bytesOf("new")));
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  setReplaceFaultForTesting([](const std::string&) { return false; });  // as a crash or a full disk would
  EXPECT_FALSE(replaceFileAtomically(path, test::bytesOf("newer")));
  setReplaceFaultForTesting(nullptr);
  EXPECT_EQ(test::readFile(path), "new");
  EXPECT_TRUE(replaceFileAtomically(path, test::bytesOf("newer")));
  struct stat st;
  ASSERT_EQ(stat(path.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  EXPECT_EQ(test::readFile(path), "newer");
  EXPECT_FALSE(writeFileAtomically(dir.file("missing/font"), test::bytesOf("new")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), std::filesystem::directory_iterator()), 1)
      << "a temporary file was left behind";
}

TEST(ForkWriter, WritesIntoTheRightFile) {
  test::ScratchDir dir;
  const Bytes fork = test::bytesOf("a new resource fork");
  test::writeFile(dir.file("plain"), "plain");
  EXPECT_FALSE(writeForkBack(*openForks(dir.file("plain")), ForkKind::Resource, fork));  // no place for one
  // With an AppleDouble companion, the resource fork goes into it and the data fork into N.
  const Bytes header = test::AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, {1, 2}).build();
  test::writeFile(dir.file("._plain"), std::string(header.begin(), header.end()));
  EXPECT_TRUE(writeForkBack(*openForks(dir.file("plain")), ForkKind::Resource, fork));
  auto reread = openForks(dir.file("plain"));
  ASSERT_TRUE(reread);
  EXPECT_EQ(Bytes(reread->resourceFork.begin(), reread->resourceFork.end()), fork);
  EXPECT_EQ(reread->type, tag("FFIL"));
  EXPECT_EQ(test::readFile(dir.file("plain")), "plain");
  EXPECT_TRUE(writeForkBack(*reread, ForkKind::Data, test::bytesOf("a new data fork")));
  EXPECT_EQ(test::readFile(dir.file("plain")), "a new data fork");
}

}  // namespace
}  // namespace typeprint
