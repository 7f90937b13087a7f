#include "api/exchange_formats.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>

#include "foundation/plist_helpers.h"
#include "platform/linux/plist_io.h"
#include "typeprint.h"

namespace typeprint {

// The standard XML Schema instance namespace: the document declares no schema of its own.
const char* const kXMLSchemaInstanceURL = "http://www.w3.org/2001/XMLSchema-instance";

namespace {

constexpr int32_t kScratchSize = 512;

using StringGetter = TP_Status (*)(TP_FontArray*, uint32_t, char*, int32_t);
using NumberGetter = TP_Status (*)(TP_FontArray*, uint32_t, uint32_t*);

struct StringRow {
  const char* tag;
  StringGetter getter;
  UxString TP_FontSpecifier::*field;
  uint32_t bit;
};
struct NumberRow {
  const char* tag;
  NumberGetter getter;
  uint32_t TP_FontSpecifier::*field;
  uint32_t bit;
  int radix;  // 16 is written "%08X", 10 is written "%d"
};

const StringRow kStringRows[] = {
    {"FontKind", TP_GetKindName, &TP_FontSpecifier::kindName, TP_ATTR_KIND_NAME},
    {"PostScriptName", TP_GetPostScriptName, &TP_FontSpecifier::postScriptName, TP_ATTR_POSTSCRIPT_NAME},
    {"Foundry", TP_GetFoundryName, &TP_FontSpecifier::foundryName, TP_ATTR_FOUNDRY_NAME},
    {"Family", TP_GetFamilyName, &TP_FontSpecifier::familyName, TP_ATTR_FAMILY_NAME},
    {"Version", TP_GetVersion, &TP_FontSpecifier::version, TP_ATTR_VERSION},
    {"OutlineFileName", TP_GetPrinterFont, &TP_FontSpecifier::outlineFilePath, TP_ATTR_OUTLINE_FILE_NAME},
};
const NumberRow kNumberRows[] = {
    {"KerningChecksum", TP_GetKerningChecksum, &TP_FontSpecifier::kerningChecksum, TP_ATTR_KERNING_CHECKSUM, 16},
    {"Checksum", TP_GetTypeprintChecksum, &TP_FontSpecifier::typeprintChecksum, TP_ATTR_CHECKSUM, 16},
    {"OutlineFileSize", TP_GetOutlineFileSize, &TP_FontSpecifier::outlineFileSize, TP_ATTR_OUTLINE_FILE_SIZE, 10},
};

std::string stringAttribute(const StringRow& row, TP_FontArray* array, uint32_t index) {
  char scratch[kScratchSize] = "";
  row.getter(array, index, scratch, kScratchSize);  // an attribute not collected stays empty
  return scratch;
}

std::string formatNumber(uint32_t value, int radix) {
  char scratch[kScratchSize];
  if (radix == 16)
    std::snprintf(scratch, sizeof scratch, "%08X", value);
  else
    std::snprintf(scratch, sizeof scratch, "%d", int32_t(value));
  return scratch;
}

// Defaults of a record read back from text: attributes 0, and 0 where a new record has -1.
TP_FontSpecifier importedRecord() {
  TP_FontSpecifier s;
  s.style = s.firstFontResID = s.fondResID = 0;
  return s;
}

// "PLACEHOLDER_" and the tag in capitals.
std::string placeholderFor(const char* tag) {
  UxString placeholder = std::string("PLACEHOLDER_") + tag;
  return placeholder.ToUpper();
}

// The face block of the XML form, with one placeholder per element.
std::string xmlBlockTemplate() {
  std::string block = "\t<FontData>\n";
  const char* order[] = {"FontKind", "PostScriptName", "Foundry", "Family", "Version",
                         "Checksum", "KerningChecksum", "OutlineFileSize", "OutlineFileName"};
  for (const char* tag : order) block += std::string("\t\t<") + tag + ">" + placeholderFor(tag) + "</" + tag + ">\n";
  return block + "\t</FontData>\n";
}

// The bytes the values of one document may take: a well-formed document's values are each copied
// once, but in a damaged one a value can run across many later blocks and be found again by each.
struct XMLValueBudget {
  size_t documentSize;
  size_t used = 0;
  bool take(size_t n) {
    used += n;
    return !exceeded();
  }
  bool exceeded() const { return used / kMaxXMLValueFactor > documentSize; }
};

// The text between <tag> and </tag> at or after a position, for positions that never decrease:
// each search's result is kept while it still lies ahead, so a tag missing from the rest of the
// document is searched for once, not once per block.
class TagFinder {
 public:
  void setTag(const char* tag) {
    open_ = std::string("<") + tag + ">";
    close_ = std::string("</") + tag + ">";
  }
  // False, with *value untouched, when either is missing or the budget is spent.
  bool value(const std::string& text, size_t from, XMLValueBudget& budget, UxString* value) {
    size_t start = nextOpen_.at(text, open_, from);
    if (start == std::string::npos) return false;
    start += open_.size();
    const size_t end = nextClose_.at(text, close_, start);
    if (end == std::string::npos || !budget.take(end - start)) return false;
    *value = text.substr(start, end - start);
    return true;
  }

