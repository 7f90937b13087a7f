#include "resources/printer_files.h"

#include <set>
#include <string>

#include "analysis/ps_name.h"
#include "foundation/file_location.h"
#include "resources/families.h"
#include "resources/fond.h"
#include "resources/printer_font_folder.h"
#include "resources/resource_file.h"

namespace typeprint {
namespace {

constexpr size_t kFileNameCapacity = 255;
constexpr const char kITCPrefix[] = "ITC-";
constexpr size_t kITCPrefixLength = sizeof kITCPrefix - 1;
// Characters kept from the first word of a name after its first character, and from later words.
constexpr int kFirstWordQuota = 4;
constexpr int kLaterWordQuota = 2;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }

std::string fromPascal(const unsigned char* p) { return std::string(reinterpret_cast<const char*>(p + 1), p[0]); }

void toPascal(const std::string& s, unsigned char* dst, size_t capacity) {
  unsigned char whole[kStr255Capacity];
  UxString(s).GetPascalString(whole);
  CopyPascalString(whole, dst, capacity);
}

// The name before its first "_", when one stands anywhere but in the last place.
std::string cutAtUnderscore(const std::string& name) {
  if (name.size() < 2) return name;
  size_t at = name.find('_');
  return at != std::string::npos && at <= name.size() - 2 ? name.substr(0, at) : name;
}

// The five-three-three abbreviation of a name without "ITC-" and "_" suffix.
std::string abbreviate(const std::string& name) {
  std::string result;
  bool afterHyphen = false;
  int quota = 0;
  const size_t last = name.empty() ? 0 : name.size() - 1;
  for (size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool startsWord = afterHyphen || isUpper(c) || (i == 0 && (isDigit(c) || isLower(c))) ||
                            (i == last && i >= 2 && isDigit(c) && isDigit(name[i - 1]));
    if (startsWord) {
      if (result.empty()) quota = kFirstWordQuota;
      else if (isDigit(c) && i + 2 < name.size()) quota = 0;
      else quota = kLaterWordQuota;
      result.push_back(c);
      afterHyphen = false;
    } else if (c == '-') {
      afterHyphen = true;
      quota = 0;
    } else if (quota > 0) {
      result.push_back(c);
      --quota;
    }
  }
  return result;
}

UxString folderOf(const ResourceFile& rf) {
  return UxFileSystemParser::GetPathDeletingLastPathComponent(rf.path());
}

UxString ownFileName(const ResourceFile& rf) {
  return UxString(UxFileSystemParser::FindFileName(rf.path().c_str()));
}

// The double-byte family's printer-file name: the PostScript name up to its second hyphen.
std::optional<std::string> doubleByteCandidate(const std::string& psName) {
  size_t first = psName.find('-');
  if (first == std::string::npos) return std::nullopt;
  size_t second = psName.find('-', first + 1);
  if (second == std::string::npos) return std::nullopt;
  return psName.substr(0, second);
}

std::optional<std::string> computedPrinterName(ByteSpan fond, short style) {
  unsigned char psName[kStr255Capacity];
  GetPrinterFontNameFromResource(fond, uint8_t(style), psName, sizeof psName);
  if (fondIsDoubleByte(fond) && fondStyleTableOffset(fond) != 0) return doubleByteCandidate(fromPascal(psName));
  unsigned char fileName[kStr255Capacity];
  GetPostScriptFontFileName(psName, fileName);
  return fromPascal(fileName);
}

}  // namespace

void GetPostScriptFontFileName(const unsigned char* psName, unsigned char* dst) {
  std::string name = psName ? fromPascal(psName) : std::string();
  if (name.compare(0, kITCPrefixLength, kITCPrefix) == 0) name.erase(0, kITCPrefixLength);
  unsigned char abbreviated[kStr255Capacity];
  toPascal(abbreviate(cutAtUnderscore(name)), abbreviated, sizeof abbreviated);
  CopyPascalStringAsciiLimit(abbreviated, dst, kFileNameCapacity);
}

