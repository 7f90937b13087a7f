// The command's plain-text output: a file's faces as aligned "label  value" lines, one line per
// face for scans, and the summary.
#pragma once

#include <string>

#include "tools/face_report.h"
#include "tools/json_output.h"

namespace typeprint::cli {

// A value as text: checksums as 8 lower-case hex digits, structures as compact JSON.
std::string attributeText(const AttributeValue& value);

// "PATH: N faces" and each face's attributes.
std::string fileText(const FileReport& report);

// "POSTSCRIPTNAME KIND CHECKSUM PATH" for each face.
std::string scanLines(const FileReport& report);

// "N files, N identified, N faces, N failures, N not fonts, S s" and the faces per kind.
std::string summaryText(const Summary& summary);

}  // namespace typeprint::cli
