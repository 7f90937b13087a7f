// Extraction of the fonts a Mac font file holds as files Linux reads: every `sfnt` resource as
// it is (.ttf or .otf), every PostScript printer font its families need as .pfb or .pfa (with an
// .afm from the family's tables), every bitmap strike as .bdf.
//
// A source is planned completely in memory first, so a damaged one fails before anything is
// written; then its files are written, each through a temporary file and a rename.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace typeprint::rescue {

struct ExtractOptions {
  bool afm = false;      // an .afm beside each printer font
  bool bitmaps = false;  // each bitmap strike as .bdf
  bool pfa = false;      // printer fonts as .pfa instead of .pfb
  bool force = false;    // replace files that already exist
};

// Where a file's resources were found.
struct SourceLayout {
  std::string container;  // "MacBinary", "AppleSingle", "AppleDouble", "bare fork" or "plain"
  std::string forkFile;   // the file holding the resource fork, when it is not the file itself
  bool dataFork = false;  // the resource map is the data fork (a .dfont)
  // "AppleDouble ._N, resource fork"
  std::string describe() const;
};

struct PlannedFile {
  std::string fileName;  // in the output folder
  std::vector<uint8_t> bytes;
  std::string format;        // "ttf", "otf", "pfb", "pfa", "afm", "bdf"
  std::string fromPath;  // the file the resource was read from
  SourceLayout fromLayout;
  std::string resourceType;  // "sfnt", "POST", "FOND", "NFNT", "FONT"
  int resourceID = 0;
  // The face the file holds, when a family names it: for the face checksum inside the source.
  std::optional<int16_t> familyID;
  uint16_t style = 0;
  // What the face checksum inside the source covers beyond this outline ("the family's kerning
  // pairs"), which makes the two checksums differ; empty when it covers nothing more.
  std::string sourceChecksumAlsoCovers;
  std::vector<std::string> notes;
};

struct SourcePlan {
  std::string path;
  SourceLayout layout;
  std::vector<PlannedFile> files;
  std::vector<std::string> notes;      // things left out, not failures
  std::set<std::string> printerFiles;  // printer files read for the source's families
  std::string error;                   // set: the source failed and nothing is written
  bool isMacFont = true;               // false: no resource map at all (not a Mac font file)
};

// Reads the source and makes every output in memory.
SourcePlan planExtraction(const std::string& path, const ExtractOptions& options);

struct WrittenFile {
  std::string path;
  const PlannedFile* planned = nullptr;
  // For .ttf/.otf: the face checksum of the written file, and of the same face inside its
  // source when a family names it.
  std::optional<uint32_t> checksum, sourceChecksum;
};

struct WriteOutcome {
  std::vector<WrittenFile> files;
  std::string error;  // set: the source failed; files written before the failure are removed
};

// Writes a plan's files into `folder`. Without `force` an existing file fails the source before
// anything is written.
WriteOutcome writePlan(const SourcePlan& plan, const std::string& folder, bool force);

}  // namespace typeprint::rescue
