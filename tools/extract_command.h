// typeprint extract: the fonts inside Mac font files written out as files Linux reads.
#pragma once

#include <string>
#include <vector>

namespace typeprint::cli {

int extractCommand(const std::vector<std::string>& args);

}  // namespace typeprint::cli
