// Where a command's results go: standard output, or with -o PATH a file written whole through a
// temporary file and a rename, so that a reader never sees half of it.
#pragma once

#include <string>

#include "tools/command.h"

namespace typeprint::cli {

class Output {
 public:
  // Standard output when `path` is empty.
  explicit Output(std::string path) : path_(std::move(path)) {}
  void write(const std::string& text);
  // Writes the file when there is one; false, with the reason reported, when that fails.
  bool finish();

 private:
  std::string path_;
  std::string buffered_;
};

// -o, --output PATH.
void addOutputOption(CLI::App& app, std::string& path);

}  // namespace typeprint::cli
