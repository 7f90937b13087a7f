#include "support/test_paths.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace typeprint::test {

std::string fontPath(const std::string& relative) { return std::string(TYPEPRINT_TEST_FONTS) + "/" + relative; }

ScratchDir::ScratchDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "typeprint-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

ScratchDir::~ScratchDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ScratchDir::file(const std::string& name) const { return path_ + "/" + name; }

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), std::streamsize(bytes.size()));
}

}  // namespace typeprint::test
