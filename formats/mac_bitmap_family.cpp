#include "formats/mac_bitmap_family.h"

#include <algorithm>
#include <map>
#include <memory>

#include "analysis/checksums.h"
#include "resources/fond.h"
#include "resources/resource_file.h"

namespace typeprint::formats {
namespace {

// One strike's bytes: its NFNT resource, else its FONT resource.
ByteSpan strikeBytes(const ResourceFile& file, int16_t id) {
  ByteSpan bytes = dataOf(file.find(kTypeNFNT, id));
  return bytes.empty() ? dataOf(file.find(kTypeFONT, id)) : bytes;
}

}  // namespace

std::string quickDrawStyleName(uint16_t style) {
  static const std::pair<uint16_t, const char*> kBits[] = {
      {kStyleBold, "Bold"},         {kStyleItalic, "Italic"},       {kStyleUnderline, "Underline"},
      {kStyleOutline, "Outline"},   {kStyleShadow, "Shadow"},       {kStyleCondense, "Condensed"},
      {kStyleExtend, "Extended"}};
  std::string name;
  for (const auto& [bit, word] : kBits)
    if (style & bit) name += (name.empty() ? "" : " ") + std::string(word);
  return name.empty() ? "Regular" : name;
}

std::vector<TFormatFace> readMacBitmapFamilies(const std::string& path, const FileForks* forks) {
  std::unique_ptr<ResourceFile> file = forks ? ResourceFile::open(path, *forks, true) : ResourceFile::open(path, true);
  std::vector<TFormatFace> faces;
  if (!file) return faces;
  const int families = file->count(kTypeFOND);
  for (int f = 1; f <= families; ++f) {
    Resource fond = file->at(kTypeFOND, f);
    const std::string familyName = fond->hasName ? fond->name : std::string();
    const int16_t familyID = fond->id;
    const std::vector<FondEntry> entries = fondEntries(fond->data());
    const bool bitmapOnly = !entries.empty() && std::none_of(entries.begin(), entries.end(),
                                                             [](const FondEntry& e) { return e.isOutline(); });
    if (!bitmapOnly || familyName.empty()) continue;
    std::map<uint16_t, TFormatFace> byStyle;
    for (const FondEntry& entry : entries) {
      const ByteSpan strike = strikeBytes(*file, entry.resID);
      if (strike.empty()) continue;
      TFormatFace& face = byStyle[entry.style];
      face.pointSizes.push_back(entry.pointSize);
      face.contentChecksum = CChecksum::icrc(strike, face.contentChecksum);
    }
    for (auto& [style, face] : byStyle) {
      face.kind = "Bitmap";
      face.family = familyName;
      face.style = quickDrawStyleName(style);
      face.familyResourceID = familyID;
      face.quickDrawStyle = style;
      face.fullName = style == 0 ? familyName : familyName + " " + face.style;
      std::sort(face.pointSizes.begin(), face.pointSizes.end());
      faces.push_back(std::move(face));
    }
  }
  return faces;
}

}  // namespace typeprint::formats
