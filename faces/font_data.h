// One font while it is analysed: where its bytes are, what kind of font it is (from the file
// name's extension and the file's first bytes), and the whole analysis that fills a face's
// names, platform and kerning checksum.
#pragma once

#include <cstdint>
#include <optional>

#include "analysis/sfnt_directory.h"
#include "foundation/ux_string.h"
#include "platform/linux/fork_locator.h"
#include "resources/resource_file.h"
#include "resources/resource_metadata.h"

namespace typeprint {

enum EFontKind : uint16_t {
  kFontKindTrueType = 0,
  kFontKindOpenTypeTT = 1,
  kFontKindOpenTypePS = 2,
  kFontKindPostScript = 3,
  kFontKindPostScriptMM = 4,
  kFontKindCollection = 5,
  kFontKindUnknown = 6,
};

// The kind attribute's text for a kind; empty for the unknown kind.
const char* fontKindString(uint16_t kind);

// Extension types, in the order the extensions are compared.
enum EExtensionType : uint16_t {
  kExtTTF = 0, kExtOTF, kExtPS, kExtDfont, kExtTTC, kExtFOT, kExtFNT, kExtFON, kExtPFM, kExtPFB, kExtMMM, kExtINF,
  kExtUnknown = 12,
};

constexpr size_t kFontDataPathCapacity = 1024;

// The view of one font while it is analysed. The bytes are never copied: `data` points into the
// file's mapped data fork or into the face's `sfnt` resource of the open resource file.
struct TFontData {
  char path[kFontDataPathCapacity] = {};  // at most 1,023 characters, always terminated
  UxString pathString;
  // The file's forks, mapped once. Absent for a font read from a resource file, or when the
  // file could not be opened; every header test then answers false.
  std::optional<FileForks> forks;
  uint16_t extensionType = kExtUnknown;
  uint16_t fontKind = kFontKindUnknown;
  ByteSpan data;
  SfntDirectory directory;               // the table directory of `data`, read once when data is loaded
  int isResourceFont = 0;                // the font lives in the file's resource fork (FOND or POST resources)
  ResourceFile* resourceFile = nullptr;  // the caller's open resource file; not owned

  SfntBytes font() const { return SfntBytes(data).withDirectory(directory); }
};

// Resets every field and opens the font: a resource font when resourceFile holds FOND or POST
// resources, else the file at `path` (or the forks given, already mapped by the caller).
void initializeAndConstructFontInfo(TFontData& fd, ResourceFile* resourceFile, const UxString& path,
                                    const FileForks* openedForks = nullptr);
// Gives back what the view holds and marks the kind unknown.
void freeFontInfo(TFontData& fd);

// The extension type of a path; the last "." of the whole path counts.
short fontTypeFromExtension(const char* path);

// The first four bytes of the file are "ttcf", 0x00010000 or "OTTO". False for a resource font
// (one with FOND resources) and for a file that is not open.
bool has_ttc_ttcf_Flag(const TFontData& fd);
bool has_otf_TrueType_Flag(const TFontData& fd);
bool has_otf_OTTO_Flag(const TFontData& fd);
// A valid PostScript header resource, or the header of a Windows printer-font-metrics file.
bool hasValidPSHeader(const TFontData& fd);

// Decides fd.fontKind and writes the kind string (left alone when the kind stays unknown).
void getMetaData_FontType(TFontData& fd, Resource fond, int style, UxString* kindString);

// Points fd.data at the font's bytes for the sfnt kinds (0, 1, 2).
void loadFontDataIntoMemory(TFontData& fd, Resource fond, short style);
void loadTTFontData(TFontData& fd, Resource fond, short style);

// The names of a PostScript face: from its printer file's POST resources, else from the printer
// file's data fork.
PSHeaderOutcome CollectPSMetaData(ResourceFile* resourceFile, const UxString& path, Resource fond, short style,
                                  UxString* printerFilePath, UxString* kind, UxString* foundry, UxString* family,
                                  UxString* version, UxString* postScriptName, UxString* styledName,
                                  UxString* fullName);

// What the analysis of one face gave.
enum class FaceOutcome {
  Read,                // the names were read
  PrinterFileMissing,  // a PostScript face whose printer file is missing or unopenable: still a face
  NoNames,             // no font data, or no usable name in it
  PlatformUndecided,   // names read, but the sfnt's platform could not be decided
};

// The whole analysis of one font (a file, or one face of a resource-fork font file). Any output
// may be null. `openedForks` lets a caller that has mapped the file share it.
FaceOutcome CollectMetaData(ResourceFile* resourceFile, const UxString& path, Resource fond, short style,
                     UxString* printerFilePath, UxString* kindString, UxString* platform, UxString* foundry,
                     UxString* family, UxString* version, UxString* postScriptName, UxString* styledName,
                     UxString* fullName, UxString* windowsFullName, uint32_t* kerningChecksum,
                     const FileForks* openedForks = nullptr);

}  // namespace typeprint
