#include "rescue/safe_file_name.h"

namespace typeprint::rescue {
namespace {

constexpr size_t kMaxNameBytes = 200;

bool keeps(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
         c == '_' || c == '+';
}

}  // namespace

std::string safeFileName(const std::string& name) {
  std::string safe;
  for (char c : name.substr(0, kMaxNameBytes)) safe.push_back(keeps(c) ? c : '_');
  if (safe.empty()) return "font";
  if (safe[0] == '.') safe[0] = '_';
  return safe;
}

std::string lastPathComponent(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace typeprint::rescue
