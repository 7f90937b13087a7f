#include "tools/data_files.h"

#include <cstdio>
#include <string>

#include "platform/linux/data_location.h"

namespace typeprint::cli {

bool dataFilesFound() {
  const DataSearch search = searchDataFolders();
  if (search.found()) return true;
  std::string places;
  for (const std::string& place : search.placesLooked) places += (places.empty() ? "" : ", ") + place;
  std::fprintf(stderr, "typeprint: data files not found; looked in %s\n", places.empty() ? "no place" : places.c_str());
  return false;
}

}  // namespace typeprint::cli
