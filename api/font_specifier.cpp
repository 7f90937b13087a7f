#include "api/font_specifier.h"

#include <set>
#include <string>

#include "typeprint.h"

namespace {

struct StringAttribute {
  uint32_t bit;
  typeprint::UxString TP_FontSpecifier::*field;
};
struct NumberAttribute {
  uint32_t bit;
  uint32_t TP_FontSpecifier::*field;
};

// The attributes that decide whether two records describe the same font. Checksums, the
// other names and the platform take no part, by design.
const StringAttribute kComparedStrings[] = {
    {TP_ATTR_KIND_NAME, &TP_FontSpecifier::kindName},
    {TP_ATTR_FAMILY_NAME, &TP_FontSpecifier::familyName},
    {TP_ATTR_POSTSCRIPT_NAME, &TP_FontSpecifier::postScriptName},
    {TP_ATTR_FOUNDRY_NAME, &TP_FontSpecifier::foundryName},
    {TP_ATTR_VERSION, &TP_FontSpecifier::version},
    {TP_ATTR_OUTLINE_FILE_NAME, &TP_FontSpecifier::outlineFilePath},
};
const NumberAttribute kComparedNumbers[] = {
    {TP_ATTR_KERNING_CHECKSUM, &TP_FontSpecifier::kerningChecksum},
    {TP_ATTR_OUTLINE_FILE_SIZE, &TP_FontSpecifier::outlineFileSize},
};

}  // namespace

uint32_t TP_FontSpecifier::MatchingAttributes(const TP_FontSpecifier& other) const {
  const uint32_t both = attributes & other.attributes;
  uint32_t result = 0;
  for (const StringAttribute& a : kComparedStrings)
    if ((both & a.bit) && this->*a.field == other.*a.field) result |= a.bit;
  for (const NumberAttribute& a : kComparedNumbers)
    if ((both & a.bit) && this->*a.field == other.*a.field && this->*a.field != 0) result |= a.bit;
  return result;
}

uint32_t TP_FontSpecifier::DifferingAttributes(const TP_FontSpecifier& other) const {
  const uint32_t both = attributes & other.attributes;
  uint32_t result = 0;
  for (const StringAttribute& a : kComparedStrings) {
    const std::string& mine = this->*a.field;
    const std::string& theirs = other.*a.field;
    if ((both & a.bit) && !mine.empty() && !theirs.empty() && mine != theirs) result |= a.bit;
  }
  for (const NumberAttribute& a : kComparedNumbers) {
    uint32_t mine = this->*a.field, theirs = other.*a.field;
    if ((both & a.bit) && mine != 0 && theirs != 0 && mine != theirs) result |= a.bit;
  }
  return result;
}

bool TP_FontArray::FindIndexForFondResourceID(short fondID, short style, unsigned int& index) const {
  for (size_t i = 0; i < specifiers.size(); ++i) {
    if (specifiers[i].fondResID == fondID && specifiers[i].style == style) {
      index = static_cast<unsigned int>(i);
      return true;
    }
  }
  return false;
}

void TP_FontArray::RemoveDups() {
  TP_FontArray result;
  std::set<typeprint::UxString> seen;  // ordered, and like every UxString blind to case
  for (size_t r = 0; r < specifiers.size(); ++r) {
    if (!seen.insert(specifiers[r].postScriptName).second) continue;
    size_t chosen = r;
    for (size_t e = chosen + 1; e < specifiers.size(); ++e) {
      const TP_FontSpecifier& candidate = specifiers[e];
      if (candidate.firstFontResID >= 1 && candidate.postScriptName == specifiers[chosen].postScriptName &&
          candidate.style < specifiers[chosen].style) {
        chosen = e;  // the scan goes on from the record after the new choice
      }
    }
    result.append(specifiers[chosen]);
  }
  replaceWith(result);
}
