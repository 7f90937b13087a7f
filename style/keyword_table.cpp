// Loading "KeywordTable.plist". Each component and style dictionary must carry all of its
// keys with the right types; anything else is skipped without notice, as is a string whose
// UTF-8 form does not fit the 512-byte conversion buffer the format was defined with.
#include "style/keyword_table.h"

#include <limits>

#include "platform/linux/mapped_file.h"
#include "platform/linux/plist_io.h"

namespace typeprint {


namespace {

constexpr size_t kMaxStringBytes = 511;

// A string value that converts: present, a string, and short enough.
bool readString(const PlistValue* value, std::string& out) {
  if (!value || !value->is(PlistValue::Type::String) || value->asString().size() > kMaxStringBytes) return false;
  out = value->asString();
  return true;
}

// True only for a boolean that is true.
bool readBoolean(const PlistValue& value) { return value.is(PlistValue::Type::Boolean) && value.asBoolean(); }

// A number as a signed 32-bit integer; 0 when it is no number or does not fit.
int32_t readInt32(const PlistValue& value) {
  double number = 0;
  if (value.is(PlistValue::Type::Integer)) {
    number = double(value.asInteger());
  } else if (value.is(PlistValue::Type::Real)) {
    number = value.asReal();
  } else {
    return 0;
  }
  if (!(number >= std::numeric_limits<int32_t>::min() && number <= std::numeric_limits<int32_t>::max())) return 0;
  return int32_t(number);
}

// The named array of the root, or null.
const PlistValue::Array* findArray(const PlistValue& root, const char* key) {
  const PlistValue* value = root.find(key);
  return value && value->is(PlistValue::Type::Array) ? &value->asArray() : nullptr;
}

bool readComponent(const PlistValue& entry, SStyleComponent& out) {
  const PlistValue* display = entry.find("display");
  const PlistValue* isModifier = entry.find("is-modifier");
  const PlistValue* compounds = entry.find("compounds");
  const PlistValue* constant = entry.find("style-constant");
  const PlistValue* matchStrings = entry.find("match-strings");
  if (!isModifier || !compounds || !constant || !matchStrings || !matchStrings->is(PlistValue::Type::Array)) {
    return false;
  }
  if (!readString(display, out.display)) return false;
  out.isModifier = readBoolean(*isModifier);
  out.compounds = readBoolean(*compounds);
  out.styleConstant = readInt32(*constant);
  for (const PlistValue& spelling : matchStrings->asArray()) {
    std::string text;
    if (readString(&spelling, text)) out.matchStrings.push_back(text);
  }
  return true;
}

bool readStyle(const PlistValue& entry, SBuiltinStyle& out) {
  const PlistValue* display = entry.find("display");
  const PlistValue* components = entry.find("components");
  const PlistValue* isWeight = entry.find("isweight");
  if (!components || !components->is(PlistValue::Type::Array) || !isWeight) return false;
  if (!readString(display, out.display)) return false;
  out.isWeight = readBoolean(*isWeight);
  for (const PlistValue& constant : components->asArray()) out.components.push_back(readInt32(constant));
  return true;
}

}  // namespace

void fillKeywordTable(const PlistValue& root, SKeywordTable& table) {
  const PlistValue::Array* components = findArray(root, "Components");
  const PlistValue::Array* styles = findArray(root, "Styles");
  if (!components) throw DataRetrieveError("KeywordTable.plist - Components array");

  table.components.clear();
  for (const PlistValue& entry : *components) {
    SStyleComponent component;
    if (!entry.is(PlistValue::Type::Dictionary) || !readComponent(entry, component)) continue;
    table.components.push_back(component);
    table.componentMap[component.styleConstant] = component;
  }

  if (!styles) throw DataRetrieveError("KeywordTable.plist - Style array");
  table.builtinStyles.clear();
  for (const PlistValue& entry : *styles) {
    SBuiltinStyle style;
    if (entry.is(PlistValue::Type::Dictionary) && readStyle(entry, style)) table.builtinStyles.push_back(style);
  }
}

void loadKeywordTable(const std::string& path, SKeywordTable& table) {
  if (path.empty()) return;
  std::shared_ptr<const MappedFile> file = MappedFile::open(path);
  if (!file) return;
  std::optional<PlistValue> root = parsePropertyList(file->bytes());
  if (!root) return;
  fillKeywordTable(*root, table);  // a root that is no dictionary has no "Components"
}

}  // namespace typeprint
