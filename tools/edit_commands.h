// The editing subcommands: strip the families of a resource-fork font file down to one style, and
// make one style of a family its plain style. Both work on a copy of the file (its whole
// container form) unless told to edit in place. Each returns the process exit status.
#pragma once

#include <string>
#include <vector>

namespace typeprint::cli {

int purgeCommand(const std::vector<std::string>& args);
int promoteCommand(const std::vector<std::string>& args);

}  // namespace typeprint::cli
