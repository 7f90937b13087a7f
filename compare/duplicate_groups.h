// Groups the faces of many files by the font they are, and tells for every copy in a group how it
// relates to the group's reference copy, with the evidence, and which copy to keep.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "compare/file_content.h"
#include "compare/font_copy.h"

namespace typeprint::compare {

// How a copy relates to its group's reference copy.
enum class Verdict {
  Reference,     // the copy the others are compared with: the one suggested to keep
  SameFile,      // a hard or symbolic link to a file already counted
  Identical,     // another file with the same bytes
  SameFace,      // the same face in another file or container (equal face checksum or tables)
  OtherFormat,   // same names and version, another outline format or packaging
  OtherVersion,  // same names, another version
  Modified,      // same names, version and form, other outlines or kerning
  Instance,      // a static face matching a named instance of the variable font
  Conflict,      // same PostScript name, another family: another font that shadows this one
};
const char* verdictName(Verdict verdict);  // "reference", "same-file", ...

// Why a verdict was given: in words, and as named facts (checksums, versions, paths...).
struct TEvidence {
  std::string text;
  std::vector<std::pair<std::string, std::string>> facts;
  std::vector<std::string> differing;  // checksums and attributes that differ
};

struct TCopyVerdict {
  size_t copy = 0;  // index in the copies handed to findDuplicateGroups
  Verdict verdict = Verdict::Reference;
  TEvidence evidence;
  bool keep = false;
  bool fontconfig = false;  // the copy fontconfig uses for the group's family and style
};

struct TDuplicateGroup {
  std::string postScriptName, family, style;
  std::vector<TCopyVerdict> copies;  // the reference first, then newest first
  std::string keepReason;
  bool hasConflict = false;
};

// The groups of faces that are the same font (by PostScript name; by family and style when the
// PostScript name is missing or generic), each with more than one copy, ordered by family.
// A variable font joins the groups of its named instances. `content` answers the questions
// about bytes that some pairs raise.
std::vector<TDuplicateGroup> findDuplicateGroups(const std::vector<TFontCopy>& copies, FileContent& content);

// The names of the TP_ATTR_ bits set in `mask`, in bit order ("postScriptName", "version"...).
std::vector<std::string> attributeNames(uint32_t mask);

}  // namespace typeprint::compare
