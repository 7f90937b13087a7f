#include "tables/foundry_table.h"

#include "base/be_reader.h"
#include "platform/linux/text_encoding.h"
#include "tables/table_file.h"

namespace typeprint {
namespace {

const std::string* stringValue(const PlistValue& entry, const char* key) {
  const PlistValue* value = entry.find(key);
  return value && value->is(PlistValue::Type::String) ? &value->asString() : nullptr;
}

// The four characters of a creator code, most significant byte first. Codes are Mac Roman
// bytes; the table holds UTF-8, so a code such as 'ƒnt©' is compared in its decoded form.
std::string creatorCodeText(uint32_t code) {
  const uint8_t bytes[4] = {uint8_t(code >> 24), uint8_t(code >> 16), uint8_t(code >> 8), uint8_t(code)};
  std::optional<std::string> text = decodeToUTF8(ByteSpan(bytes, 4), TextEncoding::MacRoman);
  return text ? *text : std::string(reinterpret_cast<const char*>(bytes), 4);
}

bool listsCreatorCode(const PlistValue& entry, const std::string& code) {
  const PlistValue* codes = entry.find("CreatorCode");
  if (!codes || !codes->is(PlistValue::Type::Array)) return false;
  for (const PlistValue& listed : codes->asArray()) {
    if (listed.is(PlistValue::Type::String) && !listed.asString().empty() && listed.asString() == code) return true;
  }
  return false;
}

}  // namespace

const CFoundryNameTable& CFoundryNameTable::GetSharedFoundryNameTable() {
  static const CFoundryNameTable shared = [] {
    CFoundryNameTable table;
    table.LoadTable();
    return table;
  }();
  return shared;
}

bool CFoundryNameTable::LoadTable() { return keep(readInstalledTableFile(kFileName)); }

bool CFoundryNameTable::LoadTable(const std::string& path) { return keep(readTableFile(path)); }

bool CFoundryNameTable::keep(std::optional<PlistValue> root) {
  table_.reset();
  canonicalNames_.clear();
  if (!root || !root->is(PlistValue::Type::Array)) return false;
  table_ = std::move(root);
  for (const PlistValue& entry : table_->asArray()) {
    const std::string* name = stringValue(entry, "FoundryName");
    if (!name || name->empty()) continue;
    UxString lowered = *name;
    canonicalNames_.emplace(lowered.ToLower(), *name);
  }
  return true;
}

bool CFoundryNameTable::IsQuestionableCreatorCode(uint32_t code) {
  switch (code) {
    case tag("ACP1"):
    case tag("ACSC"):
    case tag("ACp1"):
    case tag("FRet"):
    case tag("FRew"):
      return true;
    default:
      return false;
  }
}

bool CFoundryNameTable::IsKnownCreatorCode(uint32_t code, UxString* foundry) const {
  if (!table_ || code == 0 || (foundry && !foundry->empty())) return false;
  const std::string wanted = creatorCodeText(code);
  for (const PlistValue& entry : table_->asArray()) {
    const std::string* name = stringValue(entry, "FoundryName");
    if (!name || !listsCreatorCode(entry, wanted)) continue;
    if (foundry) *foundry = *name;
    return true;
  }
  return false;
}

bool CFoundryNameTable::ContainsKnownFoundryName(const UxString& text, UxString* foundry,
                                                 UxString* defaultFoundry) const {
  if (!table_) return false;
  UxString lowered = text;
  lowered.ToLower();
  // A canonical name stands for its foundry as it is: the exchange forms carry canonical names,
  // and reading one back must give the same foundry, however short the name.
  if (auto canonical = canonicalNames_.find(lowered); canonical != canonicalNames_.end()) {
    if (foundry) *foundry = canonical->second;
    return true;
  }
  for (const PlistValue& entry : table_->asArray()) {
    const std::string* pattern = stringValue(entry, "Pattern");
    if (!pattern) continue;
    const std::string* name = stringValue(entry, "FoundryName");
    if (pattern->empty()) {
      if (defaultFoundry && name) *defaultFoundry = *name;
      continue;
    }
    if (name && lowered.find(*pattern) != std::string::npos) {
      if (foundry) *foundry = *name;
      return true;
    }
  }
  return false;
}

UxString CFoundryNameTable::GetCanonicalFoundryName(uint32_t code, const UxString& text) const {
  UxString result;
  if (IsKnownCreatorCode(code, &result)) return result;
  UxString fallback;
  if (ContainsKnownFoundryName(text, &result, &fallback)) return result;
  return fallback.empty() ? UxString(kUnknownFoundry) : fallback;
}

}  // namespace typeprint
