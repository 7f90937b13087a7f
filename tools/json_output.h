// The typeprint command's one JSON schema (tools/typeprint-output.schema.json), written with
// nlohmann-json: {"version", "files": [...], "summary"}, the same for identify, scan and
// duplicates; --format jsonl writes one file object per line.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

#include "tools/face_report.h"

namespace typeprint::cli {

using Json = nlohmann::ordered_json;

// The schema's version, written as the document's "version".
constexpr int kSchemaVersion = 1;

// What a run saw: files by outcome, faces, named instances, faces per kind, seconds taken.
struct Summary {
  size_t files = 0, identified = 0, faces = 0, failures = 0, notFonts = 0;
  size_t instances = 0;  // named instances of variable faces
  std::map<std::string, size_t> kinds;
  double seconds = 0;
};
Summary summarize(const std::vector<FileReport>& reports, double seconds);

// Sets object[key] to `bytes` when they are valid UTF-8. Otherwise object[key] holds them with
// every invalid byte replaced by U+FFFD, and object[key + "_bytes"] the bytes exactly, in base64.
void putText(Json& object, const std::string& key, const std::string& bytes);

Json faceJson(const FaceReport& face);
Json fileJson(const FileReport& report);
Json summaryJson(const Summary& summary);
// {"version", "files", "summary"}; commands may add keys of their own after these.
Json outputDocument(const std::vector<FileReport>& reports, const Summary& summary);

// Compact JSON text, always valid UTF-8.
std::string jsonText(const Json& value);

}  // namespace typeprint::cli
