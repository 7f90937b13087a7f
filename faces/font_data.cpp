#include "faces/font_data.h"

#include <cctype>
#include <cstring>
#include <string>

#include "analysis/checksums.h"
#include "base/diagnostics.h"
#include "analysis/name_table.h"
#include "analysis/type1_header.h"
#include "resources/families.h"
#include "resources/resource_file.h"
#include "resources/resource_metadata.h"

namespace typeprint {
namespace {

const char* const kExtensions[] = {"ttf", "otf", "ps", "dfont", "ttc", "fot", "fnt", "fon", "pfm", "pfb", "mmm", "inf"};

// The text after the last dot counts as an extension only when it is at most five characters.
constexpr size_t kMaxDotAndExtension = 6;

// Any one of these tables makes a TrueType font an OpenType one.
const char* const kOpenTypeTables[] = {"DSIG", "GDEF", "GSUB", "GPOS", "JSTF", "BASE"};

// Windows printer-font metrics: version u16, file size u32 (read big-endian here, although
// such files store it little-endian), then a 60-byte copyright field.
constexpr size_t kPFMHeaderSize = 117;
constexpr size_t kPFMSizeOffset = 2;
constexpr size_t kPFMCopyrightOffset = 6;
constexpr size_t kPFMCopyrightSize = 60;

constexpr uint32_t kTagTTCF = tag("ttcf");

// The first four bytes of the file as a big-endian number; nothing for a resource font, a file
// that is not open, or one shorter than four bytes.
std::optional<uint32_t> fileSignature(const TFontData& fd) {
  if ((fd.resourceFile && fd.resourceFile->hasFamilies()) || !fd.forks) return std::nullopt;
  BEReader r(fd.forks->dataFork);
  uint32_t signature = r.u32();
  if (!r.ok()) return std::nullopt;
  return signature;
}

bool hasPrinterFontMetricsHeader(const TFontData& fd) {
  if (!fd.forks) return false;
  ByteSpan file = fd.forks->dataFork;
  BEReader r(file);
  ByteSpan header = r.span(kPFMHeaderSize);
  if (!r.ok()) return false;
  BEReader size = BEReader(header).at(kPFMSizeOffset, 4);
  if (uint64_t(size.u32()) != uint64_t(file.size)) return false;
  std::string copyright(header.data + kPFMCopyrightOffset, header.data + kPFMCopyrightOffset + kPFMCopyrightSize);
  for (char& c : copyright) c = char(std::tolower(static_cast<unsigned char>(c)));
  return copyright.find("copyright") != std::string::npos;
}

void setKind(TFontData& fd, uint16_t kind, UxString* kindString) {
  fd.fontKind = kind;
  if (kindString) *kindString = fontKindString(kind);
}

void kindFromExtension(TFontData& fd, UxString* kindString) {
  switch (fd.extensionType) {
    case kExtTTF:
    case kExtDfont: setKind(fd, kFontKindTrueType, kindString); break;
    case kExtOTF: setKind(fd, has_otf_OTTO_Flag(fd) ? kFontKindOpenTypePS : kFontKindOpenTypeTT, kindString); break;
    case kExtPS:
    case kExtPFM: setKind(fd, kFontKindPostScript, kindString); break;
    case kExtTTC: setKind(fd, kFontKindCollection, kindString); break;
    case kExtMMM: setKind(fd, kFontKindPostScriptMM, kindString); break;
    default: break;
  }
}

// Without a known extension the first bytes decide; each test overrides the one before, so a
// file beginning "ttcf" is TrueType here, and one beginning 0x00010000 stays unknown.
void kindFromHeader(TFontData& fd, UxString* kindString) {
  if (hasValidPSHeader(fd)) setKind(fd, kFontKindPostScript, kindString);
  if (has_ttc_ttcf_Flag(fd)) setKind(fd, kFontKindTrueType, kindString);
  if (has_otf_OTTO_Flag(fd)) setKind(fd, kFontKindOpenTypePS, kindString);
}

void promoteToOpenType(TFontData& fd) {
  if (fd.isResourceFont || fd.fontKind != kFontKindTrueType || fd.data.empty()) return;
  for (const char* table : kOpenTypeTables) {
    if (FindSpecifiedTable(fd.font(), table)) {
      fd.fontKind = kFontKindOpenTypeTT;
      return;
    }
  }
}

void trimTrailingSpaces(UxString& text) {
  size_t end = text.find_last_not_of(' ');
  text.erase(end == std::string::npos ? 0 : end + 1);
}

// Why no kind could be decided, with what the file begins with.
void refuseUnknownKind(const TFontData& fd) {
  if (fd.resourceFile && fd.resourceFile->hasFamilies())
    TP_REFUSE_WHOLE("kind", "the family has no outline or bitmap resource for this face");
  else if (fd.resourceFile)
    TP_REFUSE_WHOLE("kind", "a printer font file without families: its faces are read through the suitcase that names it");
  else if (!fd.forks)
    TP_REFUSE_WHOLE("kind", "the file cannot be read");
  else if (fd.forks->dataFork.size < 4)
    TP_REFUSE_WHOLE("kind", "not a font: a data fork of %zu bytes and no resource fork", fd.forks->dataFork.size);
  else {
    const uint8_t* b = fd.forks->dataFork.data;
    TP_REFUSE("kind", 0, "not a font: first bytes %02X %02X %02X %02X", b[0], b[1], b[2], b[3]);
  }
}

// The names of the face read as an sfnt.
FaceOutcome collectSfntNames(TFontData& fd, Resource fond, short style, UxString& kind, UxString* platform,
                             UxString* foundry, UxString* family, UxString* version, UxString* postScriptName,
                             UxString* styledName, UxString* fullName, UxString* windowsFullName,
                             uint32_t* kerningChecksum) {
  loadFontDataIntoMemory(fd, fond, style);
  if (!fd.data.data) {
    // An unknown kind loads nothing, and its refusal says why already.
    if (fd.fontKind == kFontKindUnknown) return FaceOutcome::NoNames;
    if (fd.isResourceFont) TP_REFUSE_WHOLE("face", "style %d has no outline resource to read", int(style));
    else TP_REFUSE_WHOLE("face", "the data fork is empty or too large to read as a font");
    return FaceOutcome::NoNames;
  }
  if (fd.fontKind == kFontKindOpenTypeTT) kind = fontKindString(kFontKindOpenTypeTT);
  const bool gotNames = getMetaDataFromNamesTable(fd.font(), foundry, family, version, postScriptName, styledName,
                                                  fullName, windowsFullName);
  FaceOutcome outcome = gotNames ? FaceOutcome::Read : FaceOutcome::NoNames;
  if (platform && !fd.isResourceFont && gotNames && !GetPlatformTTF(fd.font(), platform))
    outcome = FaceOutcome::PlatformUndecided;
  if (kerningChecksum) GetTrueTypeKerningTableChecksum(fd.font(), kerningChecksum);
  return outcome;
}

}  // namespace

PSHeaderOutcome CollectPSMetaData(ResourceFile* resourceFile, const UxString& path, Resource fond, short style,
                                  UxString* printerFilePath, UxString* kind, UxString* foundry, UxString* family,
                                  UxString* version, UxString* postScriptName, UxString* styledName,
                                  UxString* fullName) {
  PSHeaderOutcome status = CollectPSMetaDataMac(resourceFile, path, fond, style, printerFilePath, kind, foundry,
                                                family, version, postScriptName, styledName, fullName);
  if (status == PSHeaderOutcome::Read) return status;
  return CollectPSMetaDataFromFile(path, printerFilePath, kind, foundry, family, version, postScriptName,
                                   styledName, fullName);
}

const char* fontKindString(uint16_t kind) {
  static const char* const kStrings[] = {"TrueType",   "OpenType - TT",   "OpenType - PS",      "PostScript",
                                         "PostScript - MM", "TrueType Collection"};
  return kind < kFontKindUnknown ? kStrings[kind] : "";
}

void initializeAndConstructFontInfo(TFontData& fd, ResourceFile* resourceFile, const UxString& path,
                                    const FileForks* openedForks) {
  fd.forks.reset();
  fd.extensionType = kExtUnknown;
  fd.fontKind = kFontKindUnknown;
  fd.data = {};
  fd.directory = SfntDirectory();
  fd.isResourceFont = 0;
  std::strncpy(fd.path, path.c_str(), kFontDataPathCapacity - 1);
  fd.path[kFontDataPathCapacity - 1] = '\0';
  fd.pathString = path;
  fd.resourceFile = resourceFile;
  if (resourceFile && (resourceFile->hasFamilies() || resourceFile->hasPrinterResources())) {
    fd.isResourceFont = 1;
    return;
  }
  fd.resourceFile = nullptr;
  if (openedForks) fd.forks = *openedForks;
  else fd.forks = openForks(fd.path);
}

void freeFontInfo(TFontData& fd) {
  fd.isResourceFont = 0;
  fd.extensionType = kExtUnknown;
  fd.fontKind = kFontKindUnknown;
  fd.forks.reset();
  fd.data = {};
  fd.directory = SfntDirectory();
  fd.resourceFile = nullptr;
}

short fontTypeFromExtension(const char* path) {
  if (!path || path[0] == '\0') return kExtUnknown;
  const char* dot = std::strrchr(path, '.');
  std::string extension;
  if (dot && std::strlen(dot) <= kMaxDotAndExtension) extension = dot + 1;
  for (char& c : extension) c = char(std::tolower(static_cast<unsigned char>(c)));
  for (short type = 0; type < short(std::size(kExtensions)); ++type)
    if (extension == kExtensions[type]) return type;
  return kExtUnknown;
}

bool has_ttc_ttcf_Flag(const TFontData& fd) { return fileSignature(fd) == kTagTTCF; }

bool has_otf_TrueType_Flag(const TFontData& fd) { return fileSignature(fd) == kSfntVersionTrueType; }

bool has_otf_OTTO_Flag(const TFontData& fd) { return fileSignature(fd) == kSfntVersionOTTO; }

bool hasValidPSHeader(const TFontData& fd) {
  return (fd.resourceFile && fd.resourceFile->hasType1Outline()) || hasPrinterFontMetricsHeader(fd);
}

void getMetaData_FontType(TFontData& fd, Resource fond, int style, UxString* kindString) {
  if (fd.isResourceFont) {
    const ResourceFile& rf = *fd.resourceFile;
    if (has_ttc_true_Flag(rf, fond, short(style))) setKind(fd, kFontKindTrueType, kindString);
    else if (has_OTTO_Flag_inResource(rf, fond, short(style))) setKind(fd, kFontKindOpenTypePS, kindString);
    else if (rf.hasBitmapFonts()) setKind(fd, kFontKindPostScript, kindString);
    if (fd.fontKind != kFontKindUnknown) {
      TP_NOTE("kind", "%s, from the face's resources", fontKindString(fd.fontKind));
      return;
    }
  }
  fd.extensionType = uint16_t(fontTypeFromExtension(fd.path));
  kindFromExtension(fd, kindString);
  if (fd.fontKind != kFontKindUnknown) {
    TP_NOTE("kind", "%s, from the extension .%s", fontKindString(fd.fontKind), kExtensions[fd.extensionType]);
    return;
  }
  if (fd.extensionType == kExtUnknown) kindFromHeader(fd, kindString);
  if (fd.fontKind != kFontKindUnknown) TP_NOTE("kind", "%s, from the first bytes", fontKindString(fd.fontKind));
  else refuseUnknownKind(fd);
}

void loadFontDataIntoMemory(TFontData& fd, Resource fond, short style) {
  if (fd.fontKind <= kFontKindOpenTypePS) loadTTFontData(fd, fond, style);
}

void loadTTFontData(TFontData& fd, Resource fond, short style) {
  if (fd.resourceFile && (fd.isResourceFont || fd.extensionType == kExtDfont)) {
    int16_t id = getFirstResourceIDForStyle(dataOf(fond), style);
    if (Resource sfnt = fd.resourceFile->find(kTypeSfnt, id)) fd.data = sfnt->data();
  }
  // The whole data fork, where it lies; a size that does not fit in 32 bits counts as none.
  if (!fd.data.data && fd.forks && fd.forks->dataFork.size < 0xFFFFFFFFu) fd.data = fd.forks->dataFork;
  fd.directory = SfntDirectory(SfntBytes(fd.data));
  promoteToOpenType(fd);
}

FaceOutcome CollectMetaData(ResourceFile* resourceFile, const UxString& path, Resource fond, short style,
                            UxString* printerFilePath, UxString* kindString, UxString* platform, UxString* foundry,
                            UxString* family, UxString* version, UxString* postScriptName, UxString* styledName,
                            UxString* fullName, UxString* windowsFullName, uint32_t* kerningChecksum,
                            const FileForks* openedForks) {
  TFontData fd;
  initializeAndConstructFontInfo(fd, resourceFile, path, openedForks);
  UxString kind;
  getMetaData_FontType(fd, fond, style, &kind);
  if (platform) *platform = "mac";
  std::optional<FaceOutcome> outcome;
  if (fd.fontKind == kFontKindPostScript) {
    switch (CollectPSMetaData(fd.resourceFile, path, fond, style, printerFilePath, &kind, foundry, family, version,
                              postScriptName, styledName, fullName)) {
      case PSHeaderOutcome::Read: outcome = FaceOutcome::Read; break;
      case PSHeaderOutcome::NoPrinterFile: outcome = FaceOutcome::PrinterFileMissing; break;
      // The font is read as an sfnt; its kind string stays what it was.
      case PSHeaderOutcome::NothingToDo: fd.fontKind = kFontKindTrueType; break;
    }
  }
  if (!outcome) outcome = collectSfntNames(fd, fond, style, kind, platform, foundry, family, version, postScriptName,
                                           styledName, fullName, windowsFullName, kerningChecksum);
  if (family) trimTrailingSpaces(*family);
  if (kindString) *kindString = kind;
  freeFontInfo(fd);
  return *outcome;
}

}  // namespace typeprint
