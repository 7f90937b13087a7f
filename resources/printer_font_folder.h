// The printer-font files beside a resource-fork font file: which files of a folder hold a
// PostScript Type 1 font (files with `POST` resources, in any fork container, and `.pfb`/`.pfa`
// files), the PostScript name each one's header gives, and where a printer file of a given name
// is when it arrived wrapped in a MacBinary or AppleSingle container.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace typeprint {

struct FolderPrinterFont {
  std::string fileName;        // the file's own name in the folder
  std::string postScriptName;  // from its header; never empty
};

// The printer fonts of `folder` (a path with or without its "/"; empty for the working folder),
// in file-name order. Fork companions (`._N` and the like) and anything but regular files are
// skipped. A folder's listing and each file's PostScript name are kept for the process, so that
// the many suitcases of one large folder do not each read every file of it again: the listing
// is read again when the folder changes, and a name when its file or fork companion changes.
std::vector<FolderPrinterFont> readFolderPrinterFonts(const std::string& folder);

// How many files readFolderPrinterFonts has read a PostScript name from, in this process.
size_t printerFolderFilesRead();

// The PostScript name in the header of the printer font at `path`: from its `POST` resources,
// or from the first bytes of a `.pfb`/`.pfa` data fork. Empty when it is no printer font.
std::string printerFontPostScriptName(const std::string& path);

// The name of the file in `folder` that holds the printer file `name`: `name` itself when it is
// a file, else a MacBinary or AppleSingle container `name.bin`, `name.macbin` or `name.as`
// whose header gives `name` as the Mac file name. Nothing when there is neither.
std::optional<std::string> findPrinterFileInFolder(const std::string& folder, const std::string& name);

}  // namespace typeprint
