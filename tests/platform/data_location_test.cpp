// Where the library looks for its data files; installed layouts are covered by
// tests/packaging/install_and_link.sh.
#include "platform/linux/data_location.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/test_paths.h"

namespace typeprint {
namespace {

// Sets or clears TYPEPRINT_DATA_DIR for one test, restoring it afterwards.
class DataDirVariable {
 public:
  explicit DataDirVariable(const char* value) {
    if (const char* old = std::getenv(kName)) old_ = old;
    value ? setenv(kName, value, 1) : unsetenv(kName);
  }
  ~DataDirVariable() { old_.empty() ? unsetenv(kName) : setenv(kName, old_.c_str(), 1); }

 private:
  static constexpr const char* kName = "TYPEPRINT_DATA_DIR";
  std::string old_;
};

TEST(DataLocation, TheVariableNamesTheOnlyFolderAndEveryFileMustBeThere) {
  const std::string staged = std::string(TYPEPRINT_BINARY_DIR) + "/stage/share/typeprint";
  test::ScratchDir empty, partial;
  std::filesystem::copy_file(staged + "/KeywordTable.plist", partial.file("KeywordTable.plist"));
  const struct { const char* what; std::string folder; bool found; } rows[] = {
      {"every data file", staged, true},
      {"an empty folder", empty.path(), false},
      {"one file of three", partial.path(), false},
      {"a missing folder", empty.file("absent"), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    DataDirVariable variable(row.folder.c_str());
    DataSearch search = searchDataFolders();
    EXPECT_EQ(search.placesLooked, std::vector<std::string>{row.folder});
    EXPECT_EQ(search.found(), row.found);
    EXPECT_EQ(libraryDataFile("KeywordTable.plist"), row.found ? row.folder + "/KeywordTable.plist" : "");
  }
}

// A test program sits in the staged tree beside bin/, so the path from the program folder leads to
// the staged data; the configured absolute folder comes after it.
TEST(DataLocation, WithoutTheVariableTheStagedTreeIsFoundBeforeTheConfiguredFolder) {
  const std::string staged =
      std::filesystem::canonical(std::string(TYPEPRINT_BINARY_DIR) + "/stage/share/typeprint").string();
  for (const char* value : {static_cast<const char*>(nullptr), ""}) {
    SCOPED_TRACE(value ? "set to nothing" : "unset");
    DataDirVariable variable(value);
    DataSearch search = searchDataFolders();
    ASSERT_EQ(search.placesLooked.size(), 2u);
    EXPECT_EQ(search.placesLooked[0], staged);
    EXPECT_EQ(search.folder, staged + "/");
    EXPECT_TRUE(std::filesystem::path(search.placesLooked[1]).is_absolute());
  }
}

}  // namespace
}  // namespace typeprint
