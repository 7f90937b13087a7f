#include "platform/linux/data_location.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "typeprint_install_dirs.h"

namespace typeprint {

const char* const kDataFileNames[3] = {"FoundryNameTable.plist", "DefaultClassifications.plist",
                                       "KeywordTable.plist"};

namespace {

namespace fs = std::filesystem;

// The file holding this code, with symbolic links resolved, and the configured path from its folder
// to the data folder: a shared library sits in the library folder, a program in the program folder.
struct CodeFile {
  fs::path path;
  const char* relativeDataDirectory;
};

std::optional<CodeFile> codeFile() {
  Dl_info info{};
  link_map* map = nullptr;
  if (!dladdr1(reinterpret_cast<void*>(&codeFile), &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) || !map)
    return std::nullopt;
  // The dynamic linker names the main program "" in its link map.
  const bool inProgram = map->l_name == nullptr || map->l_name[0] == '\0';
  std::error_code error;
  fs::path path = fs::canonical(inProgram ? "/proc/self/exe" : map->l_name, error);
  if (error) return std::nullopt;
  return CodeFile{path, inProgram ? TYPEPRINT_DATA_FROM_BINDIR : TYPEPRINT_DATA_FROM_LIBDIR};
}

std::vector<std::string> candidateFolders() {
  const char* fromEnvironment = std::getenv("TYPEPRINT_DATA_DIR");
  if (fromEnvironment && *fromEnvironment) return {fromEnvironment};
  std::vector<std::string> folders;
  if (std::optional<CodeFile> code = codeFile())
    folders.push_back((code->path.parent_path() / code->relativeDataDirectory).lexically_normal().string());
  if (folders.empty() || folders.front() != TYPEPRINT_INSTALLED_DATA_DIR) folders.push_back(TYPEPRINT_INSTALLED_DATA_DIR);
  return folders;
}

bool holdsEveryDataFile(const std::string& folder) {
  for (const char* name : kDataFileNames)
    if (access((folder + "/" + name).c_str(), R_OK) != 0) return false;
  return true;
}

}  // namespace

DataSearch searchDataFolders() {
  DataSearch search;
  search.placesLooked = candidateFolders();
  for (const std::string& folder : search.placesLooked) {
    if (holdsEveryDataFile(folder)) {
      search.folder = folder.back() == '/' ? folder : folder + "/";
      break;
    }
  }
  return search;
}

std::string libraryDataDirectory() { return searchDataFolders().folder; }

std::string libraryDataFile(const std::string& name) {
  std::string folder = libraryDataDirectory();
  return folder.empty() ? folder : folder + name;
}

}  // namespace typeprint
