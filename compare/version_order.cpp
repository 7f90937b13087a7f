#include "compare/version_order.h"

#include <cctype>

namespace typeprint::compare {
namespace {

// A part larger than this is no version number (a date or build stamp) and ends the version.
constexpr uint64_t kLargestPart = 1000000000;

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

}  // namespace

std::vector<uint64_t> versionNumbers(const std::string& version) {
  std::vector<uint64_t> numbers;
  size_t i = 0;
  while (i < version.size() && !isDigit(version[i])) ++i;
  while (i < version.size() && isDigit(version[i])) {
    uint64_t part = 0;
    for (; i < version.size() && isDigit(version[i]); ++i) part = std::min(part * 10 + uint64_t(version[i] - '0'), kLargestPart);
    numbers.push_back(part);
    if (i + 1 < version.size() && version[i] == '.' && isDigit(version[i + 1])) ++i;
    else break;
  }
  while (!numbers.empty() && numbers.back() == 0) numbers.pop_back();
  return numbers;
}

int compareVersions(const std::string& a, const std::string& b) {
  const std::vector<uint64_t> na = versionNumbers(a), nb = versionNumbers(b);
  if (na.empty() && nb.empty()) return a.compare(b) < 0 ? -1 : a == b ? 0 : 1;
  if (na.empty() != nb.empty()) return na.empty() ? -1 : 1;
  for (size_t i = 0; i < std::max(na.size(), nb.size()); ++i) {
    const uint64_t x = i < na.size() ? na[i] : 0, y = i < nb.size() ? nb[i] : 0;
    if (x != y) return x < y ? -1 : 1;
  }
  return 0;
}

}  // namespace typeprint::compare
