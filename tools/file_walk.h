// Finding font files under folders, the way a font manager's scan does.
#pragma once

#include <string>
#include <vector>

namespace typeprint::cli {

// The system and user font folders that exist: /usr/share/fonts, /usr/local/share/fonts,
// $XDG_DATA_HOME/fonts (default ~/.local/share/fonts) and ~/.fonts.
std::vector<std::string> defaultFontFolders();

// Every regular file under the given paths (files are taken as they are), sorted, without the
// companion files that carry other files' resource forks.
std::vector<std::string> collectFiles(const std::vector<std::string>& paths, std::vector<std::string>* unreadable);

// Whether a file that gave no face looks like a font the library should have read (an sfnt, a
// collection, a suitcase): then it counts as damaged. Other files are not fonts, or formats that
// are identified only through their suitcases (printer files) or metrics companions (.pfb).
bool looksLikeIdentifiableFont(const std::string& path);

}  // namespace typeprint::cli