 private:
  struct Cursor {
    size_t found = 0;
    bool searched = false;
    size_t at(const std::string& text, const std::string& needle, size_t from) {
      if (!searched || (found != std::string::npos && found < from)) found = text.find(needle, from);
      searched = true;
      return found;
    }
  };
  std::string open_, close_;
  Cursor nextOpen_, nextClose_;
};

}  // namespace

uint32_t strtol32(const char* text, int radix) {
  long value = std::strtol(text, nullptr, radix);
  if (value > std::numeric_limits<int32_t>::max()) value = std::numeric_limits<int32_t>::max();
  if (value < std::numeric_limits<int32_t>::min()) value = std::numeric_limits<int32_t>::min();
  return uint32_t(int32_t(value));
}

std::string xmlRepresentation(TP_FontArray* array, bool* hasFaces) {
  std::string document = std::string("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n") +
                         "<TypeprintData xmlns:xsi=\"" + kXMLSchemaInstanceURL + "\">\n";
  const std::string blockTemplate = xmlBlockTemplate();
  *hasFaces = false;
  for (uint32_t i = 0; i < array->count(); ++i) {
    UxString block = blockTemplate;
    for (const StringRow& row : kStringRows)
      ReplaceAll(&block, placeholderFor(row.tag).c_str(), stringAttribute(row, array, i).c_str());
    for (const NumberRow& row : kNumberRows) {
      uint32_t value = 0;
      row.getter(array, i, &value);
      ReplaceAll(&block, placeholderFor(row.tag).c_str(), formatNumber(value, row.radix).c_str());
    }
    document += block;
    *hasFaces = true;
  }
  return document + "</TypeprintData>\n";
}

uint32_t arrayFromXML(const char* xml, TP_FontArray** out) {
  const std::string text = xml;
  auto array = std::make_unique<TP_FontArray>();
  XMLValueBudget budget{text.size()};
  TagFinder strings[std::size(kStringRows)], numbers[std::size(kNumberRows)];
  for (size_t i = 0; i < std::size(kStringRows); ++i) strings[i].setTag(kStringRows[i].tag);
  for (size_t i = 0; i < std::size(kNumberRows); ++i) numbers[i].setTag(kNumberRows[i].tag);
  uint32_t status = TP_STATUS_RANGE;
  size_t p = text.find("<FontData>");
  while (p != std::string::npos) {
    TP_FontSpecifier record = importedRecord();
    // Each search runs from the block's start to the end of the text, not to the block's end.
    for (size_t i = 0; i < std::size(kStringRows); ++i)
      if (strings[i].value(text, p, budget, &(record.*kStringRows[i].field))) record.attributes |= kStringRows[i].bit;
    for (size_t i = 0; i < std::size(kNumberRows); ++i) {
      UxString digits;
      if (numbers[i].value(text, p, budget, &digits)) record.attributes |= kNumberRows[i].bit;
      // A missing number is stored too, as 0.
      record.*kNumberRows[i].field = strtol32(digits.c_str(), kNumberRows[i].radix);
    }
    if (budget.exceeded()) return TP_STATUS_FAILED;
    array->append(record);
    size_t q = text.find("</FontData>", p);
    if (q == std::string::npos) break;
    status = TP_STATUS_OK;
    p = text.find("<FontData>", q);
  }
  if (status != TP_STATUS_OK) return status;
  array->RemoveDups();
  *out = array.release();
  return TP_STATUS_OK;
}

std::string propertyListRepresentation(TP_FontArray* array, bool* hasFaces) {
  PlistValue::Array faces;
  for (uint32_t i = 0; i < array->count(); ++i) {
    PlistValue::Dictionary face;
    for (const StringRow& row : kStringRows) face[row.tag] = PlistValue::string(stringAttribute(row, array, i));
    // The value is reset before the kerning checksum and the size but not before the checksum,
    // so an uncollected checksum repeats the kerning checksum's text.
    uint32_t value = 0;
    for (const NumberRow& row : kNumberRows) {
      if (row.getter != TP_GetTypeprintChecksum) value = 0;
      row.getter(array, i, &value);
      face[row.tag] = PlistValue::string(formatNumber(value, row.radix));
    }
    face["Keywords"] = PlistValue::string("");
    face["Path"] = PlistValue::string("");
    faces.push_back(PlistValue::dictionary(std::move(face)));
  }
  *hasFaces = !faces.empty();
  return printXMLPropertyList(PlistValue::array(std::move(faces))).value_or(std::string());
}

uint32_t arrayFromPropertyList(const char* text, TP_FontArray** out) {
  const size_t length = std::strlen(text);
  if (length >= 0x7FFFFFFF) return TP_STATUS_FAILED;
  std::optional<PlistValue> root =
      parsePropertyList(ByteSpan(reinterpret_cast<const uint8_t*>(text), length));
  if (!root || !root->is(PlistValue::Type::Array) || root->asArray().empty()) return TP_STATUS_FAILED;
  auto array = std::make_unique<TP_FontArray>();
  for (const PlistValue& element : root->asArray()) {
    TP_FontSpecifier record = importedRecord();
    const PlistValue::Dictionary noKeys;
    const PlistValue::Dictionary& face = element.is(PlistValue::Type::Dictionary) ? element.asDictionary() : noKeys;
    for (const StringRow& row : kStringRows) {
      const std::string* value = QCFUtils::GetCFStringFromDict(face, row.tag);
      if (!value) continue;
      record.*row.field = *value;
      record.attributes |= row.bit;
    }
    for (const NumberRow& row : kNumberRows) {
      const std::string* value = QCFUtils::GetCFStringFromDict(face, row.tag);
      if (!value) continue;
      record.*row.field = strtol32(value->c_str(), row.radix);
      record.attributes |= row.bit;
    }
    array->append(record);
  }
  if (array->count() == 0) return TP_STATUS_FAILED;
  array->RemoveDups();
  *out = array.release();
  return TP_STATUS_OK;
}

}  // namespace typeprint
