#include "tools/face_report.h"

#include <cstdio>

#include "api/font_specifier.h"
#include "tools/file_checks.h"
#include "tools/format_facts.h"

namespace typeprint::cli {
namespace {

using StringGetter = TP_Status (*)(TP_FontArray*, uint32_t, char*, int32_t);
using NumberGetter = TP_Status (*)(TP_FontArray*, uint32_t, uint32_t*);

std::optional<std::string> readString(StringGetter getter, TP_FontArray* array, uint32_t index) {
  std::vector<char> buffer(4096, '\0');
  if (getter(array, index, buffer.data(), int32_t(buffer.size())) != TP_STATUS_OK) return std::nullopt;
  return std::string(buffer.data());
}

std::optional<uint32_t> readNumber(NumberGetter getter, TP_FontArray* array, uint32_t index) {
  uint32_t value = 0;
  if (getter(array, index, &value) != TP_STATUS_OK) return std::nullopt;
  return value;
}

}  // namespace

FaceReport readFace(TP_FontArray* array, uint32_t i) {
  FaceReport f;
  f.index = i;
  f.kind = readString(TP_GetKindName, array, i);
  f.postScriptName = readString(TP_GetPostScriptName, array, i);
  f.family = readString(TP_GetFamilyName, array, i);
  f.fullName = readString(TP_GetFullName, array, i);
  f.displayName = readString(TP_GetDisplayName, array, i);
  f.windowsFullName = readString(TP_GetWindowsFullName, array, i);
  f.version = readString(TP_GetVersion, array, i);
  f.platform = readString(TP_GetPlatform, array, i);
  f.foundry = readString(TP_GetFoundryName, array, i);
  f.legacyFoundry = readString(TP_GetLegacyFoundryName, array, i);
  f.printerFont = readString(TP_GetPrinterFont, array, i);
  f.windowsMMFile = readString(TP_GetWindowsMMFile, array, i);
  f.outlineFileSize = readNumber(TP_GetOutlineFileSize, array, i);
  f.checksum = readNumber(TP_GetTypeprintChecksum, array, i);
  f.legacyChecksum = readNumber(TP_GetLegacyTypeprintChecksum, array, i);
  f.kerningChecksum = readNumber(TP_GetKerningChecksum, array, i);
  // A face made from a family resource knows that resource's ID and its style there (-1 otherwise).
  const TP_FontSpecifier& record = array->specifiers[i];
  if (record.fondResID >= 0 && record.style >= 0) {
    f.familyResourceID = record.fondResID;
    f.style = record.style;
  }
  return f;
}

namespace {

struct ArrayFree {
  void operator()(TP_FontArray* array) const { TP_SpecifierFree(array); }
};

}  // namespace

std::vector<Attribute> faceAttributes(const FaceReport& f) {
  std::vector<Attribute> rows;
  auto text = [&rows](const char* key, const std::optional<std::string>& value) {
    if (value) rows.push_back({key, *value});
  };
  auto number = [&rows](const char* key, const auto& value) {
    if (value) rows.push_back({key, int64_t(*value)});
  };
  auto checksum = [&rows](const char* key, const std::optional<uint32_t>& value) {
    if (value) rows.push_back({key, Checksum{*value}});
  };
  text("kind", f.kind);
  text("postScriptName", f.postScriptName);
  text("family", f.family);
  text("fullName", f.fullName);
  text("displayName", f.displayName);
  text("windowsFullName", f.windowsFullName);
  text("version", f.version);
  text("platform", f.platform);
  text("foundry", f.foundry);
  text("legacyFoundry", f.legacyFoundry);
  text("printerFont", f.printerFont);
  text("windowsMMFile", f.windowsMMFile);
  number("outlineFileSize", f.outlineFileSize);
  checksum("checksum", f.checksum);
  checksum("legacyChecksum", f.legacyChecksum);
  checksum("kerningChecksum", f.kerningChecksum);
  number("familyResourceID", f.familyResourceID);
  number("style", f.style);
  checksum("contentChecksum", f.contentChecksum);
  text("contentKind", f.contentKind);
  text("kindNote", f.kindNote);
  text("styleName", f.styleName);
  number("pixelSize", f.pixelSize);
  if (f.pointSizes) rows.push_back({"pointSizes", nlohmann::ordered_json(*f.pointSizes)});
  if (f.axes) rows.push_back({"axes", *f.axes});
  if (f.instances) rows.push_back({"instances", *f.instances});
  return rows;
}

const char* statusName(FileStatus status) {
  switch (status) {
    case FileStatus::Ok: return "ok";
    case FileStatus::NotAFont: return "not-a-font";
    case FileStatus::Failed: break;
  }
  return "failed";
}

FileReport identifyFile(const std::string& path, uint32_t mask, bool keepArray) {
  FileReport report;
  report.path = path;
  if (std::optional<std::string> reason = unreadableReason(path)) {
    report.error = *reason;
    return report;
  }
  TP_FontArray* created = nullptr;
  if (TP_CreateSpecifier(path.c_str(), 0, mask, &created) != TP_STATUS_OK) {
    if (identifyWithFormats(report, mask)) return report;
    const LibraryVerdict verdict = libraryVerdict(path);
    report.status = verdict.notAFont ? FileStatus::NotAFont : FileStatus::Failed;
    report.error = verdict.reason;
    return report;
  }
  std::shared_ptr<TP_FontArray> array(created, ArrayFree());
  for (uint32_t i = 0; i < array->count(); ++i) report.faces.push_back(readFace(array.get(), i));
  addFormatFacts(report);
  report.status = FileStatus::Ok;
  if (keepArray) report.array = std::move(array);
  return report;
}

std::string hex8(uint32_t value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", value);
  return text;
}

}  // namespace typeprint::cli
