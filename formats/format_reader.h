// The entry of the wider reader: what a file's bytes are (whatever its name says), and its faces
// in every format the reader knows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/be_reader.h"
#include "formats/format_face.h"
#include "platform/linux/fork_locator.h"

namespace typeprint::formats {

// The kind the bytes show: "TrueType", "OpenType - PS", "TrueType Collection", "OpenType
// Collection" (a collection whose first face has CFF outlines), "WOFF", "WOFF2", "PostScript"
// (plain Type 1), "PCF", "BDF", "gzip", "BinHex"; empty for anything else. readFormatFile names
// a gzip-compressed bitmap font by the kind inside, with "gzip" as its container.
std::string contentKindOf(ByteSpan bytes);

// The kind a file's extension promises, in the same words (a .gz ending is passed over); empty
// when the extension promises none of them.
std::string extensionKindOf(const std::string& path);

// A note when the bytes show a font kind other than the one the name promises (either kind of
// collection fits .ttc and .otc), or the name has no extension at all; empty otherwise.
std::string kindNote(const std::string& path, const std::string& contentKind);

// Reads the file at `path`: the container and content kind, the kind note, and the faces of
// WOFF, WOFF2, sfnt and collection files, plain Type 1 (and printer-file) programs, PCF
// (also gzip-compressed), BDF and Mac bitmap-only families. Nothing when the file cannot be read.
std::optional<TFormatFile> readFormatFile(const std::string& path);

// What a file the library has already identified adds: its content kind and kind note, and for
// sfnt files and collections the faces' names, kinds, axes and instances (checksums left 0: the
// library's face checksum is the content checksum of an sfnt face). Nothing when unreadable.
std::optional<TFormatFile> readFormatSummary(const std::string& path);

// The faces the wider reader finds in a resource-fork font file (a printer file's Type 1
// program, bitmap-only families), from `path` or from forks already open.
std::vector<TFormatFace> readResourceFaces(const std::string& path, const FileForks* forks);

// readFormatFile over bytes already in memory, as read from `path` (used for its name and
// companions); a BinHex archive gives its container and kind only.
TFormatFile readFormatBytes(ByteSpan bytes, const std::string& path);

}  // namespace typeprint::formats
