// The commands that read the library's data files (classify, styles, foundry names) check first
// that they are there, so that a missing installation reads as one, not as "unknown".
#pragma once

namespace typeprint::cli {

// True when the data files were found; otherwise reports on stderr, as
// "typeprint: data files not found; looked in PLACE, PLACE", every place looked.
bool dataFilesFound();

}  // namespace typeprint::cli
