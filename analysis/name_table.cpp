#include "analysis/name_table.h"

#include <algorithm>
#include <vector>

#include "base/diagnostics.h"

namespace typeprint {
namespace {

constexpr const char* kTopic = "name table";

// Naming table: format u16, count s16, stringOffset u16 (from the table's start), then count
// records of 12 bytes: platformID, encodingID, languageID, nameID, length (s16), offset (s16,
// from the start of the string storage).
constexpr size_t kNameHeaderSize = 6;
constexpr size_t kNameRecordSize = 12;
constexpr int kMaxNameLength = 1023;

enum NameSlot { kCopyright, kFamily, kSubfamily, kFullName, kVersion, kPostScript, kManufacturer,
                kPreferredFamily, kPreferredSubfamily, kWindowsFullName, kSlotCount };

// The slot a name ID fills, or kSlotCount for IDs that are skipped.
NameSlot slotForNameID(uint16_t nameID) {
  switch (nameID) {
    case 0: return kCopyright;
    case 1: return kFamily;
    case 2: return kSubfamily;
    case 4: return kFullName;
    case 5: return kVersion;
    case 6: return kPostScript;
    case 8: return kManufacturer;
    case 16: return kPreferredFamily;
    case 17: return kPreferredSubfamily;
    default: return kSlotCount;
  }
}

// The match a record would reach against a slot holding `held`; kNameMatchNone when it would
// not be taken. Mirrors AssignName.
ENameMatch improvedMatch(short platformID, short encodingID, short languageID, ENameMatch held) {
  if (held < kNameMatchMacRoman && platformID == 1 && encodingID == 0 && languageID == 0) return kNameMatchMacRoman;
  if (held < kNameMatchWindowsUS && platformID == 3 && encodingID == 1 && languageID == 0x0409)
    return kNameMatchWindowsUS;
  if (held < kNameMatchWindows && platformID == 3 && encodingID == 1) return kNameMatchWindows;
  if (held == kNameMatchNone) return kNameMatchAny;
  return kNameMatchNone;
}

struct NameRecord {
  short platformID, encodingID, languageID;
  uint16_t nameID;
  int16_t length, offset;
};

struct NameSlots {
  UxString text[kSlotCount];
  ENameMatch match[kSlotCount] = {};

  bool wouldTake(const NameRecord& r, NameSlot slot) const {
    return improvedMatch(r.platformID, r.encodingID, r.languageID, match[slot]) != kNameMatchNone;
  }
  void offer(const NameRecord& r, NameSlot slot, const UxString& value) {
    AssignName(r.platformID, r.encodingID, r.languageID, value, text[slot], match[slot]);
  }
};

// Keeps the bytes 0x20 to 0xFD, tab, line feed and carriage return.
void filterNameBytes(UxString& text) {
  text.erase(std::remove_if(text.begin(), text.end(),
                            [](char c) {
                              uint8_t b = uint8_t(c);
                              return !((b >= 0x20 && b <= 0xFD) || b == 9 || b == 10 || b == 13);
                            }),
             text.end());
}

bool isPlainASCII(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return uint8_t(c) < 0x80; });
}

// UTF-16 big-endian first when the record is double-byte or starts with a zero byte, then
// UTF-8; bytes that decode to nothing give an empty text. A single-byte name ends at its first
// zero byte, as a C string does.
UxString decodeName(const NameRecord& r, ByteSpan bytes) {
  UxString text;
  bool utf16 = IsDoubleBytePlatform(r.platformID, r.encodingID, r.languageID) ||
               (!bytes.empty() && bytes.data[0] == 0);
  if (utf16 && text.Set(bytes, TextEncoding::UTF16BE) && !text.empty()) return text;
  if (!utf16) bytes = bytes.sub(0, size_t(std::find(bytes.begin(), bytes.end(), 0) - bytes.begin()));
  text.clear();
  if (!text.Set(bytes, TextEncoding::UTF8)) text.clear();
  return text;
}

// The string bytes of a record; empty when they start before the table or end past the font.
ByteSpan recordString(const SfntBytes& font, uint32_t tableOffset, uint16_t stringOffset, const NameRecord& r,
                      std::vector<uint8_t>& scratch) {
  int64_t start = int64_t(tableOffset) + stringOffset + r.offset;
  if (start < int64_t(tableOffset)) return {};
  int length = std::min<int>(r.length, kMaxNameLength);
  if (length <= 0) return {};
  if (uint64_t(start) + uint64_t(length) > font.size()) {
    TP_REFUSE(kTopic, uint64_t(start), "name record %d string of %d bytes runs past the font's 0x%zX bytes",
              int(r.nameID), length, font.size());
    return {};
  }
  return font.read(size_t(start), size_t(length), scratch);
}

