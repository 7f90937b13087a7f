// Where the library's data files live: share/typeprint/ beside the lib/ folder that holds the
// library's own file (or the executable it is linked into). The build tree mirrors that layout.
#pragma once

#include <string>

namespace typeprint {

// The data folder, ending with "/"; empty when the library's own file cannot be found.
std::string libraryDataDirectory();

// libraryDataDirectory() + name, or empty.
std::string libraryDataFile(const std::string& name);

}  // namespace typeprint
