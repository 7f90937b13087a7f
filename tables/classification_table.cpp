#include "tables/classification_table.h"

#include "platform/linux/text_encoding.h"
#include "tables/table_file.h"

namespace typeprint {
namespace {

constexpr const char* kMappingsKey = "Mappings";
constexpr const char* kBuiltinClassesKey = "Default Classifications";

// Class names are handed out through 1024-byte buffers: longer ones are not used.
constexpr size_t kMaxClassNameBytes = 1023;

bool usableClassName(const PlistValue& value) {
  return value.is(PlistValue::Type::String) && value.asString().size() <= kMaxClassNameBytes;
}

}  // namespace

const CClassificationMappings& CClassificationMappings::GetSharedClassificationMappings() {
  static const CClassificationMappings shared = [] {
    CClassificationMappings mappings;
    mappings.LoadMappings();
    return mappings;
  }();
  return shared;
}

bool CClassificationMappings::LoadMappings() { return keep(readInstalledTableFile(kFileName)); }

bool CClassificationMappings::LoadMappings(const std::string& path) { return keep(readTableFile(path)); }

bool CClassificationMappings::keep(std::optional<PlistValue> root) {
  table_.reset();
  if (!root || !root->is(PlistValue::Type::Dictionary)) return false;
  table_ = std::move(root);
  ReplaceDefaultClassification("None", GetUnknownClassificationName());
  return true;
}

UxString CClassificationMappings::GetClassNameFromFontFamily(const UxString& family) const {
  UxString result = GetUnknownClassificationName();
  if (!table_) return result;
  const PlistValue* mappings = table_->find(kMappingsKey);
  if (!mappings) return result;
  const PlistValue* value = mappings->find(toLowerUnicode(family));
  if (value && usableClassName(*value)) result = value->asString();
  return result;
}

void CClassificationMappings::GetListOfBuiltinClasses(std::vector<UxString>& list) const {
  list.clear();
  if (!table_) return;
  const PlistValue* classes = table_->find(kBuiltinClassesKey);
  if (!classes || !classes->is(PlistValue::Type::Array)) return;
  for (const PlistValue& name : classes->asArray()) {
    if (usableClassName(name)) list.push_back(name.asString());
  }
}

int CClassificationMappings::ReplaceDefaultClassification(const std::string& from, const std::string& to) {
  if (!table_) return 0;
  auto found = table_->asDictionary().find(kBuiltinClassesKey);
  if (found == table_->asDictionary().end() || !found->second.is(PlistValue::Type::Array)) return 0;
  int replaced = 0;
  for (PlistValue& name : found->second.asArray()) {
    if (name.is(PlistValue::Type::String) && name.asString() == from) {
      name = PlistValue::string(to);
      ++replaced;
    }
  }
  return replaced;
}

}  // namespace typeprint