// Reads every accepted record into the slots; true when one of them gave a non-empty text.
bool readNameRecords(const SfntBytes& font, NameSlots& slots) {
  std::optional<TDirectoryEntry> entry = FindSpecifiedTable(font, "name");
  if (!entry && font.size() < kSfntHeaderSize + kDirectoryEntrySize)
    return TP_REFUSE_WHOLE(kTopic, "a font of %zu bytes is too short for a table directory", font.size());
  if (!entry) return TP_REFUSE_WHOLE(kTopic, "no name table in the table directory");
  if (!ValidateDirectoryEntry(&*entry, font) || entry->offset == 0 || entry->offset >= font.size())
    return TP_REFUSE(kTopic, entry->entryOffset, "name table offset 0x%X, length 0x%X, beyond the font's 0x%zX bytes",
                     entry->offset, entry->length, font.size());
  std::vector<uint8_t> scratch, stringScratch;
  BEReader header = font.reader(entry->offset, kNameHeaderSize, scratch);
  header.skip(2);
  int16_t count = header.s16();
  uint16_t stringOffset = header.u16();
  if (!header.ok()) return TP_REFUSE(kTopic, entry->offset, "name table header cut by the end of the font");
  bool gotName = false;
  for (int i = 0; i < count; ++i) {
    // Records are bounded by the end of the font, not by the table's length.
    uint64_t at = uint64_t(entry->offset) + kNameHeaderSize + kNameRecordSize * uint64_t(i);
    if (at + kNameRecordSize > font.size()) break;
    BEReader rec = font.reader(size_t(at), kNameRecordSize, scratch);
    NameRecord r{rec.s16(), rec.s16(), rec.s16(), rec.u16(), rec.s16(), rec.s16()};
    NameSlot slot = slotForNameID(r.nameID);
    if (slot == kSlotCount) continue;
    bool windowsFull = slot == kFullName && r.platformID == 3;
    // Once a name has been found, a record that no slot would take changes nothing.
    if (gotName && !slots.wouldTake(r, slot) && !(windowsFull && slots.wouldTake(r, kWindowsFullName))) continue;
    UxString text = decodeName(r, recordString(font, entry->offset, stringOffset, r, stringScratch));
    filterNameBytes(text);
    if (text.empty()) continue;
    gotName = true;
    if (slot == kPostScript && !isPlainASCII(text)) continue;
    slots.offer(r, slot, text);
    if (windowsFull) slots.offer(r, kWindowsFullName, text);
  }
  if (!gotName) return TP_REFUSE(kTopic, entry->offset, "none of the %d name records gives a name", std::max<int>(count, 0));
  return true;
}

const UxString& firstNonEmpty(const UxString& a, const UxString& b) { return a.empty() ? b : a; }

}  // namespace

bool IsDoubleBytePlatform(short platformID, short encodingID, short languageID) {
  switch (platformID) {
    case 0: return encodingID >= 1 && encodingID <= 4;
    case 1: return languageID == 11;
    case 3: return encodingID >= 1 && encodingID <= 10;
    case 4: return true;
    default: return false;
  }
}

void AssignName(short platformID, short encodingID, short languageID, const UxString& value, UxString& slot,
                ENameMatch& match) {
  ENameMatch better = improvedMatch(platformID, encodingID, languageID, match);
  if (better == kNameMatchNone) return;
  slot = value;
  match = better;
}

void StripLeadingTrailingSpaces(UxString& text) {
  size_t end = text.find_last_not_of(' ');
  if (end == std::string::npos) {
    text.clear();
    return;
  }
  text.erase(end + 1);
  text.erase(0, text.find_first_not_of(' '));
}

void StripIllegalCharsInPostScriptName(std::string& name) {
  static const std::string kIllegal = " ()/[]{}";
  name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return kIllegal.find(c) != std::string::npos; }),
             name.end());
}

bool getMetaDataFromNamesTable(const SfntBytes& font, UxString* foundry, UxString* family,
                               UxString* version, UxString* postScriptName, UxString* styledName,
                               UxString* fullName, UxString* windowsFullName) {
  NameSlots slots;
  bool gotName = readNameRecords(font, slots);
  for (UxString& text : slots.text) StripLeadingTrailingSpaces(text);
  const UxString* s = slots.text;

  if (foundry) *foundry = firstNonEmpty(s[kManufacturer], s[kCopyright]);
  if (family) *family = firstNonEmpty(s[kPreferredFamily], s[kFamily]);
  if (version) *version = s[kVersion];
  if (postScriptName) {
    std::string name = firstNonEmpty(s[kPostScript], s[kFullName]);
    StripIllegalCharsInPostScriptName(name);
    *postScriptName = name;
  }
  if (styledName) {
    const UxString& f = firstNonEmpty(s[kPreferredFamily], s[kFamily]);
    UxString style = firstNonEmpty(s[kPreferredSubfamily], s[kSubfamily]);
    if (style.empty()) style = "Regular";
    *styledName = f.empty() ? firstNonEmpty(s[kPostScript], s[kFullName]) : UxString(f + " " + style);
  }
  if (fullName) *fullName = firstNonEmpty(s[kFullName], s[kPostScript]);
  if (windowsFullName) *windowsFullName = firstNonEmpty(s[kWindowsFullName], firstNonEmpty(s[kFullName], s[kPostScript]));
  return gotName;
}

void getPostScriptNameFromNamesTable(const SfntBytes& font, std::string& postScriptName) {
  postScriptName.clear();
  UxString name;
  getMetaDataFromNamesTable(font, nullptr, nullptr, nullptr, &name, nullptr, nullptr, nullptr);
  postScriptName = name;
}

}  // namespace typeprint
