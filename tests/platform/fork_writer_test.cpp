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

size_t filesIn(const std::string& dir) {
  return size_t(std::distance(std::filesystem::directory_iterator(dir), std::filesystem::directory_iterator()));
}

TEST(AtomicFile, WritesReplacesAndLeavesNothingBehind) {
  test::ScratchDir dir;
  const std::string path = dir.file("out.bin");
  const uint8_t bytes[] = {1, 2, 3};
  EXPECT_FALSE(pathExists(path));
  ASSERT_TRUE(writeFileAtomically(path, ByteSpan(bytes, 3)));
  ASSERT_TRUE(writeFileAtomically(path, ByteSpan(bytes + 2, 1)));
  EXPECT_EQ(test::readFile(path), "\x03");
  EXPECT_FALSE(writeFileAtomically(dir.file("missing/out.bin"), ByteSpan(bytes, 1)));
  std::filesystem::create_directories(dir.file("taken/inside"));  // a folder in the way of the rename
  EXPECT_FALSE(writeFileAtomically(dir.file("taken"), ByteSpan(bytes, 1)));
  EXPECT_EQ(filesIn(dir.path()), 2u);
}

TEST(ForkWriter, ReplacesKeepingPermissionsAndAFailureLeavesTheOriginal) {
  test::ScratchDir scratch;
  const std::string path = scratch.file("font");
  test::writeFile(path, "old contents");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  // A failure just before the rename, as a crash or a full disk would cause.
  setReplaceFaultForTesting([](const std::string&) { return false; });
  EXPECT_FALSE(replaceFileAtomically(path, test::bytesOf("new")));
  setReplaceFaultForTesting(nullptr);
  EXPECT_EQ(test::readFile(path), "old contents");
  EXPECT_EQ(filesIn(scratch.path()), 1u);
  EXPECT_TRUE(replaceFileAtomically(path, test::bytesOf("new")));
  EXPECT_EQ(test::readFile(path), "new");
  struct stat st;
  ASSERT_EQ(stat(path.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  EXPECT_EQ(filesIn(scratch.path()), 1u);
  EXPECT_FALSE(replaceFileAtomically(scratch.file("no-such-folder/font"), test::bytesOf("new")));
}

TEST(ForkWriter, WritesIntoTheRightFile) {
  test::ScratchDir scratch;
  const Bytes fork = test::bytesOf("a new resource fork"), data = test::bytesOf("a new data fork");
  test::writeFile(scratch.file("plain"), "plain");
  auto plain = openForks(scratch.file("plain"));
  ASSERT_TRUE(plain);
  EXPECT_FALSE(writeForkBack(*plain, ForkKind::Resource, fork));  // no place for a resource fork
  EXPECT_TRUE(writeForkBack(*plain, ForkKind::Data, data));
  EXPECT_EQ(test::readFile(scratch.file("plain")), "a new data fork");
  // With an AppleDouble companion, the resource fork goes into it and the data fork into N.
  const Bytes header = test::AppleDoubleBuilder::appleDouble().finderInfo("FFIL", "DMOV").entry(2, {1, 2}).build();
  test::writeFile(scratch.file("pair"), "data");
  test::writeFile(scratch.file("._pair"), std::string(header.begin(), header.end()));
  auto pair = openForks(scratch.file("pair"));
  ASSERT_TRUE(pair);
  EXPECT_TRUE(writeForkBack(*pair, ForkKind::Resource, fork));
  EXPECT_EQ(test::readFile(scratch.file("pair")), "data");
  auto reread = openForks(scratch.file("pair"));
  ASSERT_TRUE(reread);
  EXPECT_EQ(Bytes(reread->resourceFork.begin(), reread->resourceFork.end()), fork);
  EXPECT_EQ(reread->type, tag("FFIL"));
  EXPECT_TRUE(writeForkBack(*reread, ForkKind::Data, data));
  EXPECT_EQ(test::readFile(scratch.file("pair")), "a new data fork");
}

}  // namespace
}  // namespace typeprint
