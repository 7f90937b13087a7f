// Whole-file reads and writes on C streams.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "foundation/streams.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

using test::readFile;
using test::ScratchDir;
using test::writeFile;

TEST(Streams, ReadWholeFileAddsANul) {
  ScratchDir dir;
  const struct {
    const char* what;
    std::string contents;
  } rows[] = {{"empty", ""}, {"text", "abc"}, {"binary", std::string("\0\xFF\0", 3)}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    writeFile(dir.file("f"), row.contents);
    void* data = nullptr;
    unsigned long length = 99;
    EXPECT_EQ(UxStreams::ReadWholeFile(dir.file("f"), &data, &length), 0);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(length, row.contents.size());
    EXPECT_EQ(std::string(static_cast<char*>(data), length), row.contents);
    EXPECT_EQ(static_cast<char*>(data)[length], '\0');
    std::free(data);
  }
  void* data = nullptr;
  unsigned long length = 0;
  EXPECT_EQ(UxStreams::ReadWholeFile(dir.file("missing"), &data, &length), -1);
  EXPECT_EQ(UxStreams::ReadWholeFile(dir.path(), &data, &length), -1) << "a folder";
  EXPECT_EQ(data, nullptr);
}

TEST(Streams, Utf8TextStopsAtNul) {
  ScratchDir dir;
  writeFile(dir.file("f"), std::string("ab\0cd", 5));
  UxString text("old");
  EXPECT_EQ(UxStreams::ReadWholeUTF8File(dir.file("f"), &text), 0);
  EXPECT_EQ(std::string(text), "ab");
  text = "old";
  EXPECT_EQ(UxStreams::ReadWholeUTF8File(dir.file("missing"), &text), -1);
  EXPECT_EQ(std::string(text), "old");
}

TEST(Streams, WriteReplacesTheFile) {
  ScratchDir dir;
  writeFile(dir.file("f"), "a much longer old text");
  std::filesystem::permissions(dir.file("f"), std::filesystem::perms::owner_read);
  EXPECT_EQ(UxStreams::WriteWholeUTF8File(dir.file("f"), "new"), 0);
  EXPECT_EQ(readFile(dir.file("f")), "new");
  EXPECT_EQ(UxStreams::WriteWholeUTF8File(dir.file("no/f"), "x"), -1);
}

TEST(Streams, LengthAndRewind) {
  unsigned long length = 7;
  EXPECT_EQ(UxStreams::GetFileLengthAndRewind(nullptr, &length), -1);
  EXPECT_EQ(length, 0u);
  ScratchDir dir;
  writeFile(dir.file("f"), "0123456789");
  FILE* f = UxStreams::fopen(dir.file("f"), "rb");
  ASSERT_NE(f, nullptr);
  std::fgetc(f);
  std::fgetc(f);
  EXPECT_EQ(UxStreams::GetFileLengthAndRewind(f, &length), 0);
  EXPECT_EQ(length, 10u);
  EXPECT_EQ(std::ftell(f), 0);
  std::fclose(f);
}

}  // namespace
}  // namespace typeprint
