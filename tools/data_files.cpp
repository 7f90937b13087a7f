#include "tools/data_files.h"

#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "platform/linux/data_location.h"

namespace typeprint::cli {

bool dataFilesFound() {
  const std::string folder = libraryDataDirectory();
  struct stat st;
  for (const char* name : {"FoundryNameTable.plist", "DefaultClassifications.plist", "KeywordTable.plist"}) {
    if (folder.empty() || ::stat((folder + name).c_str(), &st) != 0) {
      std::fprintf(stderr, "typeprint: data files not found; looked in %s\n",
                   folder.empty() ? "(the library's own folder is unknown)" : folder.c_str());
      return false;
    }
  }
  return true;
}

}  // namespace typeprint::cli
