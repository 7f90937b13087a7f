#include "resources/resource_metadata.h"

#include <algorithm>

#include "analysis/name_table.h"
#include "analysis/type1_header.h"
#include "foundation/file_location.h"
#include "foundation/file_system.h"
#include "resources/families.h"
#include "resources/fond.h"
#include "resources/printer_files.h"
#include "resources/resource_file.h"

namespace typeprint {
namespace {

constexpr uint32_t kTyp1Tag = tag("typ1");
constexpr char kKindMM[] = "PostScript - MM";
constexpr char kKindCID[] = "CID";
constexpr char kKindOCF[] = "OCF";
// Prefix of the resource names of multiple-master families.
constexpr char kMMPrefix[] = "%M";

TypeprintResourceFile* asFile(void* rf) { return static_cast<TypeprintResourceFile*>(rf); }

// The header reader's outputs, passed along together.
struct HeaderOutputs {
  UxString* kind;
  UxString* foundry;
  UxString* family;
  UxString* version;
  UxString* postScriptName;
  UxString* styledName;
  UxString* fullName;
};

void gather(ByteSpan bytes, const HeaderOutputs& out) {
  TType1HeaderText text(bytes);
  GatherPostScriptMetaDataFromData(text.lower, text.text, out.kind, out.foundry, out.family, out.version,
                                   out.postScriptName, out.styledName, out.fullName);
}

// What the family says of a face besides its header: multiple master, CID, or another
// double-byte (OCF) family.
struct FaceMarks {
  bool isMM = false;
  bool isCID = false;
  bool isDoubleByte = false;
};

bool startsWith(const std::string& s, const char* prefix) { return s.rfind(prefix, 0) == 0; }

bool endsWith(const std::string& s, const std::string& suffix) {
  return s.size() >= suffix.size() && s.compare(s.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// A multiple-master family's resource name holds "MM" followed, somewhere later, by "_".
bool hasMMFamilyName(const std::string& name) {
  size_t mm = name.find("MM");
  return mm != std::string::npos && name.find('_', mm + 2) != std::string::npos;
}

// A double-byte family whose outline for the face is a Type 1 resource (or whose name says so) is
// CID; one with some other outline is neither; one with no outline for the face is OCF.
void markDoubleByteFace(TypeprintResourceFile& rf, Handle fond, short style, const std::string& name,
                        FaceMarks* marks) {
  marks->isDoubleByte = isDoubleByteFOND(fond);
  if (!marks->isDoubleByte) return;
  for (const FondEntry& entry : fondEntries(HandleBytes(fond))) {
    if (entry.style != uint16_t(style) || !entry.isOutline()) continue;
    Handle sfnt = rf.getResourceHandleForType(kTypeSfnt, entry.resID);
    if (sfnt) {
      BEReader r(HandleBytes(sfnt));
      uint32_t first = r.u32();
      marks->isCID = (r.ok() && first == kTyp1Tag) || startsWith(name, "A-CID") || endsWith(name, "CID-B");
      marks->isDoubleByte = false;
      rf.releaseResource(sfnt);
    }
    return;
  }
}

FaceMarks faceMarks(TypeprintResourceFile& rf, Handle fond, short style) {
  FaceMarks marks;
  std::string name;
  if (GetResInfo(fond, nullptr, nullptr, &name) && hasMMFamilyName(name)) marks.isMM = true;
  else markDoubleByteFace(rf, fond, style, name, &marks);
  return marks;
}

// Header text is taken as UTF-8 where it is valid and as Mac Roman (the encoding of Mac printer
// fonts) where it is not, so that every name leaves here as UTF-8.
void asUTF8(UxString* s) {
  if (!s || s->GetUnicode(TextEncoding::UTF8)) return;
  std::string bytes = *s;
  s->Set(ByteSpan(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), TextEncoding::MacRoman);
}

// Opens the face's printer file beside `path` and reads its header resources.
long readPrinterFile(TypeprintResourceFile& rf, const UxString& path, Handle fond, short style,
                     UxString* printerFilePath, const HeaderOutputs& out) {
  UxString name = getPSPrinterNameForFOND(rf, fond, style);
  if (name.empty()) return kPSMetaDataNoPrinterFile;
  UxString printerPath = UxFileSystemParser::GetPathDeletingLastPathComponent(path) + name;
  if (printerFilePath) *printerFilePath = printerPath;
  auto printer = TypeprintResourceFile::initWithFile(printerPath, true);
  if (!printer) return kPSMetaDataNoPrinterFile;
  bool read = walkPrinterFileHeader(*printer, [&](Handle h) {
    GatherMetaDataFromHandle(h, out.kind, out.foundry, out.family, out.version, out.postScriptName, out.styledName,
                             out.fullName);
    asUTF8(out.styledName);
    asUTF8(out.fullName);
    asUTF8(out.postScriptName);
  });
  return read ? kPSMetaDataRead : kPSMetaDataNothingToDo;
}

// The menu name is the family's own name; a multiple-master family's is cut to the part between
// "%M" and the first "_".
void styledNameFromFamily(TypeprintResourceFile& rf, Handle fond, bool isMM, UxString* styledName) {
  if (!styledName || !fond) return;
  std::string name = getResourceNameFromFOND(rf, fond);
  if (name.empty()) return;
  const size_t prefix = sizeof kMMPrefix - 1;
  if (isMM && startsWith(name, kMMPrefix)) {
    size_t underscore = name.find('_');
    if (underscore != prefix) name = name.substr(prefix, underscore == std::string::npos ? std::string::npos
                                                                                         : underscore - prefix);
  }
  *styledName = name;
}

}  // namespace

void GatherMetaDataFromHandle(Handle handle, UxString* kind, UxString* foundry, UxString* family, UxString* version,
                              UxString* postScriptName, UxString* styledName, UxString* fullName) {
  if (GetHandleSize(handle) == 0) return;
  gather(HandleBytes(handle), {kind, foundry, family, version, postScriptName, styledName, fullName});
}

bool walkPrinterFileHeader(TypeprintResourceFile& printer, const std::function<void(Handle)>& read) {
  bool any = false;
  // Resources past 502 are never read, so the walk ends there.
  for (int16_t id = kFirstPOSTResourceID; id <= kLastPOSTHeaderResourceID; ++id) {
    Handle h = printer.getResourceHandleForType(kTypePOST, id);
    size_t size = GetHandleSize(h);
    const bool ends = size == 0 || (size == kFullPOSTSegmentSize && id != kFirstPOSTResourceID);
    if (!ends) {
      read(h);
      any = true;
    }
    printer.releaseResource(h);
    if (ends) break;
  }
  return any;
}

long CollectPSMetaDataMac(void* rf, const UxString& path, Handle fond, short style, UxString* printerFilePath,
                          UxString* kind, UxString* foundry, UxString* family, UxString* version,
                          UxString* postScriptName, UxString* styledName, UxString* fullName) {
  if (!rf) return kPSMetaDataNothingToDo;
  TypeprintResourceFile& file = *asFile(rf);
  const HeaderOutputs out{kind, foundry, family, version, postScriptName, styledName, fullName};
  long status = kPSMetaDataNothingToDo;
  FaceMarks marks;
  if (GetHandleSize(fond) > 0) {
    marks = faceMarks(file, fond, style);
    if (shouldHavePrinterFile(fond, style)) {
      status = readPrinterFile(file, path, fond, style, printerFilePath, out);
      if (postScriptName && postScriptName->empty())
        *postScriptName = normalizePostScriptName(getPostScriptNameForFOND(fond, style), fond, &marks.isMM);
    }
  }
  styledNameFromFamily(file, fond, marks.isMM, styledName);
  if (status == kPSMetaDataRead) {
    if (family && family->empty()) *family = UxFileSystemParser::FindFileName(file.file().c_str());
    if (postScriptName && !postScriptName->empty()) StripIllegalCharsInPostScriptName(*postScriptName);
  }
  if (kind) {
    if (marks.isMM) *kind = kKindMM;
    else if (marks.isCID) *kind = kKindCID;
    else if (marks.isDoubleByte) *kind = kKindOCF;
  }
  return status;
}

long CollectPSMetaDataFromFile(const UxString&, UxString* printerFilePath, UxString* kind, UxString* foundry,
                               UxString* family, UxString* version, UxString* postScriptName, UxString* styledName,
                               UxString* fullName) {
  const UxString path = printerFilePath ? *printerFilePath : UxString();
  if (path.empty()) return kPSMetaDataNothingToDo;
  long status = kPSMetaDataNoPrinterFile;
  std::optional<FileForks> forks;
  if (OSPathExists(path)) forks = openForks(path);
  if (forks) {
    ByteSpan fork = forks->dataFork;
    ByteSpan header = fork.sub(0, std::min(fork.size, kPrinterFileHeaderBytes));
    if (!header.empty()) gather(header, {kind, foundry, family, version, postScriptName, styledName, fullName});
    status = kPSMetaDataRead;
  }
  *printerFilePath = path;
  return status;
}

long Collect_sfnt_MetaDataFromPrinterInfo(void* rf, Handle fond, short style, UxString* kind, UxString* foundry,
                                          UxString* family, UxString* version, UxString* postScriptName,
                                          UxString* styledName, UxString* fullName) {
  if (!rf) return kPSMetaDataNothingToDo;
  TypeprintResourceFile& file = *asFile(rf);
  for (int16_t id : getSortedNFNTsForFOND(fond, style)) {
    Handle sfnt = file.getResourceHandleForType(kTypeSfnt, id);
    if (!sfnt) continue;
    GatherMetaDataFromHandle(sfnt, kind, foundry, family, version, postScriptName, styledName, fullName);
    file.releaseResource(sfnt);
    return kPSMetaDataRead;
  }
  return kPSMetaDataNothingToDo;
}

}  // namespace typeprint
