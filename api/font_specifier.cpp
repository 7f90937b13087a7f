#include "api/font_specifier.h"

#include <cctype>
#include <string>
#include <unordered_map>
#include <vector>

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

// The key under which two names are equal exactly when strcasecmp finds them so.
std::string foldedName(const std::string& name) {
  std::string key(name.c_str());
  for (char& c : key) c = char(std::tolower(static_cast<unsigned char>(c)));
  return key;
}

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

// Records are grouped by PostScript name under the equality UxString uses (strcasecmp: letters
// folded by the C library's tolower, the name ending at its first zero byte), in the order each
// name first appears. Of each group the first record is kept, unless a later one from a real
// resource (firstFontResID of 1 or more) has a lower style than the one chosen so far; the scan
// goes on from the record after each new choice.
void TP_FontArray::RemoveDups() {
  std::unordered_map<std::string, size_t> groupOfName;
  std::vector<std::vector<size_t>> groups;
  for (size_t r = 0; r < specifiers.size(); ++r) {
    auto [found, fresh] = groupOfName.try_emplace(foldedName(specifiers[r].postScriptName), groups.size());
    if (fresh) groups.emplace_back();
    groups[found->second].push_back(r);
  }
  TP_FontArray result;
  for (const std::vector<size_t>& members : groups) {
    size_t chosen = members.front();
    for (size_t e : members) {
      const TP_FontSpecifier& candidate = specifiers[e];
      if (e > chosen && candidate.firstFontResID >= 1 && candidate.style < specifiers[chosen].style) chosen = e;
    }
    result.append(specifiers[chosen]);
  }
  replaceWith(result);
}
