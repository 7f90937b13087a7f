// One open resource-fork font file (a suitcase `FFIL`, a printer font `LWFN`, or a data fork
// holding a resource map such as a `.dfont`), and the C-level functions through which the rest
// of the library reaches it as an untyped pointer. Every C-level function tolerates a null object
// and then answers "no resources".
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/be_reader.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/edit_lock.h"
#include "platform/linux/fork_locator.h"
#include "resources/handle.h"
#include "resources/printer_font_folder.h"
#include "resources/resource_map.h"

namespace typeprint {

constexpr uint32_t kTypeFOND = tag("FOND");
constexpr uint32_t kTypeNFNT = tag("NFNT");
constexpr uint32_t kTypeFONT = tag("FONT");
constexpr uint32_t kTypePOST = tag("POST");
constexpr uint32_t kTypeSfnt = tag("sfnt");

// Why a file could not be opened as a resource file.
enum class ResourceOpenFailure { None, Unreadable, NoResourceMap, BeingEdited };

class TypeprintResourceFile final : private HandleOwner {
 public:
  // Opens the resource map of `path`: the resource fork, or else the data fork. Null when
  // neither holds a usable map. A file opened for writing is locked against other edits (see
  // EditLock) until the object is destroyed, and a file already locked is refused.
  static std::unique_ptr<TypeprintResourceFile> initWithFile(const std::string& path, bool readOnly,
                                                            ResourceOpenFailure* failure = nullptr);
  // The same over forks the caller has already opened, so a file is mapped only once.
  static std::unique_ptr<TypeprintResourceFile> initWithForks(const std::string& path, const FileForks& forks,
                                                              bool readOnly);
  // Deactivates, writes changes back when the file was opened for writing and no write of them
  // has failed yet (a failed write abandons the edit: it is never applied later), and frees every
  // handle the file still owns.
  ~TypeprintResourceFile();
  TypeprintResourceFile(const TypeprintResourceFile&) = delete;
  TypeprintResourceFile& operator=(const TypeprintResourceFile&) = delete;

  std::string file() const { return qsFile_; }
  bool isDataFork() const { return qsIsDataFork_; }
  bool isReadOnly() const { return qsReadOnly_; }
  // Where the forks were found and what the Finder would show for the file.
  const FileForks& forks() const { return forks_; }

  int count1ResTypes() const;
  int countResType(uint32_t type) const;
  // Resource `index` (from 1, in map order) of a type; null when out of range.
  Handle getResourceHandleViaGet1IndResource(uint32_t type, int index);
  Handle getResourceHandleForType(uint32_t type, int16_t resID);
  // Type `index` (from 1) into *type; 0 when out of range. Nothing for a null pointer.
  void getResourceTypeViaGet1IndType(uint32_t* type, int index) const;
  // The IDs of a type, ascending and duplicate-free.
  std::vector<int16_t> getSortedResIDsForType(uint32_t type) const;

  // Activation: reads, once, the PostScript names of the printer-font files in this file's
  // folder, which then answer which file holds the outline of a name. Only the first call has
  // an effect until deactivate; the names live as long as the object (or until deactivate).
  void activate();
  void deactivate();
  bool isActivated() const { return activatedFonts_.has_value(); }
  // The printer fonts found by activation; empty when not activated.
  const std::vector<FolderPrinterFont>& activatedFonts() const;
  // Cache of PostScript name to printer-file name, filled by the family readers.
  std::map<std::string, std::string>& printerFileFromPostscriptNameDict() { return qsPrinterFileFromPostscriptNameDict_; }

  // Resource manager operations on handles this file gave out. Each is false for a handle that
  // is not this file's.
  bool getResInfo(Handle h, int16_t* id, uint32_t* type, std::string* name) const;
  // The handle's current bytes are written as the resource's data when the file is updated.
  bool changedResource(Handle h);
  // Removes the resource from the map; the handle becomes the caller's, to DisposeHandle.
  bool removeResource(Handle h);
  // New ID, and a new name unless `name` is null.
  bool setResInfo(Handle h, int16_t id, const std::string* name);
  // The handle stays valid after the file closes and becomes the caller's, to DisposeHandle.
  bool detachResource(Handle h);
  // Makes a free handle a new resource of this file, owned by it.
  bool addResource(Handle h, uint32_t type, int16_t id, const std::string* name);
  // Handles stay valid until the file closes, so releasing one early does nothing.
  void releaseResource(Handle h) const;

  // Writes a changed map back into the container it came from. True when nothing needed
  // writing or the write succeeded; false for a read-only file or a failed write, which leaves
  // the file on disk as it was; lastWrite() then says why.
  bool updateResFile();
  const WriteResult& lastWrite() const { return lastWrite_; }

  // The open file that owns `h`; null for a null or free handle.
  static TypeprintResourceFile* ownerOf(Handle h);

 private:
  TypeprintResourceFile(const std::string& path, bool readOnly);
  int16_t openFileForResourceAccess();
  Handle handleFor(ResourceEntry* entry);
  ResourceEntry* entryFor(Handle h) const;
  void forget(Handle h);
  void handleDisposed(Handle h) override;

  std::string qsFile_;
  int16_t qsRefNum_ = -1;
  bool qsReadOnly_ = true;
  bool qsIsDataFork_ = false;
  std::optional<std::vector<FolderPrinterFont>> activatedFonts_;
  std::map<std::string, std::string> qsPrinterFileFromPostscriptNameDict_;

  std::optional<EditLock> editLock_;
  bool editAbandoned_ = false;
  WriteResult lastWrite_;
  FileForks forks_;
  std::optional<ResourceMap> map_;
  std::unordered_map<const ResourceEntry*, Handle> handles_;
  std::unordered_map<Handle, ResourceEntry*> entries_;
};

// Opens the resource map of the file at `path` (UTF-8); null when it has no usable one. The
// caller frees it with FreeResourceFile.
void* AllocateResourceFile(const char* path, bool readOnly);
// The same over forks already opened for `path`.
void* AllocateResourceFileFromForks(const char* path, const FileForks& forks, bool readOnly);
void FreeResourceFile(void* rf);
int countResType(void* rf, uint32_t type);
// Resource `index` (from 1) of a type, or null. Valid while the file is open.
Handle getHandleOfTypeAndIndex(void* rf, uint32_t type, int index);
Handle getHandleOfTypeAndResID(void* rf, uint32_t type, int16_t id);
bool FileHasFONDsInResourceFork(void* rf);
bool FileHasPOSTsInResourceFork(void* rf);
bool is_psfont(void* rf);
bool is_psprinterfont(void* rf);
bool hasValidResourcePSHeader(void* rf);

// Handle-level resource manager calls: each finds the file that owns the handle and does
// nothing (false) for a null or free handle.
// Gives a handle obtained from a resource file back.
void ReleaseResource(Handle h);
bool GetResInfo(Handle h, int16_t* id, uint32_t* type, std::string* name);
bool ChangedResource(Handle h);
bool RemoveResource(Handle h);
bool SetResInfo(Handle h, int16_t id, const std::string* name);
bool DetachResource(Handle h);

}  // namespace typeprint
