// Everything the typeprint command learns about one file: its outcome, why it gave no face, and
// every face's attributes, gathered once; text and JSON output both read faceAttributes().
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "typeprint.h"

namespace typeprint::cli {

struct FaceReport {
  uint32_t index = 0;
  // Each attribute is absent when its getter did not answer (not collected, or no value).
  std::optional<std::string> kind, postScriptName, family, fullName, displayName, windowsFullName, version,
      platform, foundry, legacyFoundry, printerFont, windowsMMFile;
  std::optional<uint32_t> outlineFileSize, checksum, legacyChecksum, kerningChecksum;
  // Faces of Mac families: the family resource ID and style number that purge and promote take.
  std::optional<int32_t> familyResourceID, style;
};

// A checksum: printed as 8 lower-case hexadecimal digits everywhere.
struct Checksum {
  uint32_t value;
};
// An attribute's value: text, a plain number, a checksum, or a structure (arrays, objects).
using AttributeValue = std::variant<std::string, int64_t, Checksum, nlohmann::ordered_json>;
struct Attribute {
  std::string key;  // the JSON key, also the label in text output
  AttributeValue value;
};

// The attributes a face has, in display order. This is the one list of face keys: to add one,
// fill a FaceReport field in readFace() (face_report.cpp), add its row here, and describe it in
// tools/typeprint-output.schema.json.
std::vector<Attribute> faceAttributes(const FaceReport& face);

enum class FileStatus { Ok, Failed, NotAFont };
const char* statusName(FileStatus status);  // "ok", "failed", "not-a-font"

struct FileReport {
  std::string path;
  FileStatus status = FileStatus::Failed;
  std::string error;  // why, when the status is not Ok
  std::vector<FaceReport> faces;
  std::shared_ptr<TP_FontArray> array;  // the library's records, kept only when asked for
};

// Identifies one file with `mask`. Paths that are not regular readable files are never handed to
// the library; their report carries the system's reason.
FileReport identifyFile(const std::string& path, uint32_t mask, bool keepArray = false);

// 8 lower-case hexadecimal digits.
std::string hex8(uint32_t value);

}  // namespace typeprint::cli
