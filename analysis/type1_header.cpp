#include "analysis/type1_header.h"

#include <cctype>
#include <cstring>

#include "analysis/foundry_lookup.h"

namespace typeprint {
namespace {

constexpr size_t kMaxValueLength = 3999;
constexpr const char* kHeaderLineKey = "%!PS-AdobeFont-";
constexpr const char* kFamilyDelimiters = ":- \r\n%";       // the family ends at the first hyphen
constexpr const char* kPostScriptDelimiters = ": \r\n%";    // the PostScript name keeps its hyphens
// The header line is searched from the third byte on: a POST resource or a PFB segment begins
// with two bytes of its own before the text.
constexpr size_t kHeaderLineSkip = 2;

// A view ends at its first zero byte, as the C string it stands for.
std::string_view asCString(std::string_view v) { return v.substr(0, v.find('\0')); }

bool isDelimiter(char c, const char* delimiters) { return c != '\0' && std::strchr(delimiters, c); }

// The header-line value of `key` in data from its third byte on.
bool headerLineValue(std::string_view data, const char* delimiters, UxString* value) {
  if (data.size() < kHeaderLineSkip) return false;
  return GetDelimitedKeyValue(data.substr(kHeaderLineSkip), kHeaderLineKey, delimiters, value);
}

bool endsWithExtension(const UxString& name, const char* extension) {
  if (name.size() < 6 || name[name.size() - 4] != '.') return false;
  std::string last = name.substr(name.size() - 3);
  for (char& c : last) c = char(std::tolower(static_cast<unsigned char>(c)));
  return last == extension;
}

bool replaceExtension(const UxString& name, const char* from1, const char* from2, const char* to, UxString* out) {
  if (!out || !(endsWithExtension(name, from1) || (from2 && endsWithExtension(name, from2)))) return false;
  *out = name.substr(0, name.size() - 3) + to;
  return true;
}

void gatherFoundry(std::string_view lowerData, std::string_view data, UxString* foundry) {
  UxString notice;
  bool found = findBlobForToken(lowerData, data, "/notice", &notice);
  if (!found && foundry->empty()) found = findBlobForToken(lowerData, data, "/copyright", &notice);
  if (!found) return;
  if (containsKnownFoundryName(notice) || containsKnownFoundryName(UxString(std::string(asCString(lowerData)))))
    *foundry = notice;
}

}  // namespace

TType1HeaderText::TType1HeaderText(ByteSpan bytes) {
  text.reserve(bytes.size);
  lower.reserve(bytes.size);
  for (uint8_t b : bytes) {
    char c = b == 0 ? '_' : char(b);
    text.push_back(c);
    lower.push_back(char(std::tolower(static_cast<unsigned char>(c))));
  }
}

bool findBlobForToken(std::string_view lowerData, std::string_view data, const char* token, UxString* value) {
  lowerData = asCString(lowerData);
  data = asCString(data);
  size_t at = lowerData.find(token);
  if (at == std::string_view::npos) return false;
  at += std::strlen(token);
  while (at < lowerData.size() && (lowerData[at] == ' ' || lowerData[at] == '\n')) ++at;

  char opening = ' ', closing = ' ';
  if (at < data.size()) {
    switch (data[at]) {
      case '(': opening = '('; closing = ')'; ++at; break;
      case '[': opening = '['; closing = ']'; ++at; break;
      case '{': opening = '{'; closing = '}'; ++at; break;
      case '/': ++at; break;
      default: break;
    }
  }
  UxString copy;
  int depth = 0;
  for (; at < data.size() && copy.size() < kMaxValueLength; ++at) {
    char c = data[at];
    if (c == closing && --depth < 0) break;
    if (c == opening && opening != closing) ++depth;
    copy.push_back(c);
  }
  if (value) *value = copy;
  return true;
}

bool GetDelimitedKeyValue(std::string_view data, const UxString& key, const char* delimiters, UxString* value) {
  data = asCString(data);
  size_t at = data.find(std::string_view(key.data(), key.size()));
  if (at == std::string_view::npos) return false;
  at += key.size();
  while (at < data.size() && !isDelimiter(data[at], delimiters)) ++at;
  ++at;
  while (at < data.size() && data[at] == ' ') ++at;
  UxString found;
  for (; at < data.size() && !isDelimiter(data[at], delimiters); ++at) found.push_back(data[at]);
  if (value) *value = found;
  return true;
}

void GatherPostScriptMetaDataFromData(std::string_view lowerData, std::string_view data, UxString* kind,
                                      UxString* foundry, UxString* family, UxString* version,
                                      UxString* postScriptName, UxString* styledName, UxString* fullName) {
  if (lowerData.data() && data.data()) {
    if (kind && findBlobForToken(lowerData, data, "/weightvector", nullptr)) *kind = "PostScript - MM";
    if (version && !findBlobForToken(lowerData, data, "/cidfontversion", version) && version->empty())
      findBlobForToken(lowerData, data, "/version", version);
    if (family) {
      findBlobForToken(lowerData, data, "/familyname", family);
      if (family->empty()) headerLineValue(data, kFamilyDelimiters, family);
      if (family->empty()) findBlobForToken(lowerData, data, "/fullname", family);
    }
    if (postScriptName) {
      if (!findBlobForToken(lowerData, data, "/cidfontname", postScriptName) &&
          !findBlobForToken(lowerData, data, "/fontname", postScriptName) && postScriptName->empty())
        findBlobForToken(lowerData, data, "/fullname", postScriptName);
      if (postScriptName->empty()) headerLineValue(data, kPostScriptDelimiters, postScriptName);
      if (styledName) *styledName = *postScriptName;
      if (fullName) *fullName = *postScriptName;
    }
    if (foundry) gatherFoundry(lowerData, data, foundry);
  }
  if (kind && kind->empty()) *kind = "PostScript";
}

bool GetWindowsMMMFontNameFromPrinterFontName(const UxString& printerFileName, UxString* mmmName) {
  return replaceExtension(printerFileName, "pfb", nullptr, "mmm", mmmName);
}

bool GetWindowsPSPrinterFontNameFromFontName(const UxString& fontFileName, UxString* printerFileName) {
  return replaceExtension(fontFileName, "pfm", "mmm", "pfb", printerFileName);
}

}  // namespace typeprint
