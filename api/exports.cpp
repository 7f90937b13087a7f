// The exported C interface: argument checks in their documented order, then a call into the
// library and a status. Exceptions are not caught here; they reach the caller by design.
#include "typeprint.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include "analysis/name_table.h"
#include "analysis/type1_header.h"
#include "api/create_specifier.h"
#include "api/exchange_formats.h"
#include "api/font_specifier.h"
#include "api/out_string.h"
#include "style/style_scan.h"
#include "tables/classification_table.h"
#include "tables/foundry_table.h"
#include "typeprint_version.h"

#define TP_API extern "C" __attribute__((visibility("default")))

using typeprint::CClassificationMappings;
using typeprint::CFoundryNameTable;
using typeprint::copyOutString;
using typeprint::UxString;

namespace {

using StringField = UxString TP_FontSpecifier::*;
using NumberField = uint32_t TP_FontSpecifier::*;

// The preamble of every face getter: pointer check (array and output), then index check (an
// index not below the count gives `outOfRange`), then the attribute gate. TP_STATUS_OK leaves
// the face in *face.
TP_Status checkedFace(TP_FontArray* array, const void* out, uint32_t index, uint32_t bit, TP_FontSpecifier* face,
                      TP_Status outOfRange = TP_STATUS_RANGE) {
  if (!array || !out) return TP_STATUS_FAILED;
  if (index >= array->count()) return outOfRange;
  *face = array->at(index);
  return (face->attributes & bit) ? TP_STATUS_OK : TP_STATUS_NOT_COLLECTED;
}

TP_Status getString(TP_FontArray* array, uint32_t index, char* buffer, int32_t size, uint32_t bit,
                    StringField field) {
  TP_FontSpecifier face;
  const TP_Status status = checkedFace(array, buffer, index, bit, &face);
  if (status == TP_STATUS_OK) copyOutString(face.*field, buffer, size);
  return status;
}

TP_Status getNumber(TP_FontArray* array, uint32_t index, uint32_t* value, uint32_t bit, NumberField field) {
  TP_FontSpecifier face;
  const TP_Status status = checkedFace(array, value, index, bit, &face);
  if (status == TP_STATUS_OK) *value = face.*field;
  return status;
}

// A version text cut to its numeric part: leading non-digits dropped, then digits, full stops
// and hyphens kept up to the first other character.
std::string numericVersion(std::string text) {
  size_t start = text.find_first_of("0123456789");
  if (start == std::string::npos) return std::string();
  size_t end = text.find_first_not_of("0123456789.-", start);
  return text.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

// A serialised document into the caller's buffer: 1 without faces, 4 when the capacity is not
// above its length (the buffer then holds a truncated prefix); size becomes length + 1.
TP_Status deliverDocument(const std::string& document, bool hasFaces, char* buffer, uint32_t* size) {
  TP_Status status = hasFaces ? TP_STATUS_OK : TP_STATUS_FAILED;
  const uint32_t capacity = *size;
  if (capacity <= document.length()) status = TP_STATUS_RANGE;
  copyOutString(document, buffer, int32_t(std::min<uint32_t>(capacity, INT32_MAX)));
  *size = uint32_t(document.length() + 1);
  return status;
}

}  // namespace

TP_API void TP_GetTypeprintVersion(uint32_t* major, uint32_t* minor) {
  if (!major || !minor) return;
  *major = TYPEPRINT_VERSION_MAJOR;
  *minor = TYPEPRINT_VERSION_MINOR;
}

TP_API TP_Status TP_GetFontCount(TP_FontArray* array, uint32_t* count) {
  if (!array || !count) return TP_STATUS_FAILED;
  *count = uint32_t(array->count());
  return TP_STATUS_OK;
}

TP_API TP_Status TP_SpecifierFree(TP_FontArray* array) {
  if (!array) return TP_STATUS_FAILED;
  delete array;
  return TP_STATUS_OK;
}

TP_API TP_Status TP_CreateSpecifier(const char* path, uint32_t, uint32_t mask, TP_FontArray** out) {
  if (!path || !out) return TP_STATUS_FAILED;
  auto array = std::make_unique<TP_FontArray>();
  if (!typeprint::createSpecifiers(path, mask, *array)) return TP_STATUS_FAILED;
  *out = array.release();
  return TP_STATUS_OK;
}

TP_API TP_Status TP_CreateSpecifierFromXML(const char* xml, TP_FontArray** out) {
  if (!xml || !out) return TP_STATUS_FAILED;
  return typeprint::arrayFromXML(xml, out);
}

TP_API TP_Status TP_CreateSpecifierFromPropertyList(const char* text, TP_FontArray** out) {
  if (!text || !out) return TP_STATUS_FAILED;
  return typeprint::arrayFromPropertyList(text, out);
}

TP_API TP_Status TP_GetXMLRepresentation(TP_FontArray* array, char* buffer, uint32_t* size) {
  if (!array || !buffer || !size) return TP_STATUS_FAILED;
  bool hasFaces = false;
  const std::string document = typeprint::xmlRepresentation(array, &hasFaces);
  return deliverDocument(document, hasFaces, buffer, size);
}

TP_API TP_Status TP_GetPropertyListRepresentation(TP_FontArray* array, char* buffer, uint32_t* size) {
  if (!array || !buffer || !size) return TP_STATUS_FAILED;
  bool hasFaces = false;
  const std::string document = typeprint::propertyListRepresentation(array, &hasFaces);
  return deliverDocument(document, hasFaces, buffer, size);
}

TP_API TP_Status TP_Match(TP_FontArray* a, uint32_t indexA, TP_FontArray* b, uint32_t indexB,
                          uint32_t* matching, uint32_t* differing) {
  if (!a || !b || !matching || !differing) return TP_STATUS_FAILED;
  *matching = 0;
  *differing = 0;
  if (indexA >= a->count() || indexB >= b->count()) return TP_STATUS_RANGE;
  const TP_FontSpecifier faceA = a->at(indexA), faceB = b->at(indexB);
  *matching = faceA.MatchingAttributes(faceB);
  *differing = faceA.DifferingAttributes(faceB);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetFontIndexForFONDResourceID(TP_FontArray* array, int16_t fondID, int16_t style,
                                                  uint32_t* index) {
  *index = 0;  // written before any check: a null index pointer is not caught
  if (!array) return TP_STATUS_FAILED;
  unsigned int found = 0;
  if (!array->FindIndexForFondResourceID(fondID, style, found)) return TP_STATUS_FAILED;
  *index = found;
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetKindName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  if (!array || !buffer) return TP_STATUS_FAILED;
  // The bounds-checked copy comes before the index check: a bad index throws out_of_range.
  const TP_FontSpecifier face = array->at(index);
  if (!(face.attributes & TP_ATTR_KIND_NAME)) return TP_STATUS_NOT_COLLECTED;
  copyOutString(face.kindName, buffer, size);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetPostScriptName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  return getString(array, index, buffer, size, TP_ATTR_POSTSCRIPT_NAME, &TP_FontSpecifier::postScriptName);
}

TP_API TP_Status TP_GetFamilyName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  return getString(array, index, buffer, size, TP_ATTR_FAMILY_NAME, &TP_FontSpecifier::familyName);
}

TP_API TP_Status TP_GetFullName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  return getString(array, index, buffer, size, TP_ATTR_FULL_NAME, &TP_FontSpecifier::fullName);
}

