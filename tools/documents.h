// The library's XML and property-list forms for the faces of many files at once: one document
// holding all faces of all files in order, each face with its file's path.
#pragma once

#include <string>
#include <vector>

#include "tools/face_report.h"

namespace typeprint::cli {

// The reports must have been made with their arrays kept; files without faces add nothing.
std::string combinedPropertyList(const std::vector<FileReport>& reports);
std::string combinedXML(const std::vector<FileReport>& reports);

}  // namespace typeprint::cli
