// One face of one file as the duplicate finder sees it: what identification told about it, where
// the file lies and which file it really is, gathered once when the file was identified.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/format_face.h"
#include "typeprint.h"

namespace typeprint::compare {

// Where a file lies, in the order a keeper is preferred.
enum class FolderClass { System, User, Other };
const char* folderClassName(FolderClass folder);  // "system", "user", "other"

struct TFontCopy {
  std::string path;
  uint32_t face = 0;  // index of the face in its file
  std::string kind;   // "TrueType", "OpenType - PS", "PostScript", a bitmap kind...
  // "WOFF", "WOFF2" or "collection" when the face is packed; empty for a single plain font.
  std::string container;
  std::string postScriptName, family, style, version, foundry;
  std::optional<uint32_t> checksum, legacyChecksum, kerningChecksum;
  // The checksum of a Type 1 program that no container changes; 0 for other kinds.
  uint32_t programChecksum = 0;
  // The named instances of a variable font; empty for a static face.
  std::vector<formats::TNamedInstance> instances;
  bool variable = false;

  // The file itself: which file it is (device and inode, links followed), its size, and whether
  // the path is a symbolic link.
  uint64_t device = 0, inode = 0, size = 0;
  bool symbolicLink = false;
  FolderClass folder = FolderClass::Other;

  // The library's records of the file, for TP_Match; may be null.
  std::shared_ptr<TP_FontArray> array;
};

// Fills the file facts of a copy (device, inode, size, symbolic link) from the file system;
// false when the path cannot be examined.
bool readFileFacts(TFontCopy& copy);

// The folder class of a path: under one of `systemFolders`, under one of `userFolders`, or other.
FolderClass classifyFolder(const std::string& path, const std::vector<std::string>& systemFolders,
                           const std::vector<std::string>& userFolders);

}  // namespace typeprint::compare
