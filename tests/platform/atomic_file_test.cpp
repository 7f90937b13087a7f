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
  const uint8_t bytes[] = {1, 2, 3};
  EXPECT_FALSE(pathExists(path));
  ASSERT_TRUE(writeFileAtomically(path, ByteSpan(bytes, 3)));
  ASSERT_TRUE(writeFileAtomically(path, ByteSpan(bytes + 2, 1)));
  EXPECT_EQ(test::readFile(path), "\x03");
  EXPECT_FALSE(writeFileAtomically(dir.file("missing/out.bin"), ByteSpan(bytes, 1)));
  // A folder in the way of the rename: the temporary file is removed again.
  std::filesystem::create_directories(dir.file("taken/inside"));
  EXPECT_FALSE(writeFileAtomically(dir.file("taken"), ByteSpan(bytes, 1)));
  EXPECT_EQ(entriesIn(dir.path()), 2u);
}

}  // namespace
}  // namespace typeprint
