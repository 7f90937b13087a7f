// The record of one font face and the array of one file's faces.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/ux_string.h"

// The opaque array handed to callers of the C interface. It lives at global scope because the
// public header declares `struct TP_FontArray`.
struct TP_FontSpecifier {
  typeprint::UxString kindName;
  typeprint::UxString familyName;
  typeprint::UxString postScriptName;
  typeprint::UxString fullName;
  typeprint::UxString windowsFullName;
  typeprint::UxString displayName;
  typeprint::UxString foundryName;
  typeprint::UxString version;
  typeprint::UxString outlineFilePath;
  typeprint::UxString platform;
  uint32_t kerningChecksum = 0;
  uint32_t typeprintChecksum = 0;
  uint32_t legacyChecksum = 0;
  uint32_t outlineFileSize = 0;
  int32_t style = -1;           // Mac style of the face in its family resource
  int32_t firstFontResID = -1;  // first bitmap or outline resource of that style
  int32_t fondResID = -1;       // the family resource
  uint32_t fileCreator = 0;
  uint32_t fileType = 0;
  uint32_t outlineFileCreator = 0;
  uint32_t outlineFileType = 0;
  uint32_t attributes = 0;  // the attribute mask asked for at creation

  // Attributes alike in both records: strings equal ignoring case, numbers equal and non-zero.
  uint32_t MatchingAttributes(const TP_FontSpecifier& other) const;
  // Attributes in conflict: strings both non-empty and different byte for byte, numbers both
  // non-zero and unequal.
  uint32_t DifferingAttributes(const TP_FontSpecifier& other) const;
};

struct TP_FontArray {
  std::vector<TP_FontSpecifier> specifiers;

  void append(const TP_FontSpecifier& s) { specifiers.push_back(s); }
  size_t count() const { return specifiers.size(); }
  // A copy of element `index`; throws std::out_of_range when it is not below the count.
  TP_FontSpecifier at(size_t index) const { return specifiers.at(index); }
  void replaceWith(const TP_FontArray& other) { specifiers = other.specifiers; }

  // The first record made from family `fondID`, style `style`; index untouched when none.
  bool FindIndexForFondResourceID(short fondID, short style, unsigned int& index) const;
  // Keeps one record per PostScript name: the first seen, or a later one of lower style that
  // comes from a real font resource.
  void RemoveDups();
};
