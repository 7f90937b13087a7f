// Atomic writes; edits written back into each container form: resources/resource_file_test.cpp.
#include "platform/linux/fork_writer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "builders/byte_edits.h"
#include "platform/linux/atomic_file.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

TEST(ForkWriter, WritesAtomicallyKeepingPermissionsAndAFailureLeavesTheOriginal) {
  test::ScratchDir dir;
  const std::string path = dir.file("font");
  const test::Bytes fresh = test::bytesOf("new"), newer = test::bytesOf("newer"), fork = test::bytesOf("fork");
  ASSERT_TRUE(replaceFileAtomically(path, fresh));
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  setWriteFaultForTesting([](WriteStep step, const std::string&) { return step == WriteStep::Rename ? EIO : 0; });
  EXPECT_FALSE(replaceFileAtomically(path, newer));
  setWriteFaultForTesting(nullptr);
  EXPECT_EQ(test::readFile(path), "new");
  EXPECT_TRUE(replaceFileAtomically(path, newer));
  struct stat st;
  ASSERT_EQ(stat(path.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  EXPECT_EQ(test::readFile(path), "newer");
  EXPECT_FALSE(replaceFileAtomically(dir.file("missing/font"), fresh));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), std::filesystem::directory_iterator()), 1)
      << "a temporary file was left behind";
  EXPECT_FALSE(writeForkBack(*openForks(path), ForkKind::Resource, fork)) << "a plain file has no place";
}

}  // namespace
}  // namespace typeprint
