#include "api/create_specifier.h"

#include <memory>
#include <optional>
#include <string>

#include "analysis/checksums.h"
#include "faces/font_data.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "analysis/ttc_split.h"
#include "base/diagnostics.h"
#include "foundation/file_system.h"
#include "platform/linux/fork_locator.h"
#include "resources/families.h"
#include "resources/resource_checksums.h"
#include "resources/resource_file.h"
#include "typeprint.h"

namespace typeprint {
namespace {

constexpr short kExtensionTTC = 4;
const char kCollectionKind[] = "TrueType Collection";

// The record's field when its attribute was asked for, else null: the analysis skips it.
template <typename T>
T* wanted(uint32_t mask, uint32_t bit, T& field) {
  return (mask & bit) ? &field : nullptr;
}

// Each face of a collection is read where it lies in the collection: its rebuilt directory is
// made in memory and its tables are not copied. Nothing is written to disk. A face listed twice
// is read once: its second record would be removed as a duplicate of the first anyway.
bool walkCollection(const char* path, uint32_t mask, TP_FontArray& array) {
  TrueTypeCollectionFont collection{std::string(path)};
  bool found = false;
  const std::vector<unsigned int> faces = collection.facesAtDistinctOffsets();
  if (faces.empty()) TP_REFUSE_WHOLE("collection", "the collection header lists no face within the file");
  else TP_NOTE("collection", "%zu faces at distinct offsets", faces.size());
  for (unsigned int i : faces) {
    TTCFace face;
    if (collection.GetFaceLayout(i, face) != 0) continue;
    TP_FontSpecifier record;
    record.kindName = kCollectionKind;
    if (!getMetaDataFromNamesTable(face, wanted(mask, TP_ATTR_FOUNDRY_NAME, record.foundryName),
                                   wanted(mask, TP_ATTR_FAMILY_NAME, record.familyName),
                                   wanted(mask, TP_ATTR_VERSION, record.version),
                                   wanted(mask, TP_ATTR_POSTSCRIPT_NAME, record.postScriptName),
                                   wanted(mask, TP_ATTR_DISPLAY_NAME, record.displayName),
                                   wanted(mask, TP_ATTR_FULL_NAME, record.fullName),
                                   wanted(mask, TP_ATTR_WINDOWS_FULL_NAME, record.windowsFullName)))
      continue;
    if (mask & TP_ATTR_KERNING_CHECKSUM) GetTrueTypeKerningTableChecksum(face, &record.kerningChecksum);
    if (!GetPlatformTTF(face, &record.platform)) continue;  // decided whatever the mask says
    record.typeprintChecksum = face.crc();  // the CRC of the rebuilt face, from 0
    record.attributes = mask;
    TP_NOTE("face", "collection face %u: %s", i, record.postScriptName.c_str());
    array.append(record);
    found = true;
  }
  return found;
}

void noteForkLayout(const FileForks& forks) {
  static const char* const kSources[] = {"a plain file", "a MacBinary container", "an AppleSingle container",
                                         "an AppleDouble companion", "a bare resource fork beside the file"};
  TP_NOTE("forks", "%s: data fork %zu bytes, resource fork %zu bytes%s%s", kSources[size_t(forks.source)],
          forks.dataFork.size, forks.resourceFork.size, forks.companionPath.empty() ? "" : " in ",
          forks.companionPath.c_str());
}

// The working state of one resource walk. The type and creator carry over from face to face:
// every face after one with a valid outline file reports that file's codes as its own.
struct ResourceWalk {
  const char* path;
  uint32_t mask;
  const FileForks& forks;
  ResourceFile* rf;  // null for a file without a resource map
  uint32_t curType;
  uint32_t curCreator;
};

// One face (family `fond`, style index `s`) of a resource walk; true when it was accepted.
bool collectFace(ResourceWalk& walk, Resource fond, int s, int16_t& firstRes, TP_FontArray& array) {
  const uint32_t mask = walk.mask;
  const ByteSpan family = dataOf(fond);
  const bool hasFamily = !family.empty();
  int16_t style = 0;
  uint32_t reserve = 0;
  if (hasFamily) {
    style = getStyleFromStyleIndex(family, s);
    firstRes = getFirstResourceIDForStyle(family, style);
    reserve = GetBastionChecksum(family, style);
  }
  TP_FontSpecifier record;
  record.fileCreator = walk.curCreator;
  record.fileType = walk.curType;
  const FaceOutcome outcome = CollectMetaData(
      walk.rf, walk.path, fond, style, &record.outlineFilePath, wanted(mask, TP_ATTR_KIND_NAME, record.kindName),
      wanted(mask, TP_ATTR_PLATFORM, record.platform), wanted(mask, TP_ATTR_FOUNDRY_NAME, record.foundryName),
      wanted(mask, TP_ATTR_FAMILY_NAME, record.familyName), wanted(mask, TP_ATTR_VERSION, record.version),
      wanted(mask, TP_ATTR_POSTSCRIPT_NAME, record.postScriptName),
      wanted(mask, TP_ATTR_DISPLAY_NAME, record.displayName), wanted(mask, TP_ATTR_FULL_NAME, record.fullName),
      wanted(mask, TP_ATTR_WINDOWS_FULL_NAME, record.windowsFullName),
      wanted(mask, TP_ATTR_KERNING_CHECKSUM, record.kerningChecksum), &walk.forks);
  if (outcome != FaceOutcome::Read && outcome != FaceOutcome::PrinterFileMissing) {
    TP_NOTE("face", "style %d refused: %s", style,
            outcome == FaceOutcome::NoNames ? "no font data or no usable name" : "the sfnt's platform is undecided");
    return false;
  }

  record.style = style;
  record.firstFontResID = firstRes;
  record.kerningChecksum = reserve;  // the family's kerning, 0 without a family
  uint32_t legacy = 0;
  record.typeprintChecksum =
      GetLanternChecksum(walk.path, walk.rf, family, style, record.platform == "crossplatform", legacy, &walk.forks);
  record.legacyChecksum = legacy;
  if (hasFamily) record.fondResID = fond->id;

  if (!record.outlineFilePath.empty()) {
    UxFileSpecification outline(record.outlineFilePath);
    if (UxFileSystem::IsValidFile(outline)) {
      record.outlineFileSize = uint32_t(UxFileSystem::GetFileSize(outline));
      outline.MacGetTypeAndCreator(walk.curType, walk.curCreator);
      record.outlineFileCreator = walk.curCreator;
      record.outlineFileType = walk.curType;
    }
  } else {
    record.outlineFileSize = uint32_t(walk.forks.finderSize());
  }
  record.attributes = mask;
  TP_NOTE("face", "family %d, style %d%s%s", int(record.fondResID), int(style),
          record.outlineFilePath.empty() ? "" : ", printer file ", record.outlineFilePath.c_str());
  array.append(record);
  return true;
}

// Every family and each of its distinct styles; a file without families is walked once as a
// single face.
bool walkResourceForks(const char* path, const FileForks& forks, uint32_t mask, TP_FontArray& array) {
  noteForkLayout(forks);
  std::unique_ptr<ResourceFile> rf = ResourceFile::open(path, forks, true);
  ResourceWalk walk{path, mask, forks, rf.get(), forks.type, forks.creator};
  bool found = false;
  const int16_t families = int16_t(rf ? rf->count(kTypeFOND) : 0);
  const int familyRounds = families == 0 ? 1 : families;
  for (int f = 1; f <= familyRounds; ++f) {
    Resource fond = rf ? rf->at(kTypeFOND, f) : nullptr;
    const int16_t styles = getCountOfUniqueStyles(dataOf(fond));
    if (fond) TP_NOTE("family", "family %d: %zu bytes, %d styles", int(fond->id), fond->data().size, int(styles));
    const int styleRounds = styles == 0 ? 1 : styles;
    int16_t firstRes = -1;  // kept from style to style when the family has no data
    for (int s = 0; s < styleRounds; ++s) found |= collectFace(walk, fond, s, firstRes, array);
  }
  return found;
}

bool walkResourceFile(const char* path, uint32_t mask, TP_FontArray& array) {
  std::optional<FileForks> forks = openForks(path);
  if (!forks) return TP_REFUSE_WHOLE("file", "the file cannot be read");
  return walkResourceForks(path, *forks, mask, array);
}

}  // namespace

bool createSpecifiers(const char* path, uint32_t mask, TP_FontArray& array) {
  if (isForkCompanion(path))
    return TP_REFUSE_WHOLE("file", "it holds another file's fork or Finder information, not a font of its own");
  const bool found = fontTypeFromExtension(path) == kExtensionTTC ? walkCollection(path, mask, array)
                                                                  : walkResourceFile(path, mask, array);
  if (found) array.RemoveDups();
  return found;
}

bool createSpecifiersFromForks(const char* path, const FileForks& forks, uint32_t mask, TP_FontArray& array) {
  const bool found = walkResourceForks(path, forks, mask, array);
  if (found) array.RemoveDups();
  return found;
}

}  // namespace typeprint
