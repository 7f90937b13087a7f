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
  // From the wider format reader (tools/format_facts.h): the font's own checksum whatever holds
  // it, the kind its bytes show and a note when the name says otherwise, the style name of a face
  // the library does not read, bitmap sizes, and a variable font's axes and named instances.
  std::optional<uint32_t> contentChecksum;
  std::optional<std::string> contentKind, kindNote, styleName;
  std::optional<int64_t> pixelSize;
  std::optional<std::vector<int>> pointSizes;
  std::optional<nlohmann::ordered_json> axes, instances;
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

// Every attribute of face `index` of the library's records.
FaceReport readFace(TP_FontArray* array, uint32_t index);

// Identifies one file with `mask`. Paths that are not regular readable files are never handed to
// the library; their report carries the system's reason.
FileReport identifyFile(const std::string& path, uint32_t mask, bool keepArray = false);

// 8 lower-case hexadecimal digits.
std::string hex8(uint32_t value);

}  // namespace typeprint::cli
