// Where the library's data files live. The folders tried, in order:
//   1. $TYPEPRINT_DATA_DIR when it is set and not empty (then it is the only place tried);
//   2. the data folder relative to the file holding the library code: from a shared library the
//      path from the configured library folder to the data folder, from a program the path from
//      the configured program folder, so a moved or unpacked prefix keeps working;
//   3. the configured absolute data folder (<prefix>/share/typeprint).
// The build tree mirrors an installed prefix, so rule 2 finds the staged data files there.
#pragma once

#include <string>
#include <vector>

namespace typeprint {

// The data files the library reads; a folder counts only when it holds all of them.
extern const char* const kDataFileNames[3];

struct DataSearch {
  std::vector<std::string> placesLooked;  // folders in the order tried
  std::string folder;                     // the first that holds every data file, ending with "/"; or empty
  bool found() const { return !folder.empty(); }
};

// Tries the folders above, in order.
DataSearch searchDataFolders();

// The data folder found by searchDataFolders(), ending with "/"; empty when none holds the files.
std::string libraryDataDirectory();

// libraryDataDirectory() + name, or empty.
std::string libraryDataFile(const std::string& name);

}  // namespace typeprint
