#include "tools/face_report.h"

#include <cstdio>
#include <sstream>

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

// A serialised document of the array, sized by a first call.
std::string document(TP_Status (*writer)(TP_FontArray*, char*, uint32_t*), TP_FontArray* array) {
  char probe[1];
  uint32_t size = 0;
  writer(array, probe, &size);
  std::vector<char> buffer(size + 1, '\0');
  writer(array, buffer.data(), &size);
  return std::string(buffer.data());
}

}  // namespace

FileReport identifyFile(const std::string& path, uint32_t mask, bool withDocuments) {
  FileReport report;
  report.path = path;
  TP_FontArray* array = nullptr;
  report.status = TP_CreateSpecifier(path.c_str(), 0, mask, &array);
  if (report.status != TP_STATUS_OK) return report;
  uint32_t count = 0;
  TP_GetFontCount(array, &count);
  for (uint32_t i = 0; i < count; ++i) {
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
    report.faces.push_back(std::move(f));
  }
  if (withDocuments) {
    report.xml = document(TP_GetXMLRepresentation, array);
    report.plist = document(TP_GetPropertyListRepresentation, array);
  }
  TP_SpecifierFree(array);
  return report;
}

std::vector<std::pair<std::string, std::string>> textAttributes(const FaceReport& f) {
  std::vector<std::pair<std::string, std::string>> rows;
  auto add = [&rows](const char* label, const std::optional<std::string>& value) {
    if (value) rows.emplace_back(label, *value);
  };
  add("kind", f.kind);
  add("postScriptName", f.postScriptName);
  add("family", f.family);
  add("fullName", f.fullName);
  add("displayName", f.displayName);
  add("windowsFullName", f.windowsFullName);
  add("version", f.version);
  add("platform", f.platform);
  add("foundry", f.foundry);
  add("legacyFoundry", f.legacyFoundry);
  add("printerFont", f.printerFont);
  add("windowsMMFile", f.windowsMMFile);
  return rows;
}

std::vector<std::pair<std::string, std::optional<uint32_t>>> numberAttributes(const FaceReport& f) {
  return {{"outlineFileSize", f.outlineFileSize},
          {"checksum", f.checksum},
          {"legacyChecksum", f.legacyChecksum},
          {"kerningChecksum", f.kerningChecksum}};
}

std::string formatHex(uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "%08X", value);
  return text;
}

std::string jsonString(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (c < 0x20) {
          char escaped[8];
          std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
          out += escaped;
        } else {
          out += char(c);
        }
    }
  }
  return out + "\"";
}

std::string textReport(const FileReport& report) {
  std::ostringstream out;
  out << report.path << ": " << report.faces.size() << (report.faces.size() == 1 ? " face\n" : " faces\n");
  for (const FaceReport& f : report.faces) {
    out << "  face " << f.index << "\n";
    auto numbers = numberAttributes(f);
    for (const auto& [label, value] : textAttributes(f)) out << "    " << label << std::string(17 - label.size(), ' ') << value << "\n";
    for (const auto& [label, value] : numbers) {
      if (!value) continue;
      std::string shown = label == "outlineFileSize" ? std::to_string(*value) : formatHex(*value);
      out << "    " << label << std::string(17 - label.size(), ' ') << shown << "\n";
    }
  }
  return out.str();
}

std::string jsonReport(const FileReport& report) {
  std::ostringstream out;
  out << "{\"path\":" << jsonString(report.path) << ",\"faces\":[";
  for (size_t i = 0; i < report.faces.size(); ++i) {
    const FaceReport& f = report.faces[i];
    out << (i ? "," : "") << "{\"index\":" << f.index;
    for (const auto& [label, value] : textAttributes(f)) out << "," << jsonString(label) << ":" << jsonString(value);
    for (const auto& [label, value] : numberAttributes(f))
      if (value) out << "," << jsonString(label) << ":" << *value;
    out << "}";
  }
  out << "]}";
  return out.str();
}

}  // namespace typeprint::cli