TP_API TP_Status TP_GetDisplayName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  return getString(array, index, buffer, size, TP_ATTR_DISPLAY_NAME, &TP_FontSpecifier::displayName);
}

TP_API TP_Status TP_GetWindowsFullName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  TP_FontSpecifier face;
  if (TP_Status status = checkedFace(array, buffer, index, TP_ATTR_WINDOWS_FULL_NAME, &face)) return status;
  if (face.windowsFullName.empty()) return TP_GetFullName(array, index, buffer, size);
  copyOutString(face.windowsFullName, buffer, size);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetVersion(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  TP_FontSpecifier face;
  if (TP_Status status = checkedFace(array, buffer, index, TP_ATTR_VERSION, &face)) return status;
  copyOutString(numericVersion(face.version), buffer, size);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetPlatform(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  return getString(array, index, buffer, size, TP_ATTR_PLATFORM, &TP_FontSpecifier::platform);
}

TP_API TP_Status TP_GetPrinterFont(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  return getString(array, index, buffer, size, TP_ATTR_OUTLINE_FILE_NAME, &TP_FontSpecifier::outlineFilePath);
}

TP_API TP_Status TP_GetWindowsMMFile(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  TP_FontSpecifier face;
  // This getter answers 1, not 4, for an index out of range.
  if (TP_Status status = checkedFace(array, buffer, index, TP_ATTR_WINDOWS_MM_FILE, &face, TP_STATUS_FAILED))
    return status;
  if (!(face.attributes & TP_ATTR_OUTLINE_FILE_NAME)) return TP_STATUS_FAILED;
  UxString mmmName;
  if (!typeprint::GetWindowsMMMFontNameFromPrinterFontName(face.outlineFilePath, &mmmName)) return TP_STATUS_FAILED;
  copyOutString(mmmName, buffer, size);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetFoundryName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  TP_FontSpecifier face;
  if (TP_Status status = checkedFace(array, buffer, index, TP_ATTR_FOUNDRY_NAME, &face)) return status;
  // Mac faces carry creator codes, which the legacy lookup prefers to the foundry text.
  if (face.platform == "mac") return TP_GetLegacyFoundryName(array, index, buffer, size);
  UxString foundry;
  if (!CFoundryNameTable::GetSharedFoundryNameTable().ContainsKnownFoundryName(face.foundryName, &foundry, nullptr))
    foundry = CFoundryNameTable::kUnknownFoundry;
  copyOutString(foundry, buffer, size);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetLegacyFoundryName(TP_FontArray* array, uint32_t index, char* buffer, int32_t size) {
  TP_FontSpecifier face;
  if (TP_Status status = checkedFace(array, buffer, index, TP_ATTR_FOUNDRY_NAME, &face)) return status;
  const CFoundryNameTable& table = CFoundryNameTable::GetSharedFoundryNameTable();
  UxString foundry;
  // A creator code that tools stamped on everyone's fonts is trusted less than the text.
  if (table.IsQuestionableCreatorCode(face.fileCreator) || table.IsQuestionableCreatorCode(face.outlineFileCreator)) {
    if (!table.ContainsKnownFoundryName(face.foundryName, &foundry, nullptr)) foundry.clear();
  }
  if (foundry.empty() && !table.IsKnownCreatorCode(face.fileCreator, &foundry) &&
      !table.IsKnownCreatorCode(face.outlineFileCreator, &foundry))
    foundry = table.GetCanonicalFoundryName(face.outlineFileCreator, face.foundryName);
  copyOutString(foundry, buffer, size);
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetOutlineFileSize(TP_FontArray* array, uint32_t index, uint32_t* value) {
  return getNumber(array, index, value, TP_ATTR_OUTLINE_FILE_SIZE, &TP_FontSpecifier::outlineFileSize);
}

TP_API TP_Status TP_GetTypeprintChecksum(TP_FontArray* array, uint32_t index, uint32_t* value) {
  return getNumber(array, index, value, TP_ATTR_CHECKSUM, &TP_FontSpecifier::typeprintChecksum);
}

TP_API TP_Status TP_GetLegacyTypeprintChecksum(TP_FontArray* array, uint32_t index, uint32_t* value) {
  return getNumber(array, index, value, TP_ATTR_LEGACY_CHECKSUM, &TP_FontSpecifier::legacyChecksum);
}

TP_API TP_Status TP_GetKerningChecksum(TP_FontArray* array, uint32_t index, uint32_t* value) {
  return getNumber(array, index, value, TP_ATTR_KERNING_CHECKSUM, &TP_FontSpecifier::kerningChecksum);
}

TP_API TP_Status TP_GetStyles(const char* nameA, const char* nameB, uint32_t maxNames, int32_t nameSize,
                              uint32_t* count, char** names) {
  if (!nameA || !nameB || !count || !names || !names[0]) return TP_STATUS_FAILED;
  typeprint::UxFontStyleScan::Initialize();
  std::vector<typeprint::SBuiltinStyle> styles;
  size_t found = typeprint::UxFontStyleScan::shared().ScanFontForBuiltinStyles(nameA, nameB, styles);
  if (found == 0) return TP_STATUS_OK;  // count is left as it was
  *count = uint32_t(std::min<size_t>(found, maxNames));
  for (uint32_t i = 0; i < *count; ++i) {
    if (names[i]) copyOutString(styles[i].display, names[i], nameSize);
  }
  return TP_STATUS_OK;
}

TP_API TP_Status TP_GetClassificationFromFamily(const char* family, const char* otherFamily, char* buffer,
                                                int32_t size) {
  if (!family || !buffer) return TP_STATUS_FAILED;
  const CClassificationMappings& mappings = CClassificationMappings::GetSharedClassificationMappings();
  UxString classification = mappings.GetClassNameFromFontFamily(family);
  if (classification == CClassificationMappings::GetUnknownClassificationName() && otherFamily)
    classification = mappings.GetClassNameFromFontFamily(otherFamily);
  copyOutString(classification, buffer, size);
  return TP_STATUS_OK;
}

TP_API void TP_GetPostScriptNameFromNamesTable(const char* data, uint32_t length, void* resourceFile,
                                               char** styleHandle, int32_t, char* buffer, int32_t size) {
  if (!data || !resourceFile || !styleHandle || !buffer) return;
  std::string name;
  typeprint::ByteSpan font(reinterpret_cast<const uint8_t*>(data), length);
  typeprint::getPostScriptNameFromNamesTable(font, name);
  if (!name.empty()) copyOutString(name, buffer, size);
}
