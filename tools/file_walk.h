// Finding the files to identify under folders, the way a font manager's scan does, without ever
// opening a FIFO, socket or device, and without leaving the given folders through a symbolic link
// unless asked to.
#pragma once

#include <string>
#include <vector>

#include "tools/face_report.h"

namespace typeprint::cli {

struct WalkResult {
  std::vector<std::string> files;  // sorted, each once
  // Folders that could not be read and broken links, as failed reports with the reason.
  std::vector<FileReport> problems;
};

// Every regular file under the given paths, less the companion files that carry other files'
// resource forks. A path that is not a folder is taken as it is, so that identify reports on it.
// Inside folders, FIFOs, sockets and devices are passed over; symbolic links are followed only
// with `followLinks`, and then each folder is entered once, so link loops end.
WalkResult collectFiles(const std::vector<std::string>& roots, bool followLinks);

// The folders fontconfig is configured with (its <dir> elements, read without scanning any font), or when it has none, the XDG font folders
// ($XDG_DATA_HOME/fonts and fonts/ under each of $XDG_DATA_DIRS): those that exist, none inside
// another.
std::vector<std::string> defaultFontFolders();

}  // namespace typeprint::cli