UxString getPostScriptNameForFOND(ByteSpan fond, short style) {
  unsigned char psName[kStr255Capacity];
  GetPrinterFontNameFromResource(fond, uint8_t(style), psName, sizeof psName);
  return fromPascal(psName);
}

UxString getPSPrinterNameForFOND(ResourceFile& rf, ByteSpan fond, short style) {
  const UxString psName = getPostScriptNameForFOND(fond, style);
  auto& cache = rf.printerFileCache();
  auto cached = cache.find(psName);
  if (cached != cache.end()) return cached->second;

  std::optional<std::string> candidate = computedPrinterName(fond, style);
  // An empty name names no file.
  if (!candidate || candidate->empty()) return {};
  const std::string folder = folderOf(rf);
  std::optional<std::string> found;
  if (*candidate != std::string(ownFileName(rf))) found = findPrinterFileInFolder(folder, *candidate);
  if (!found)
    if (std::optional<UxString> activated = getPrinterNameFromFontActivation(rf, psName))
      found = findPrinterFileInFolder(folder, *activated);
  std::string result = found ? *found : *candidate;
  cache[psName] = result;
  return result;
}

std::optional<UxString> getPrinterNameFromFontActivation(ResourceFile& rf, const UxString& postScriptName) {
  std::optional<UxString> result;
  for (const FolderPrinterFont& font : rf.folderPrinterFonts()) {
    for (auto level : {GFontToolUtils::kMatchExact, GFontToolUtils::kMatchAlphanumeric,
                       GFontToolUtils::kMatchToSecondHyphen}) {
      if (GFontToolUtils::DoPostScriptNamesMatch(postScriptName, font.postScriptName, level)) {
        result = UxString(font.fileName);
        break;
      }
    }
  }
  return result;
}

std::optional<UxString> CreatePrinterPath(ResourceFile* rf, ByteSpan fond, short style) {
  if (!rf || fond.empty() || !shouldHavePrinterFile(fond, style)) return std::nullopt;
  ResourceFile& file = *rf;
  UxString name = getPSPrinterNameForFOND(file, fond, style);
  if (name.empty()) return std::nullopt;
  std::optional<std::string> found = findPrinterFileInFolder(folderOf(file), name);
  if (!found) return std::nullopt;
  return folderOf(file) + *found;
}

std::vector<UxString> getPrinterFiles(ResourceFile& rf) {
  std::set<std::string> seenNames, needingNames, paths;
  const UxString folder = folderOf(rf);
  const std::vector<int16_t> familyIDs = rf.sortedIDs(kTypeFOND);
  for (int16_t style : getSortedStyles(rf)) {
    for (int16_t id : familyIDs) {
      const ByteSpan fond = dataOf(rf.find(kTypeFOND, id));
      if (styleExists(style, fond)) {
        const UxString name = getPSPrinterNameForFOND(rf, fond, style);
        const std::string path = folder + name;
        if (!shouldHavePrinterFile(fond, style)) {
          seenNames.insert(name);
          if (needingNames.count(name)) paths.erase(path);
        } else if (!paths.count(path) && !seenNames.count(name)) {
          paths.insert(path);
          needingNames.insert(name);
          seenNames.insert(name);
        }
      }
    }
  }
  return {paths.begin(), paths.end()};
}

UxString normalizePostScriptName(const UxString& name, Resource fond, bool* isMM) {
  if (!fond || !isMM) return name;
  std::string s = fond->hasName ? fond->name : std::string();
  size_t percentM = s.find("%M");
  if (percentM != std::string::npos) {
    *isMM = true;
    s = s.substr(percentM + 2);
  }
  size_t mm = s.find("MM");
  if (mm != std::string::npos) {
    *isMM = true;
    std::string result = s.substr(0, mm);
    size_t underscore = s.find('_', mm + 2);
    if (underscore != std::string::npos) result += s.substr(mm + 2, underscore - mm - 2);
    return result;
  }
  return *isMM ? UxString(s) : name;
}

}  // namespace typeprint
