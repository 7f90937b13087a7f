#include "platform/linux/atomic_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/test_paths.h"

namespace typeprint {
namespace {

size_t entriesIn(const std::string& folder) {
  return size_t(std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

TEST(AtomicFile, WritesReplacesAndLeavesNothingBehind) {
  test::ScratchDir dir;
  const std::string path = dir.file("out.bin");
  const uint8_t first[] = {1, 2, 3}, second[] = {9};
  EXPECT_FALSE(pathExists(path));
  ASSERT_TRUE(writeFileAtomically(path, ByteSpan(first, 3)));
  EXPECT_TRUE(pathExists(path));
  EXPECT_EQ(test::readFile(path), "\x01\x02\x03");
  ASSERT_TRUE(writeFileAtomically(path, ByteSpan(second, 1)));
  EXPECT_EQ(test::readFile(path), "\x09");
  ASSERT_TRUE(writeFileAtomically(dir.file("empty"), ByteSpan()));
  EXPECT_EQ(test::readFile(dir.file("empty")), "");
  EXPECT_EQ(entriesIn(dir.path()), 2u);
}

TEST(AtomicFile, FailsWithoutAFolder) {
  test::ScratchDir dir;
  const uint8_t bytes[] = {1};
  EXPECT_FALSE(writeFileAtomically(dir.file("missing/out.bin"), ByteSpan(bytes, 1)));
  // A folder in the way of the rename: the temporary file is removed again.
  std::filesystem::create_directory(dir.file("taken"));
  std::filesystem::create_directory(dir.file("taken/inside"));
  EXPECT_FALSE(writeFileAtomically(dir.file("taken"), ByteSpan(bytes, 1)));
  EXPECT_EQ(entriesIn(dir.path()), 1u);
}

}  // namespace
}  // namespace typeprint
