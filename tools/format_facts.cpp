#include "tools/format_facts.h"

#include <memory>

#include "formats/archive_specifier.h"
#include "formats/format_reader.h"
#include "formats/mac_bitmap_family.h"
#include "formats/type1_font.h"

namespace typeprint::cli {
namespace {

nlohmann::ordered_json axesJson(const formats::TFormatFace& face) {
  nlohmann::ordered_json axes = nlohmann::ordered_json::array();
  for (const formats::TAxis& a : face.axes)
    axes.push_back({{"tag", a.tag}, {"min", a.minimum}, {"default", a.defaultValue}, {"max", a.maximum}, {"name", a.name}});
  return axes;
}

nlohmann::ordered_json instancesJson(const formats::TFormatFace& face) {
  nlohmann::ordered_json instances = nlohmann::ordered_json::array();
  for (const formats::TNamedInstance& i : face.instances) {
    nlohmann::ordered_json instance = {{"subfamilyName", i.subfamilyName}};
    if (!i.postScriptName.empty()) instance["postScriptName"] = i.postScriptName;
    instance["coordinates"] = i.coordinates;
    instances.push_back(std::move(instance));
  }
  return instances;
}

void addVariations(const formats::TFormatFace& from, FaceReport& to) {
  if (from.axes.empty()) return;
  to.axes = axesJson(from);
  to.instances = instancesJson(from);
}

void addKind(const formats::TFormatFile& file, FaceReport& to) {
  if (!file.contentKind.empty()) to.contentKind = file.contentKind;
  if (!file.kindNote.empty()) to.kindNote = file.kindNote;
}

// A face the library does not read, from the wider reader alone.
FaceReport faceFromFormats(const formats::TFormatFile& file, const formats::TFormatFace& face, uint32_t index) {
  FaceReport f;
  f.index = index;
  f.kind = file.container.empty() || file.container == "gzip" ? face.kind : file.container + " (" + face.kind + ")";
  auto set = [](std::optional<std::string>& field, const std::string& value) {
    if (!value.empty()) field = value;
  };
  set(f.postScriptName, face.postScriptName);
  set(f.family, face.family);
  set(f.fullName, face.fullName);
  set(f.version, face.version);
  set(f.foundry, face.foundry);
  set(f.styleName, face.style);
  f.contentChecksum = face.contentChecksum;
  if (face.pixelSize > 0) f.pixelSize = face.pixelSize;
  if (!face.pointSizes.empty()) f.pointSizes = face.pointSizes;
  addVariations(face, f);
  addKind(file, f);
  return f;
}

// The library's face that the wider reader's face `i` describes: same PostScript name, else the
// face at the same place.
const formats::TFormatFace* matchingFace(const formats::TFormatFile& file, const FaceReport& face) {
  for (const formats::TFormatFace& candidate : file.faces)
    if (face.postScriptName && candidate.postScriptName == *face.postScriptName) return &candidate;
  return face.index < file.faces.size() ? &file.faces[face.index] : nullptr;
}

// The bitmap-only family face of a Mac family face: same family resource and QuickDraw style.
const formats::TFormatFace* bitmapFace(const std::vector<formats::TFormatFace>& bitmaps, const FaceReport& face) {
  if (!face.familyResourceID || !face.style) return nullptr;
  for (const formats::TFormatFace& candidate : bitmaps)
    if (candidate.familyResourceID == *face.familyResourceID && candidate.quickDrawStyle == *face.style)
      return &candidate;
  return nullptr;
}

}  // namespace

void addFormatFacts(FileReport& report) {
  const std::optional<formats::TFormatFile> summary = formats::readFormatSummary(report.path);
  const bool resourceFile = summary && summary->contentKind.empty();
  const std::vector<formats::TFormatFace> bitmaps =
      resourceFile ? formats::readMacBitmapFamilies(report.path) : std::vector<formats::TFormatFace>();
  for (FaceReport& face : report.faces) {
    if (summary) {
      addKind(*summary, face);
      if (const formats::TFormatFace* match = matchingFace(*summary, face)) addVariations(*match, face);
    }
    // A PostScript face's program lies in its printer file, a bitmap-only family's in its strikes;
    // every other face's checksum is already taken over the font itself.
    std::optional<formats::TType1Program> program;
    if (face.printerFont && !face.printerFont->empty())
      program = formats::readType1ProgramFromPrinterFile(*face.printerFont);
    const formats::TFormatFace* bitmap = bitmapFace(bitmaps, face);
    if (bitmap) {
      if (!face.family || face.family->empty()) face.family = bitmap->family;
      face.styleName = bitmap->style;
      face.pointSizes = bitmap->pointSizes;
    }
    if (program)
      face.contentChecksum = formats::type1ContentChecksum(*program);
    else if (bitmap)
      face.contentChecksum = bitmap->contentChecksum;
    else
      face.contentChecksum = face.checksum;
  }
}

bool identifyWithFormats(FileReport& report, uint32_t mask) {
  std::optional<formats::TFormatFile> file = formats::readFormatFile(report.path);
  if (!file) return false;
  std::vector<FaceReport> faces;
  if (file->container == "BinHex") {
    if (std::unique_ptr<TP_FontArray> array = formats::createSpecifiersFromBinHex(report.path, mask)) {
      for (uint32_t i = 0; i < array->count(); ++i) faces.push_back(readFace(array.get(), i));
      for (FaceReport& face : faces) {
        face.contentChecksum = face.checksum;
        addKind(*file, face);
      }
    }
  }
  if (faces.empty())
    for (const formats::TFormatFace& face : file->faces) faces.push_back(faceFromFormats(*file, face, uint32_t(faces.size())));
  if (faces.empty()) return false;
  report.faces = std::move(faces);
  report.status = FileStatus::Ok;
  report.error.clear();
  return true;
}

}  // namespace typeprint::cli
