// The Mac-format fixtures in tests/fonts/mac/ and what an independent dumper found in them
// (tests/fonts/mac/expected.tsv, see the README there).
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/test_paths.h"

namespace typeprint::test {

struct ExpectedResource {
  std::string type;
  int id = 0;
  int attributes = 0;
  size_t size = 0;
  uint32_t crc = 0;
  std::string name;  // "-" when unnamed
};

struct ExpectedFile {
  std::string path;       // relative to tests/fonts/mac/
  std::string container;  // "plain file", "MacBinary I", "AppleDouble"...
  std::string type, creator;  // "-" when none
  std::string mapSource;      // "resource", "data" or "none"
  std::vector<ExpectedResource> resources;
};

inline std::vector<std::string> splitTabs(const std::string& line) {
  std::vector<std::string> fields;
  std::stringstream s(line);
  std::string field;
  while (std::getline(s, field, '\t')) fields.push_back(field);
  return fields;
}

inline std::vector<ExpectedFile> loadMacExpectations() {
  std::ifstream in(fontPath("mac/expected.tsv"));
  std::vector<ExpectedFile> files;
  std::string line;
  while (std::getline(in, line)) {
    auto f = splitTabs(line);
    if (f.size() == 6 && f[0] == "file") {
      files.push_back({f[1], f[2], f[3], f[4], f[5], {}});
    } else if (f.size() == 8 && f[0] == "res" && !files.empty() && files.back().path == f[1]) {
      files.back().resources.push_back({f[2], std::stoi(f[3]), std::stoi(f[4]), std::stoul(f[5]),
                                        uint32_t(std::stoul(f[6], nullptr, 16)), f[7]});
    }
  }
  return files;
}

// One face of a family fixture and its checksums, as tests/fonts/mac/make_family_checksums.py
// worked them out (family_checksums.tsv).
struct ExpectedFace {
  std::string path;  // relative to tests/fonts/mac/
  int fondID = 0;
  int style = 0;
  std::string postScriptName;  // empty when the family gives none
  std::string printerFile;     // empty when the face has none
  uint32_t kerningSum = 0, faceCrc = 0, legacyCrc = 0, crossPlatformFaceCrc = 0, crossPlatformLegacyCrc = 0;
};

inline std::vector<ExpectedFace> loadExpectedFaces() {
  std::ifstream in(fontPath("mac/family_checksums.tsv"));
  std::vector<ExpectedFace> faces;
  const auto orEmpty = [](const std::string& s) { return s == "-" ? std::string() : s; };
  const auto hex = [](const std::string& s) { return uint32_t(std::stoul(s, nullptr, 16)); };
  std::string line;
  while (std::getline(in, line)) {
    auto f = splitTabs(line);
    if (f.size() != 11 || f[0] != "face") continue;
    faces.push_back({f[1], std::stoi(f[2]), std::stoi(f[3]), orEmpty(f[4]), orEmpty(f[5]), hex(f[6]), hex(f[7]),
                     hex(f[8]), hex(f[9]), hex(f[10])});
  }
  return faces;
}

// A four-character code from text, independently of the library's tag().
inline uint32_t fourCC(const std::string& s) {
  return uint32_t(uint8_t(s.at(0))) << 24 | uint32_t(uint8_t(s.at(1))) << 16 | uint32_t(uint8_t(s.at(2))) << 8 |
         uint32_t(uint8_t(s.at(3)));
}

inline std::string macFixture(const std::string& relative) { return fontPath("mac/" + relative); }

// Copies a fixture, with its AppleDouble companion (`._N` or `.AppleDouble/N`) when it has one,
// into `dir`, keeping their places relative to each other. The path of the copy.
inline std::string copyMacFixture(const std::string& relative, const std::filesystem::path& dir) {
  namespace fs = std::filesystem;
  fs::path source = macFixture(relative);
  fs::path folder = source.parent_path();
  for (const fs::path& part : {source, folder / ("._" + source.filename().string()), folder / ".AppleDouble" / source.filename()}) {
    if (!fs::exists(part)) continue;
    fs::path target = dir / part.lexically_relative(folder);
    fs::create_directories(target.parent_path());
    fs::copy_file(part, target);
  }
  return (dir / source.filename()).string();
}

}  // namespace typeprint::test
