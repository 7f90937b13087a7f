// Why a path gave no face: first what the system says about it (before the library is asked),
// then the library's verdict on a regular file it could not identify.
#pragma once

#include <optional>
#include <string>

namespace typeprint::cli {

// What kind of entry a path names, without following a final symbolic link.
enum class EntryType { Missing, Regular, Directory, Symlink, Fifo, Socket, Device };
EntryType entryType(const std::string& path, bool followLinks);

// Nothing when `path` is a regular file that opens for reading; otherwise why it cannot be read:
// the system's own words ("No such file or directory", "Permission denied", "Is a directory"), or
// for FIFOs, sockets and devices a note that they are not read (they are never opened).
std::optional<std::string> unreadableReason(const std::string& path);

// The library's verdict on a readable file that gave no face.
struct LibraryVerdict {
  bool notAFont;       // not a font of a kind the library reads (else: a font it could not read)
  std::string reason;  // in words, for "typeprint: PATH: REASON"
};
LibraryVerdict libraryVerdict(const std::string& path);

}  // namespace typeprint::cli
