#include "tools/file_walk.h"

#include <dirent.h>
#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <set>
#include <sstream>
#include <utility>

#include "platform/linux/fork_locator.h"

namespace typeprint::cli {
namespace {

using FileID = std::pair<dev_t, ino_t>;

FileReport problem(const std::string& path, const std::string& reason) {
  FileReport report;
  report.path = path;
  report.status = FileStatus::Failed;
  report.error = reason;
  return report;
}

class Walker {
 public:
  explicit Walker(bool followLinks) : follow_(followLinks) {}

  void walkFolder(const std::string& folder, const struct stat& st) {
    if (!entered_.insert({st.st_dev, st.st_ino}).second) return;  // a link loop, or a folder seen already
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) {
      result_.problems.push_back(problem(folder, std::strerror(errno)));
      return;
    }
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(dir)) {
      const std::string name = entry->d_name;
      if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(dir);
    const std::string prefix = folder.back() == '/' ? folder : folder + "/";
    for (const std::string& name : names) visit(prefix + name);
  }

  WalkResult take() {
    std::sort(result_.files.begin(), result_.files.end());
    result_.files.erase(std::unique(result_.files.begin(), result_.files.end()), result_.files.end());
    return std::move(result_);
  }
  void addFile(const std::string& path) { result_.files.push_back(path); }

 private:
  void visit(const std::string& path) {
    struct stat st;
    if (::lstat(path.c_str(), &st) != 0) return;  // gone since the folder was read
    if (S_ISLNK(st.st_mode)) {
      if (::stat(path.c_str(), &st) != 0) {
        result_.problems.push_back(problem(path, std::string("broken symbolic link: ") + std::strerror(errno)));
        return;
      }
      if (!follow_) return;
    }
    if (S_ISDIR(st.st_mode))
      walkFolder(path, st);
    else if (S_ISREG(st.st_mode) && !isForkCompanion(path))
      result_.files.push_back(path);
  }

  bool follow_;
  std::set<FileID> entered_;
  WalkResult result_;
};

bool isFolder(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Existing folders, without those inside another one of the list.
std::vector<std::string> outermostFolders(std::vector<std::string> folders) {
  std::sort(folders.begin(), folders.end());
  std::vector<std::string> kept;
  for (std::string& folder : folders) {
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    if (!isFolder(folder)) continue;
    const bool inside = std::any_of(kept.begin(), kept.end(), [&](const std::string& outer) {
      return folder == outer || folder.compare(0, outer.size() + 1, outer + "/") == 0;
    });
    if (!inside) kept.push_back(folder);
  }
  return kept;
}

std::vector<std::string> fontconfigFolders() {
  std::vector<std::string> folders;
  FcConfig* config = FcInitLoadConfig();
  if (!config) return folders;
  if (FcStrList* list = FcConfigGetFontDirs(config)) {
    while (FcChar8* folder = FcStrListNext(list)) folders.emplace_back(reinterpret_cast<const char*>(folder));
    FcStrListDone(list);
  }
  FcConfigDestroy(config);
  return folders;
}

std::vector<std::string> xdgFontFolders() {
  std::vector<std::string> folders;
  const char* dataHome = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  if (dataHome && *dataHome == '/')
    folders.push_back(std::string(dataHome) + "/fonts");
  else if (home && *home)
    folders.push_back(std::string(home) + "/.local/share/fonts");
  const char* dataDirs = std::getenv("XDG_DATA_DIRS");
  std::istringstream dirs(dataDirs && *dataDirs ? dataDirs : "/usr/local/share:/usr/share");
  for (std::string dir; std::getline(dirs, dir, ':');)
    if (!dir.empty() && dir[0] == '/') folders.push_back(dir + "/fonts");
  return folders;
}

}  // namespace

WalkResult collectFiles(const std::vector<std::string>& roots, bool followLinks) {
  Walker walker(followLinks);
  for (const std::string& root : roots) {
    struct stat st;
    // A folder named by the user is entered even through a link; anything else is reported on.
    if (::stat(root.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
      walker.walkFolder(root, st);
    else
      walker.addFile(root);
  }
  return walker.take();
}

std::vector<std::string> defaultFontFolders() {
  std::vector<std::string> folders = outermostFolders(fontconfigFolders());
  return folders.empty() ? outermostFolders(xdgFontFolders()) : folders;
}

}  // namespace typeprint::cli
