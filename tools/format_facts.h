// What the wider format reader (formats/) adds to the library's view of a file: the content
// checksum of every face, the kind the bytes show and a note when the name says otherwise, a
// variable font's axes and named instances, bitmap sizes; and the faces of the files the library
// does not read (WOFF, WOFF2, plain Type 1, PCF, BDF, BinHex archives, Mac bitmap-only families).
#pragma once

#include <string>

#include "tools/face_report.h"

namespace typeprint::cli {

// Adds the format facts to the faces the library gave for the file.
void addFormatFacts(FileReport& report);

// Fills the report from the wider reader for a file the library gave no face; false (report
// untouched) when that reader finds none either.
bool identifyWithFormats(FileReport& report, uint32_t mask);

}  // namespace typeprint::cli
