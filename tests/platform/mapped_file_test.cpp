// File contents read into reused memory: every file reads back exactly, whether the memory of an
// earlier, larger or smaller file is handed on to it or the earlier file is still held.
#include "platform/linux/mapped_file.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/test_paths.h"

namespace typeprint {
namespace {

TEST(MappedFile, ReusedMemoryHoldsEachFileExactly) {
  // Sizes in reading order; `held` files stay open while the ones after them are read.
  const struct { size_t size; bool held; } rows[] = {
      {300000, false}, {10, true}, {0, false}, {70000, true}, {300001, false}, {1, false}, {65536, true}, {65537, false},
  };
  test::ScratchDir dir;
  std::vector<std::pair<std::shared_ptr<const MappedFile>, std::string>> held;
  for (size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE("file " + std::to_string(i) + " of " + std::to_string(rows[i].size) + " bytes");
    std::string contents(rows[i].size, '\0');
    for (size_t at = 0; at < contents.size(); ++at) contents[at] = char('a' + (at * 7 + i) % 26);
    const std::string path = dir.file("f" + std::to_string(i));
    test::writeFile(path, contents);
    std::shared_ptr<const MappedFile> file = MappedFile::open(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(std::string(file->bytes().begin(), file->bytes().end()), contents);
    EXPECT_EQ(file->bytes().data == nullptr, contents.empty());
    if (rows[i].held) held.emplace_back(file, contents);
  }
  for (const auto& [file, contents] : held) EXPECT_EQ(std::string(file->bytes().begin(), file->bytes().end()), contents);
}

}  // namespace
}  // namespace typeprint
