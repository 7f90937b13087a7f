#include "resources/resource_metadata.h"

#include <algorithm>

#include "analysis/name_table.h"
#include "analysis/type1_header.h"
#include "base/diagnostics.h"
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
void markDoubleByteFace(const ResourceFile& rf, Resource fond, short style, const std::string& name,
                        FaceMarks* marks) {
  marks->isDoubleByte = fondIsDoubleByte(fond->data());
  if (!marks->isDoubleByte) return;
  for (const FondEntry& entry : fondEntries(fond->data())) {
    if (entry.style != uint16_t(style) || !entry.isOutline()) continue;
    if (Resource sfnt = rf.find(kTypeSfnt, entry.resID)) {
      BEReader r(sfnt->data());
      uint32_t first = r.u32();
      marks->isCID = (r.ok() && first == kTyp1Tag) || startsWith(name, "A-CID") || endsWith(name, "CID-B");
      marks->isDoubleByte = false;
    }
    return;
  }
}

FaceMarks faceMarks(const ResourceFile& rf, Resource fond, short style) {
  FaceMarks marks;
  const std::string name = fond->hasName ? fond->name : std::string();
  if (hasMMFamilyName(name)) marks.isMM = true;
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
PSHeaderOutcome readPrinterFile(ResourceFile& rf, const UxString& path, Resource fond, short style,
                                UxString* printerFilePath, const HeaderOutputs& out) {
  UxString name = getPSPrinterNameForFOND(rf, fond->data(), style);
  if (name.empty()) {
    TP_NOTE("printer file", "style %d: the family gives no PostScript name to look for", int(style));
    return PSHeaderOutcome::NoPrinterFile;
  }
  UxString printerPath = UxFileSystemParser::GetPathDeletingLastPathComponent(path) + name;
  if (printerFilePath) *printerFilePath = printerPath;
  auto printer = ResourceFile::open(printerPath, true);
  TP_NOTE("printer file", "style %d: looked for %s: %s", int(style), printerPath.c_str(),
          printer ? "found" : "missing or without resources");
  if (!printer) return PSHeaderOutcome::NoPrinterFile;
  bool read = walkPrinterFileHeader(*printer, [&](ByteSpan header) {
    GatherMetaDataFromResource(header, out.kind, out.foundry, out.family, out.version, out.postScriptName, out.styledName,
                             out.fullName);
    asUTF8(out.styledName);
    asUTF8(out.fullName);
    asUTF8(out.postScriptName);
  });
  return read ? PSHeaderOutcome::Read : PSHeaderOutcome::NothingToDo;
}

// The menu name is the family's own name; a multiple-master family's is cut to the part between
// "%M" and the first "_".
void styledNameFromFamily(const ResourceFile& rf, Resource fond, bool isMM, UxString* styledName) {
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

void GatherMetaDataFromResource(ByteSpan resource, UxString* kind, UxString* foundry, UxString* family,
                                UxString* version, UxString* postScriptName, UxString* styledName,
                                UxString* fullName) {
  if (resource.empty()) return;
  gather(resource, {kind, foundry, family, version, postScriptName, styledName, fullName});
}

bool walkPrinterFileHeader(const ResourceFile& printer, const std::function<void(ByteSpan)>& read) {
  bool any = false;
  // Resources past 502 are never read, so the walk ends there.
  for (int16_t id = kFirstPOSTResourceID; id <= kLastPOSTHeaderResourceID; ++id) {
    const ByteSpan post = dataOf(printer.find(kTypePOST, id));
    if (post.empty() || (post.size == kFullPOSTSegmentSize && id != kFirstPOSTResourceID)) break;
    read(post);
    any = true;
  }
  return any;
}

PSHeaderOutcome CollectPSMetaDataMac(ResourceFile* rf, const UxString& path, Resource fond, short style,
                                     UxString* printerFilePath, UxString* kind, UxString* foundry, UxString* family,
                                     UxString* version, UxString* postScriptName, UxString* styledName,
                                     UxString* fullName) {
  if (!rf) return PSHeaderOutcome::NothingToDo;
  ResourceFile& file = *rf;
  const HeaderOutputs out{kind, foundry, family, version, postScriptName, styledName, fullName};
  PSHeaderOutcome status = PSHeaderOutcome::NothingToDo;
  FaceMarks marks;
  if (!dataOf(fond).empty()) {
    marks = faceMarks(file, fond, style);
    if (shouldHavePrinterFile(fond->data(), style)) {
      status = readPrinterFile(file, path, fond, style, printerFilePath, out);
      if (postScriptName && postScriptName->empty())
        *postScriptName = normalizePostScriptName(getPostScriptNameForFOND(fond->data(), style), fond, &marks.isMM);
    }
  }
  styledNameFromFamily(file, fond, marks.isMM, styledName);
  if (status == PSHeaderOutcome::Read) {
    if (family && family->empty()) *family = UxFileSystemParser::FindFileName(file.path().c_str());
    if (postScriptName && !postScriptName->empty()) StripIllegalCharsInPostScriptName(*postScriptName);
  }
  if (kind) {
    if (marks.isMM) *kind = kKindMM;
    else if (marks.isCID) *kind = kKindCID;
    else if (marks.isDoubleByte) *kind = kKindOCF;
  }
  return status;
}

PSHeaderOutcome CollectPSMetaDataFromFile(const UxString&, UxString* printerFilePath, UxString* kind,
                                          UxString* foundry, UxString* family, UxString* version,
                                          UxString* postScriptName, UxString* styledName, UxString* fullName) {
  const UxString path = printerFilePath ? *printerFilePath : UxString();
  if (path.empty()) return PSHeaderOutcome::NothingToDo;
  PSHeaderOutcome status = PSHeaderOutcome::NoPrinterFile;
  std::optional<FileForks> forks;
  if (OSPathExists(path)) forks = openForks(path);
  if (forks) {
    ByteSpan fork = forks->dataFork;
    ByteSpan header = fork.sub(0, std::min(fork.size, kPrinterFileHeaderBytes));
    if (!header.empty()) gather(header, {kind, foundry, family, version, postScriptName, styledName, fullName});
    status = PSHeaderOutcome::Read;
  }
  *printerFilePath = path;
  return status;
}

}  // namespace typeprint
