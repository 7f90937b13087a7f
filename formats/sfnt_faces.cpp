#include "formats/sfnt_faces.h"

#include "analysis/checksums.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "analysis/ttc_split.h"
#include "formats/variations.h"

namespace typeprint::formats {
namespace {

constexpr uint32_t kCollectionTag = tag("ttcf");
constexpr uint32_t kAppleTrueTypeTag = tag("true");
constexpr uint16_t kNameIdSubfamily = 2;
constexpr uint16_t kNameIdTypographicSubfamily = 17;

// The face's names, kind and variations; false when it has no kind or no usable name.
bool describeFace(const SfntBytes& font, uint32_t checksum, TFormatFace& face) {
  std::vector<uint8_t> scratch;
  face.kind = sfntOutlineKind(font.reader(0, 4, scratch).u32());
  if (face.kind.empty()) return false;
  UxString foundry, family, version, postScriptName, styledName, fullName, windowsFullName;
  if (!getMetaDataFromNamesTable(font, &foundry, &family, &version, &postScriptName, &styledName,
                                 &fullName, &windowsFullName))
    return false;
  face.foundry = foundry;
  face.family = family;
  face.version = version;
  face.postScriptName = postScriptName;
  face.fullName = fullName;
  face.style = nameById(font, kNameIdTypographicSubfamily);
  if (face.style.empty()) face.style = nameById(font, kNameIdSubfamily);
  face.contentChecksum = checksum;
  readVariations(font, face);
  return true;
}

}  // namespace

const char* sfntOutlineKind(uint32_t sfntVersion) {
  if (sfntVersion == kSfntVersionTrueType || sfntVersion == kAppleTrueTypeTag) return "TrueType";
  if (sfntVersion == kSfntVersionOTTO) return "OpenType - PS";
  return "";
}

std::vector<TFormatFace> readSfntFaces(ByteSpan bytes, bool withChecksums) {
  std::vector<TFormatFace> faces;
  if (BEReader(bytes).u32() != kCollectionTag) {
    TFormatFace face;
    if (describeFace(SfntBytes(bytes), withChecksums ? CChecksum::icrc(bytes, 0) : 0, face))
      faces.push_back(std::move(face));
    return faces;
  }
  TrueTypeCollectionFont collection(bytes);
  const unsigned int count = collection.faceCountInFile();
  for (unsigned int i = 0; i < count; ++i) {
    TTCFace layout;
    TFormatFace face;
    if (collection.GetFaceLayout(i, layout) == kTTCSuccess &&
        describeFace(layout, withChecksums ? layout.crc() : 0, face))
      faces.push_back(std::move(face));
  }
  return faces;
}

}  // namespace typeprint::formats
