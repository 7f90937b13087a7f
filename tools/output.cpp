#include "tools/output.h"

#include <cstdio>

#include "platform/linux/atomic_file.h"
#include "tools/identify_files.h"

namespace typeprint::cli {

void Output::write(const std::string& text) {
  if (path_.empty())
    std::fwrite(text.data(), 1, text.size(), stdout);
  else
    buffered_ += text;
}

bool Output::finish() {
  if (path_.empty()) return std::fflush(stdout) == 0;
  const WriteResult written =
      replaceFileAtomically(path_, ByteSpan(reinterpret_cast<const uint8_t*>(buffered_.data()), buffered_.size()));
  if (!written) reportProblem(path_, written.reason());
  return bool(written);
}

void addOutputOption(CLI::App& app, std::string& path) {
  app.add_option("-o,--output", path, "write the results to PATH (whole, through a temporary file) instead of "
                                      "standard output")
      ->type_name("PATH");
}

}  // namespace typeprint::cli
