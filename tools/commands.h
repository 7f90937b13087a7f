// The typeprint subcommands. Each returns the process exit status.
#pragma once

#include <string>
#include <vector>

namespace typeprint::cli {

int identifyCommand(const std::vector<std::string>& args);
int scanCommand(const std::vector<std::string>& args);
int duplicatesCommand(const std::vector<std::string>& args);
int splitCommand(const std::vector<std::string>& args);
int stylesCommand(const std::vector<std::string>& args);
int classifyCommand(const std::vector<std::string>& args);

}  // namespace typeprint::cli
