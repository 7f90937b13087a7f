#include "tools/text_output.h"

#include <cstdio>

namespace typeprint::cli {
namespace {

constexpr size_t kLabelWidth = 18;

std::string padded(const std::string& text, size_t width) {
  return text.size() >= width ? text + " " : text + std::string(width - text.size(), ' ');
}

}  // namespace

std::string attributeText(const AttributeValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<int64_t>(&value)) return std::to_string(*number);
  if (const auto* checksum = std::get_if<Checksum>(&value)) return hex8(checksum->value);
  return jsonText(std::get<Json>(value));
}

std::string fileText(const FileReport& report) {
  std::string out = report.path + ": " + std::to_string(report.faces.size()) +
                    (report.faces.size() == 1 ? " face\n" : " faces\n");
  for (const FaceReport& face : report.faces) {
    out += "  face " + std::to_string(face.index) + "\n";
    for (const Attribute& a : faceAttributes(face)) out += "    " + padded(a.key, kLabelWidth) + attributeText(a.value) + "\n";
  }
  return out;
}

std::string scanLines(const FileReport& report) {
  std::string out;
  for (const FaceReport& f : report.faces) {
    out += padded(f.postScriptName.value_or(""), 48) + padded(f.kind.value_or(""), 20) +
           (f.checksum ? hex8(*f.checksum) : std::string(8, '-')) + " " + report.path + "\n";
  }
  return out;
}

std::string summaryText(const Summary& s) {
  char line[256];
  std::snprintf(line, sizeof line,
                "%zu files, %zu identified, %zu faces, %zu failures, %zu not fonts, %zu named instances, %.2f s\n",
                s.files, s.identified, s.faces, s.failures, s.notFonts, s.instances, s.seconds);
  std::string out = line;
  for (const auto& [kind, n] : s.kinds) out += "  " + padded(kind, 22) + std::to_string(n) + "\n";
  return out;
}

}  // namespace typeprint::cli
