// AppleSingle and AppleDouble (versions 1 and 2): a header, a table of entry descriptors and the
// entries. AppleSingle holds a whole Mac file; an AppleDouble header file (`._N`) holds all but
// the data fork, which stays in N.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/be_reader.h"

namespace typeprint {

constexpr uint32_t kAppleSingleMagic = 0x00051600;
constexpr uint32_t kAppleDoubleMagic = 0x00051607;

// Entry IDs used by the library. Entries are found by ID, never by position.
constexpr uint32_t kAppleEntryDataFork = 1;
constexpr uint32_t kAppleEntryResourceFork = 2;
constexpr uint32_t kAppleEntryRealName = 3;
constexpr uint32_t kAppleEntryFinderInfo = 9;

struct AppleEntry {
  uint32_t id = 0;
  ByteSpan bytes;
};

// A parsed AppleSingle/AppleDouble file. It borrows: every span points into the bytes it was read
// from or was given, which must outlive it (it is read, edited and written back in one go).
struct AppleFile {
  uint32_t magic = 0;
  uint32_t version = 0;
  ByteSpan filler;                  // 16 bytes: zero in version 2, a file-system name in version 1
  std::vector<AppleEntry> entries;  // in the order the file stores them

  bool isAppleSingle() const { return magic == kAppleSingleMagic; }
  // The first entry with this ID; nothing when absent.
  const AppleEntry* entry(uint32_t id) const;
  // Replaces the bytes of the entry with this ID, adding the entry when absent. The bytes are
  // borrowed, not copied.
  void setEntry(uint32_t id, ByteSpan bytes);
  // Finder type and creator: the first 8 bytes of the Finder info entry; 0 when absent.
  uint32_t fileType() const;
  uint32_t fileCreator() const;
};

// Reads an AppleSingle or AppleDouble file; nothing when the header is wrong or any entry lies
// outside the file.
std::optional<AppleFile> readAppleFile(ByteSpan file);

// Writes the header, the descriptors and the entries, one after the other in descriptor order.
std::vector<uint8_t> writeAppleFile(const AppleFile& file);

}  // namespace typeprint
