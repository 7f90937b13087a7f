// Whole-file reads and writes on C streams.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "foundation/streams.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

TEST(Streams, WholeFilesReadWithANulAndWrittenOverTheOld) {
  test::ScratchDir dir;
  test::writeFile(dir.file("f"), "a much longer old text");
  std::filesystem::permissions(dir.file("f"), std::filesystem::perms::owner_read);  // locked
  EXPECT_EQ(UxStreams::WriteWholeUTF8File(dir.file("f"), std::string("ab\0\xFF", 4)), 0);

  void* data = nullptr;
  unsigned long length = 99;
  EXPECT_EQ(UxStreams::ReadWholeFile(dir.file("f"), &data, &length), 0);
  ASSERT_EQ(length, 4u) << "the whole new text and nothing of the old";
  EXPECT_EQ(std::string(static_cast<char*>(data), 5), std::string("ab\0\xFF\0", 5));
  std::free(data);
  UxString text;
  EXPECT_EQ(UxStreams::ReadWholeUTF8File(dir.file("f"), &text), 0);
  EXPECT_EQ(std::string(text), "ab") << "text stops at a NUL";
  EXPECT_EQ(UxStreams::ReadWholeFile(dir.file("missing"), &data, &length), -1);
}

}  // namespace
}  // namespace typeprint
