#include "compare/font_copy.h"

#include <sys/stat.h>

namespace typeprint::compare {
namespace {

bool isInside(const std::string& path, std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return !folder.empty() && path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
         path[folder.size()] == '/';
}

}  // namespace

const char* folderClassName(FolderClass folder) {
  switch (folder) {
    case FolderClass::System: return "system";
    case FolderClass::User: return "user";
    case FolderClass::Other: return "other";
  }
  return "";
}

bool readFileFacts(TFontCopy& copy) {
  struct stat st;
  if (::lstat(copy.path.c_str(), &st) != 0) return false;
  copy.symbolicLink = S_ISLNK(st.st_mode);
  if (copy.symbolicLink && ::stat(copy.path.c_str(), &st) != 0) return false;
  copy.device = uint64_t(st.st_dev);
  copy.inode = uint64_t(st.st_ino);
  copy.size = uint64_t(st.st_size);
  return true;
}

FolderClass classifyFolder(const std::string& path, const std::vector<std::string>& systemFolders,
                           const std::vector<std::string>& userFolders) {
  // User folders are checked first: a home folder may lie inside a folder listed as the system's.
  for (const std::string& folder : userFolders)
    if (isInside(path, folder)) return FolderClass::User;
  for (const std::string& folder : systemFolders)
    if (isInside(path, folder)) return FolderClass::System;
  return FolderClass::Other;
}

}  // namespace typeprint::compare
