#include "tools/file_walk.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/linux/fork_locator.h"
#include "resources/resource_file.h"

namespace typeprint::cli {
namespace fs = std::filesystem;

std::vector<std::string> defaultFontFolders() {
  std::vector<std::string> candidates = {"/usr/share/fonts", "/usr/local/share/fonts"};
  const char* home = std::getenv("HOME");
  const char* dataHome = std::getenv("XDG_DATA_HOME");
  if (dataHome && *dataHome)
    candidates.push_back(std::string(dataHome) + "/fonts");
  else if (home)
    candidates.push_back(std::string(home) + "/.local/share/fonts");
  if (home) candidates.push_back(std::string(home) + "/.fonts");
  std::vector<std::string> existing;
  for (const std::string& c : candidates) {
    std::error_code ec;
    if (fs::is_directory(c, ec)) existing.push_back(c);
  }
  return existing;
}

std::vector<std::string> collectFiles(const std::vector<std::string>& paths, std::vector<std::string>* unreadable) {
  std::vector<std::string> files;
  for (const std::string& root : paths) {
    std::error_code ec;
    if (!fs::is_directory(root, ec)) {
      files.push_back(root);  // a named file is always tried, so that its failure is reported
      continue;
    }
    fs::recursive_directory_iterator it(root, fs::directory_options::skip_permission_denied, ec), end;
    if (ec) {
      unreadable->push_back(root);
      continue;
    }
    for (; it != end; it.increment(ec)) {
      if (ec) break;
      std::error_code typeError;
      if (!it->is_regular_file(typeError)) continue;
      const std::string path = it->path().string();
      if (!isForkCompanion(path)) files.push_back(path);
    }
  }
  std::sort(files.begin(), files.end());
  files.erase(std::unique(files.begin(), files.end()), files.end());
  return files;
}

bool looksLikeIdentifiableFont(const std::string& path) {
  std::optional<FileForks> forks = openForks(path);
  if (!forks) return true;  // unreadable
  // A resource file is a font of its own when it holds families or outlines; a printer file
  // (POST resources only) is read through the suitcase that names it.
  if (auto rf = ResourceFile::open(path, *forks, true)) return rf->hasFamilies() || rf->count(kTypeSfnt) > 0;
  BEReader r(forks->dataFork);
  const uint32_t magic = r.u32();
  return magic == 0x00010000 || magic == tag("OTTO") || magic == tag("true") || magic == tag("ttcf");
}

}  // namespace typeprint::cli
