#include "tools/json_output.h"

#include "tools/utf8_text.h"

namespace typeprint::cli {

Summary summarize(const std::vector<FileReport>& reports, double seconds) {
  Summary s;
  s.files = reports.size();
  s.seconds = seconds;
  for (const FileReport& r : reports) {
    if (r.status == FileStatus::Failed) ++s.failures;
    if (r.status == FileStatus::NotAFont) ++s.notFonts;
    if (r.status != FileStatus::Ok) continue;
    ++s.identified;
    s.faces += r.faces.size();
    for (const FaceReport& f : r.faces) {
      ++s.kinds[f.kind.value_or("unknown")];
      if (f.instances) s.instances += f.instances->size();
    }
  }
  return s;
}

void putText(Json& object, const std::string& key, const std::string& bytes) {
  bool valid = true;
  std::string text = validUTF8(bytes, &valid);
  object[key] = std::move(text);
  if (!valid) object[key + "_bytes"] = base64(bytes);
}

Json faceJson(const FaceReport& face) {
  Json out;
  out["index"] = face.index;
  for (const Attribute& a : faceAttributes(face)) {
    if (const auto* text = std::get_if<std::string>(&a.value)) putText(out, a.key, *text);
    if (const auto* number = std::get_if<int64_t>(&a.value)) out[a.key] = *number;
    if (const auto* checksum = std::get_if<Checksum>(&a.value)) out[a.key] = hex8(checksum->value);
    if (const auto* structure = std::get_if<Json>(&a.value)) out[a.key] = *structure;
  }
  return out;
}

Json fileJson(const FileReport& report) {
  Json out;
  putText(out, "path", report.path);
  out["status"] = statusName(report.status);
  if (report.status != FileStatus::Ok) putText(out, "error", report.error);
  Json faces = Json::array();
  for (const FaceReport& f : report.faces) faces.push_back(faceJson(f));
  out["faces"] = std::move(faces);
  return out;
}

Json summaryJson(const Summary& s) {
  Json out;
  out["files"] = s.files;
  out["identified"] = s.identified;
  out["faces"] = s.faces;
  out["instances"] = s.instances;
  out["failures"] = s.failures;
  out["notFonts"] = s.notFonts;
  Json kinds = Json::object();
  for (const auto& [kind, n] : s.kinds) kinds[kind] = n;
  out["kinds"] = std::move(kinds);
  out["seconds"] = s.seconds;
  return out;
}

Json outputDocument(const std::vector<FileReport>& reports, const Summary& summary) {
  Json out;
  out["version"] = kSchemaVersion;
  Json files = Json::array();
  for (const FileReport& r : reports) files.push_back(fileJson(r));
  out["files"] = std::move(files);
  out["summary"] = summaryJson(summary);
  return out;
}

std::string jsonText(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace typeprint::cli
