// Everything the getters tell about one face, gathered once, and the ways the tool prints it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "typeprint.h"

namespace typeprint::cli {

struct FaceReport {
  uint32_t index = 0;
  // Each attribute is absent when its getter did not answer (not collected, or no value).
  std::optional<std::string> kind, postScriptName, family, fullName, displayName, windowsFullName,
      version, platform, foundry, legacyFoundry, printerFont, windowsMMFile;
  std::optional<uint32_t> outlineFileSize, checksum, legacyChecksum, kerningChecksum;
};

// The result of identifying one file.
struct FileReport {
  std::string path;
  TP_Status status = TP_STATUS_FAILED;
  std::vector<FaceReport> faces;
  bool damaged = false;  // gave no face but looks like a font that should have (see file_walk.h)
  std::string xml;    // the library's own XML form of the file's array
  std::string plist;  // and its property-list form
};

// Identifies one file with `mask` and reads every face back through the getters; the two
// serialised forms are made only when asked for.
FileReport identifyFile(const std::string& path, uint32_t mask, bool withDocuments = false);

// The labelled attributes of a face, in display order, for tables and JSON.
std::vector<std::pair<std::string, std::string>> textAttributes(const FaceReport& face);
std::vector<std::pair<std::string, std::optional<uint32_t>>> numberAttributes(const FaceReport& face);

std::string jsonString(const std::string& text);
std::string formatHex(uint32_t value);

// One file's faces as aligned "label  value" lines.
std::string textReport(const FileReport& report);
// One file's faces as a JSON object {"path":..., "faces":[...]}.
std::string jsonReport(const FileReport& report);

}  // namespace typeprint::cli
