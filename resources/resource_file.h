// One open resource-fork font file (a suitcase `FFIL`, a printer font `LWFN`, or a data fork
// holding a resource map such as a `.dfont`): its resources, read in place from the mapped fork,
// the printer fonts of its folder, and the edits that are written back into its container.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/be_reader.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/edit_lock.h"
#include "platform/linux/fork_locator.h"
#include "resources/printer_font_folder.h"
#include "resources/resource_map.h"

namespace typeprint {

constexpr uint32_t kTypeFOND = tag("FOND");
constexpr uint32_t kTypeNFNT = tag("NFNT");
constexpr uint32_t kTypeFONT = tag("FONT");
constexpr uint32_t kTypePOST = tag("POST");
constexpr uint32_t kTypeSfnt = tag("sfnt");

// A resource of an open file: valid while the file is open and the resource not removed.
using Resource = const ResourceEntry*;

// Why a file could not be opened as a resource file.
enum class ResourceOpenFailure { None, Unreadable, NoResourceMap, BeingEdited };

class ResourceFile final {
 public:
  // Opens the resource map of `path`: the resource fork, or else the data fork. Null when
  // neither holds a usable map. A file opened for writing is locked against other edits (see
  // EditLock) until the object is destroyed, and a file already locked is refused.
  static std::unique_ptr<ResourceFile> open(const std::string& path, bool readOnly,
                                            ResourceOpenFailure* failure = nullptr);
  // The same over forks the caller has already opened, so a file is mapped only once.
  static std::unique_ptr<ResourceFile> open(const std::string& path, const FileForks& forks, bool readOnly);
  // Writes changes back when the file was opened for writing and no write of them has failed yet
  // (a failed write abandons the edit: it is never applied later).
  ~ResourceFile();
  ResourceFile(const ResourceFile&) = delete;
  ResourceFile& operator=(const ResourceFile&) = delete;

  const std::string& path() const { return path_; }
  bool isDataFork() const { return isDataFork_; }
  bool isReadOnly() const { return readOnly_; }
  // Where the forks were found and what the Finder would show for the file.
  const FileForks& forks() const { return forks_; }

  int countTypes() const { return map_->countTypes(); }
  // Type `index` (from 1, in map order); 0 when out of range.
  uint32_t typeAt(int index) const { return map_->typeAt(index); }
  int count(uint32_t type) const { return map_->count(type); }
  // Resource `index` (from 1, in map order) of a type; null when out of range.
  Resource at(uint32_t type, int index) const { return map_->indexed(type, index); }
  // The first resource of a type with this ID; null when there is none.
  Resource find(uint32_t type, int16_t id) const { return map_->find(type, id); }
  // The IDs of a type, ascending and duplicate-free.
  std::vector<int16_t> sortedIDs(uint32_t type) const;

  bool hasFamilies() const { return count(kTypeFOND) > 0; }
  bool hasPrinterResources() const { return count(kTypePOST) > 0; }
  bool hasBitmapFonts() const { return count(kTypeNFNT) > 0; }
  // A printer-font file: its header begins in POST 501.
  bool isPrinterFont() const;
  // The first outline resource is a Type 1 font ("typ1").
  bool hasType1Outline() const;

  // The PostScript names of the printer-font files in this file's folder, read once on first
  // use; they answer which file holds the outline of a name.
  const std::vector<FolderPrinterFont>& folderPrinterFonts();
  // Cache of PostScript name to printer-file name, filled by the family readers.
  std::map<std::string, std::string>& printerFileCache() { return printerFileCache_; }

  // Edits of the map in memory, written by update() or on closing. Each is false for a resource
  // that is not this file's.
  bool replaceData(Resource resource, std::vector<uint8_t> bytes) { return map_->setData(resource, std::move(bytes)); }
  // New ID, and a new name unless `name` is null.
  bool setInfo(Resource resource, int16_t id, const std::string* name) { return map_->setInfo(resource, id, name); }
  // The resource is gone from the map, and the pointer with it.
  bool remove(Resource resource) { return map_->remove(resource); }
  Resource add(uint32_t type, int16_t id, const std::string* name, std::vector<uint8_t> bytes) {
    return map_->add(type, id, name, std::move(bytes));
  }

  // Writes a changed map back into the container it came from. True when nothing needed
  // writing or the write succeeded; false for a read-only file or a failed write, which leaves
  // the file on disk as it was; lastWrite() then says why.
  bool update();
  const WriteResult& lastWrite() const { return lastWrite_; }

 private:
  ResourceFile(const std::string& path, bool readOnly, const FileForks& forks);

  std::string path_;
  bool readOnly_ = true;
  bool isDataFork_ = false;
  std::optional<std::vector<FolderPrinterFont>> folderPrinterFonts_;
  std::map<std::string, std::string> printerFileCache_;
  std::optional<EditLock> editLock_;
  bool editAbandoned_ = false;
  WriteResult lastWrite_;
  FileForks forks_;
  std::optional<ResourceMap> map_;
};

}  // namespace typeprint
