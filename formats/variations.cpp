#include "formats/variations.h"

#include "platform/linux/text_encoding.h"

namespace typeprint::formats {
namespace {

constexpr size_t kNameRecordSize = 12;
constexpr size_t kFvarHeaderSize = 16;
constexpr size_t kAxisRecordSize = 20;
constexpr uint16_t kNoPostScriptName = 0xFFFF;

enum ERecordRank { kRankNone, kRankMacRoman, kRankWindows, kRankWindowsUS };

ERecordRank rankOf(uint16_t platformID, uint16_t encodingID, uint16_t languageID) {
  if (platformID == 3 && (encodingID == 1 || encodingID == 10)) return languageID == 0x409 ? kRankWindowsUS : kRankWindows;
  if (platformID == 1 && encodingID == 0 && languageID == 0) return kRankMacRoman;
  return kRankNone;
}

double fixedToDouble(uint32_t fixed) { return int32_t(fixed) / 65536.0; }

std::string tagText(uint32_t t) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) text.push_back(char(t >> shift));
  return text;
}

}  // namespace

std::string nameById(const SfntBytes& font, uint16_t nameID) {
  std::optional<TDirectoryEntry> entry = FindSpecifiedTable(font, "name");
  if (!entry || !ValidateDirectoryEntry(&*entry, font)) return {};
  std::vector<uint8_t> scratch;
  BEReader table = font.reader(entry->offset, entry->length, scratch);
  // Header: format, count, stringOffset (from the start of the table); 12-byte records follow.
  table.u16();
  const uint16_t count = table.u16();
  const uint16_t stringOffset = table.u16();
  if (!table.ok() || count > table.remaining() / kNameRecordSize) return {};
  ERecordRank best = kRankNone;
  ByteSpan bestBytes;
  for (uint16_t i = 0; i < count; ++i) {
    const uint16_t platformID = table.u16(), encodingID = table.u16(), languageID = table.u16();
    const uint16_t id = table.u16(), length = table.u16(), offset = table.u16();
    const ERecordRank rank = rankOf(platformID, encodingID, languageID);
    if (id != nameID || rank <= best) continue;
    BEReader text = table.at(size_t(stringOffset) + offset, length);
    if (!text.ok()) continue;
    best = rank;
    bestBytes = text.whole();
  }
  if (best == kRankNone) return {};
  const TextEncoding encoding = best == kRankMacRoman ? TextEncoding::MacRoman : TextEncoding::UTF16BE;
  return decodeToUTF8(bestBytes, encoding).value_or("");
}

bool readVariations(const SfntBytes& font, TFormatFace& face) {
  std::optional<TDirectoryEntry> entry = FindSpecifiedTable(font, "fvar");
  if (!entry || !ValidateDirectoryEntry(&*entry, font)) return false;
  std::vector<uint8_t> scratch;
  BEReader fvar = font.reader(entry->offset, entry->length, scratch);
  // Header: majorVersion, minorVersion, axesArrayOffset (from the table start), reserved,
  // axisCount, axisSize, instanceCount, instanceSize. Instances follow the axes.
  const uint16_t major = fvar.u16();
  fvar.u16();
  const uint16_t axesArrayOffset = fvar.u16();
  fvar.u16();
  const uint16_t axisCount = fvar.u16(), axisSize = fvar.u16();
  const uint16_t instanceCount = fvar.u16(), instanceSize = fvar.u16();
  const size_t coordinatesSize = size_t(axisCount) * 4;
  if (!fvar.ok() || major != 1 || axisSize < kAxisRecordSize || axesArrayOffset < kFvarHeaderSize ||
      instanceSize < coordinatesSize + 4)
    return false;
  BEReader axes = fvar.from(axesArrayOffset);
  if (axisCount > axes.remaining() / axisSize) return false;
  std::vector<TAxis> axisList;
  for (uint16_t i = 0; i < axisCount; ++i) {
    // Axis record: axisTag, minValue, defaultValue, maxValue (16.16), flags, axisNameID.
    BEReader record = axes.at(size_t(i) * axisSize, axisSize);
    TAxis axis;
    axis.tag = tagText(record.u32());
    axis.minimum = fixedToDouble(record.u32());
    axis.defaultValue = fixedToDouble(record.u32());
    axis.maximum = fixedToDouble(record.u32());
    record.u16();
    axis.name = nameById(font, record.u16());
    axisList.push_back(std::move(axis));
  }
  BEReader instances = axes.from(size_t(axisCount) * axisSize);
  if (instanceCount > instances.remaining() / instanceSize) return false;
  const bool hasPostScriptName = instanceSize >= coordinatesSize + 6;
  std::vector<TNamedInstance> instanceList;
  for (uint16_t i = 0; i < instanceCount; ++i) {
    // Instance record: subfamilyNameID, flags, coordinates, then postScriptNameID when the
    // record is long enough to hold it.
    BEReader record = instances.at(size_t(i) * instanceSize, instanceSize);
    TNamedInstance instance;
    instance.subfamilyName = nameById(font, record.u16());
    record.u16();
    for (uint16_t a = 0; a < axisCount; ++a) instance.coordinates.push_back(fixedToDouble(record.u32()));
    const uint16_t postScriptNameID = hasPostScriptName ? record.u16() : kNoPostScriptName;
    if (postScriptNameID != kNoPostScriptName) instance.postScriptName = nameById(font, postScriptNameID);
    instanceList.push_back(std::move(instance));
  }
  face.axes = std::move(axisList);
  face.instances = std::move(instanceList);
  return true;
}

}  // namespace typeprint::formats
