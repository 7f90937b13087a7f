// Reading one of the library's reference tables: a property-list file, found beside the library
// or at a path given by the caller.
#pragma once

#include <optional>
#include <string>

#include "base/plist_value.h"

namespace typeprint {

// The property list stored at `path`; nothing when the file cannot be read or is not a property
// list. An empty file is not a property list.
std::optional<PlistValue> readTableFile(const std::string& path);

// The installed data file `name` (share/typeprint/ beside the library), read as above.
std::optional<PlistValue> readInstalledTableFile(const std::string& name);

}  // namespace typeprint
