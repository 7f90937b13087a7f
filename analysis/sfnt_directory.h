// The sfnt offset table and table directory: finding a table by tag, checking that an entry and
// its table lie inside the font, and the platform word of an sfnt font. The font bytes are either
// one contiguous block (a file, an `sfnt` resource) or a collection face assembled on the fly
// from the collection's own bytes, so that a face is never copied just to be read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/be_reader.h"
#include "foundation/ux_string.h"

namespace typeprint {

class SfntDirectory;

// A font whose bytes are put together from pieces (a rebuilt collection face). `read` returns
// [offset, offset + length) of the font, pointing into the pieces when the range lies in one of
// them and into `scratch` otherwise; the caller has checked that the range lies inside size().
class SfntAssembly {
 public:
  virtual ~SfntAssembly() = default;
  virtual size_t size() const = 0;
  virtual ByteSpan read(size_t offset, size_t length, std::vector<uint8_t>& scratch) const = 0;
  // The word sum of [offset, offset + length) when the assembly already knows it.
  virtual bool knownWordSum(size_t, size_t, uint32_t&) const { return false; }
  // The font's table directory when the assembly has read it already.
  virtual const SfntDirectory* directory() const { return nullptr; }
};

// The bytes of one sfnt font, as every reader of sfnt data sees them.
class SfntBytes {
 public:
  SfntBytes() = default;
  SfntBytes(ByteSpan whole) : whole_(whole), size_(whole.size) {}  // NOLINT: a block is a font
  SfntBytes(const SfntAssembly& assembly)  // NOLINT
      : assembly_(&assembly), directory_(assembly.directory()), size_(assembly.size()) {}
  // The same bytes, with their directory already read: table lookups use it instead of the bytes.
  SfntBytes withDirectory(const SfntDirectory& directory) const {
    SfntBytes font = *this;
    font.directory_ = &directory;
    return font;
  }
  const SfntDirectory* directory() const { return directory_; }

  size_t size() const { return size_; }
  // False for a font without bytes (a null block).
  bool present() const { return assembly_ || whole_.data; }
  // Bytes [offset, offset + length); empty when the range does not lie inside the font.
  ByteSpan read(size_t offset, size_t length, std::vector<uint8_t>& scratch) const;
  // A reader over the same range; a failed reader when the range does not lie inside the font.
  BEReader reader(size_t offset, size_t length, std::vector<uint8_t>& scratch) const;
  // The word sum of a range, when the bytes' owner already knows it.
  bool knownWordSum(size_t offset, size_t length, uint32_t& sum) const {
    return assembly_ && assembly_->knownWordSum(offset, length, sum);
  }

 private:
  ByteSpan whole_;
  const SfntAssembly* assembly_ = nullptr;
  const SfntDirectory* directory_ = nullptr;
  size_t size_ = 0;
};

constexpr size_t kSfntHeaderSize = 12;
constexpr size_t kDirectoryEntrySize = 16;
constexpr uint32_t kSfntVersionTrueType = 0x00010000;
constexpr uint32_t kSfntVersionOTTO = tag("OTTO");

// One 16-byte table directory entry, with where it stands in the font.
struct TDirectoryEntry {
  uint32_t tag = 0;
  uint32_t checkSum = 0;
  uint32_t offset = 0;  // from the start of the font
  uint32_t length = 0;
  size_t entryOffset = 0;
};

// The table directory of one font, read once: the entries in their order, as far as each entry
// ends before the font's last byte. Neither the sfnt version nor the entries' offsets and
// lengths are checked here.
class SfntDirectory {
 public:
  SfntDirectory() = default;
  explicit SfntDirectory(const SfntBytes& font);
  // The first entry whose tag (up to four characters, ending at a zero byte) reads as `tableTag`.
  std::optional<TDirectoryEntry> find(const char* tableTag) const;

 private:
  std::vector<TDirectoryEntry> entries_;
};

// The first directory entry whose tag reads as `tableTag`, from the directory the font carries or
// else from its bytes.
std::optional<TDirectoryEntry> FindSpecifiedTable(const SfntBytes& font, const char* tableTag);

// The entry lies inside the font and so does the table it describes.
bool ValidateDirectoryEntry(const TDirectoryEntry* entry, const SfntBytes& font);

// "crossplatform" when the font carries every table another platform needs intact, else "mac".
// False only when there is no platform output or no font of at least 5 bytes.
bool GetPlatformTTF(const SfntBytes& font, UxString* platform);

}  // namespace typeprint
