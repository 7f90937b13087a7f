#include "resources/families.h"

#include <set>
#include <string>

#include "resources/fond.h"
#include "resources/resource_file.h"

namespace typeprint {
namespace {

constexpr uint32_t kTrueTypeVersion = 0x00010000;
constexpr uint32_t kTrueTag = tag("true");
constexpr uint32_t kOTTOTag = tag("OTTO");
constexpr uint32_t kTyp1Tag = tag("typ1");
// An outline resource this short cannot tell Mac Japanese from Mac Roman.
constexpr size_t kUndecidedOutlineSize = 4;

std::vector<int16_t> sorted(const std::set<int16_t>& values) { return {values.begin(), values.end()}; }

// The family resource's name as stored (Mac-encoded bytes); empty when it has none.
std::string rawResourceName(Resource fond) { return fond && fond->hasName ? fond->name : std::string(); }

bool startsWith(const std::string& s, const char* prefix) { return s.rfind(prefix, 0) == 0; }

bool endsWith(const std::string& s, const std::string& suffix) {
  return s.size() >= suffix.size() && s.compare(s.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// Families whose names mark them as CID-keyed keep outline resources that begin with "true"
// without being TrueType.
bool hasCIDFamilyName(const std::string& name) { return startsWith(name, "A-CID") || endsWith(name, "CID-B"); }

// First four bytes of the face's first outline resource; nothing when there is none.
std::optional<uint32_t> firstOutlineTag(const ResourceFile& rf, Resource fond, short style) {
  int16_t id = getFirstResourceIDForStyle(dataOf(fond), style);
  if (id == -1) return std::nullopt;
  BEReader r(dataOf(rf.find(kTypeSfnt, id)));
  uint32_t first = r.u32();
  if (!r.ok()) return std::nullopt;
  return first;
}

// The encoding of a double-byte family's name, decided from its faces. The test looks at the
// first entry's point size every time, whichever entry the walk is on.
TextEncoding doubleByteNameEncoding(const ResourceFile& rf, ByteSpan fond, const std::string& name) {
  const bool fallback = fondStyleTableOffset(fond) != 0;
  const auto decided = [&](bool japanese) { return japanese ? TextEncoding::MacJapanese : TextEncoding::MacRoman; };
  std::vector<FondEntry> entries = fondEntries(fond);
  if (entries.empty()) return decided(fallback);
  const bool firstIsOutline = entries.front().isOutline();
  for (const FondEntry& entry : entries) {
    if (firstIsOutline) {
      Resource sfnt = rf.find(kTypeSfnt, entry.resID);
      if (!sfnt) return TextEncoding::MacRoman;
      BEReader r(sfnt->data());
      bool undecided = r.size() <= kUndecidedOutlineSize;
      bool japanese = r.u32() == kTyp1Tag || hasCIDFamilyName(name);
      if (undecided) return decided(fallback);
      return decided(japanese);
    }
    if (rf.find(kTypeFONT, entry.resID)) return TextEncoding::MacRoman;
  }
  return decided(fallback);
}

}  // namespace

UxString getResourceNameFromFOND(const ResourceFile& rf, Resource fond) {
  std::string name = rawResourceName(fond);
  ByteSpan bytes(reinterpret_cast<const uint8_t*>(name.data()), name.size());
  TextEncoding encoding = TextEncoding::MacRoman;
  if (fondIsDoubleByte(dataOf(fond))) encoding = doubleByteNameEncoding(rf, fond->data(), name);
  UxString decoded;
  // A name that is not valid Mac Japanese is read as Mac Roman, which decodes every byte.
  if (!decoded.Set(bytes, encoding)) decoded.Set(bytes, TextEncoding::MacRoman);
  return decoded;
}

std::vector<int16_t> getSortedStylesForFOND(ByteSpan fond) {
  std::set<int16_t> styles;
  for (const FondEntry& entry : fondEntries(fond)) styles.insert(int16_t(entry.style));
  return sorted(styles);
}

std::vector<int16_t> getSortedNFNTsForFOND(ByteSpan fond, int16_t style) {
  std::set<int16_t> ids;
  for (const FondEntry& entry : fondEntries(fond))
    if (entry.style == uint16_t(style)) ids.insert(entry.resID);
  return sorted(ids);
}

bool styleExists(int16_t style, ByteSpan fond) {
  for (const FondEntry& entry : fondEntries(fond))
    if (entry.style == uint16_t(style)) return true;
  return false;
}

int getResIDForFOND(ByteSpan fond, int index) {
  FondEntry entry;
  if (index < 0 || !fondEntryAt(fond, size_t(index), &entry)) return -1;
  return uint16_t(entry.resID);
}

bool shouldHavePrinterFile(ByteSpan fond, int16_t style) {
  for (const FondEntry& entry : fondEntries(fond))
    if (entry.style == uint16_t(style) && entry.isOutline()) return false;
  return true;
}

// The k-th family (from 0, ascending IDs) is read only when 60 + 6k bytes fit in it: an odd
// bound, kept for the answers it gives. Entries past the data are skipped all the same.
std::vector<int16_t> getSortedStyles(const ResourceFile& rf) {
  std::set<int16_t> styles;
  size_t k = 0;
  for (int16_t id : rf.sortedIDs(kTypeFOND)) {
    ByteSpan bytes = dataOf(rf.find(kTypeFOND, id));
    if (fondClaimedEntryCount(bytes) > 0 && fondEntryPresent(bytes, k))
      for (const FondEntry& entry : fondEntries(bytes)) styles.insert(int16_t(entry.style));
    ++k;
  }
  return sorted(styles);
}

short getCountOfUniqueStyles(ByteSpan fond) { return short(getSortedStylesForFOND(fond).size()); }

short getStyleFromStyleIndex(ByteSpan fond, int i) {
  if (i < 0) return -1;
  std::vector<int16_t> styles = getSortedStylesForFOND(fond);
  return size_t(i) < styles.size() ? styles[size_t(i)] : -1;
}

int16_t getFirstResourceIDForStyle(ByteSpan fond, short style) {
  for (const FondEntry& entry : fondEntries(fond))
    if (entry.style == uint16_t(style)) return entry.resID;
  return -1;
}

std::vector<int16_t> getSortedResIDsForStyle(ByteSpan fond, short style) {
  if (style != -1) return getSortedNFNTsForFOND(fond, style);
  std::set<int16_t> ids;
  for (const FondEntry& entry : fondEntries(fond)) ids.insert(entry.resID);
  return sorted(ids);
}

bool has_ttc_true_Flag(const ResourceFile& rf, Resource fond, short style) {
  std::optional<uint32_t> first = firstOutlineTag(rf, fond, style);
  if (!first) return false;
  return *first == kTrueTypeVersion || (*first == kTrueTag && !hasCIDFamilyName(rawResourceName(fond)));
}

bool has_OTTO_Flag_inResource(const ResourceFile& rf, Resource fond, short style) {
  std::optional<uint32_t> first = firstOutlineTag(rf, fond, style);
  return first && *first == kOTTOTag;
}

}  // namespace typeprint
