// Where tests find their fixture fonts and scratch space.
#pragma once

#include <string>

namespace typeprint::test {

// Path of a committed fixture under tests/fonts/.
std::string fontPath(const std::string& relative);

// A fresh, empty folder for one test, removed by the destructor.
class ScratchDir {
 public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;
  const std::string& path() const { return path_; }
  // path() + "/" + name
  std::string file(const std::string& name) const;

 private:
  std::string path_;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace typeprint::test
