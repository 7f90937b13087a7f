#include "resources/resource_file.h"

#include <atomic>
#include <cerrno>
#include <set>

#include "foundation/file_location.h"
#include "platform/linux/fork_writer.h"

namespace typeprint {
namespace {

constexpr int16_t kNotOpen = -1;
constexpr int16_t kPrinterFontFirstPOST = 501;
constexpr uint32_t kTyp1 = tag("typ1");

std::atomic<int16_t> gLastRefNum{0};  // files may be opened on several threads at once

// Reference numbers given to open maps: 1 and up, as the system's own file is 0.
int16_t nextRefNum() {
  int16_t last = gLastRefNum.load();
  int16_t next;
  do {
    next = last == INT16_MAX ? 1 : int16_t(last + 1);
  } while (!gLastRefNum.compare_exchange_weak(last, next));
  return next;
}

TypeprintResourceFile* asFile(void* rf) { return static_cast<TypeprintResourceFile*>(rf); }

}  // namespace

TypeprintResourceFile::TypeprintResourceFile(const std::string& path, bool readOnly)
    : qsFile_(path), qsReadOnly_(readOnly) {}

std::unique_ptr<TypeprintResourceFile> TypeprintResourceFile::initWithFile(const std::string& path, bool readOnly,
                                                                          ResourceOpenFailure* failure) {
  ResourceOpenFailure ignored;
  ResourceOpenFailure& why = failure ? *failure : ignored;
  // The lock comes first, so that what is read is what the edit's write replaces.
  std::optional<EditLock> lock;
  if (!readOnly) {
    LockOutcome outcome;
    lock = EditLock::acquire(path, &outcome);
    if (!lock) {
      why = outcome == LockOutcome::HeldElsewhere ? ResourceOpenFailure::BeingEdited : ResourceOpenFailure::Unreadable;
      return nullptr;
    }
  }
  std::optional<FileForks> forks = openForks(path);
  if (!forks) {
    why = ResourceOpenFailure::Unreadable;
    return nullptr;
  }
  auto rf = initWithForks(path, *forks, readOnly);
  why = rf ? ResourceOpenFailure::None : ResourceOpenFailure::NoResourceMap;
  if (rf) rf->editLock_ = std::move(lock);
  return rf;
}

std::unique_ptr<TypeprintResourceFile> TypeprintResourceFile::initWithForks(const std::string& path,
                                                                          const FileForks& forks, bool readOnly) {
  std::unique_ptr<TypeprintResourceFile> rf(new TypeprintResourceFile(path, readOnly));
  rf->forks_ = forks;
  rf->qsRefNum_ = rf->openFileForResourceAccess();
  if (rf->qsRefNum_ == kNotOpen) return nullptr;
  return rf;
}

// The resource fork's map first; when there is none (no fork, or no usable map in it), the
// data fork read as a map, as a `.dfont` is. isDataFork is set whenever the data fork was tried.
int16_t TypeprintResourceFile::openFileForResourceAccess() {
  map_ = ResourceMap::read(forks_.resourceFork);
  if (!map_) {
    qsIsDataFork_ = true;
    map_ = ResourceMap::read(forks_.dataFork);
  }
  return map_ ? nextRefNum() : kNotOpen;
}

TypeprintResourceFile::~TypeprintResourceFile() {
  deactivate();
  // A file whose map could not be read has nothing to write.
  if (!qsReadOnly_ && map_ && !editAbandoned_) updateResFile();
  for (auto& [entry, h] : handles_) {
    SetHandleOwner(h, nullptr);
    DisposeHandle(h);
  }
}

int TypeprintResourceFile::count1ResTypes() const { return map_->countTypes(); }

int TypeprintResourceFile::countResType(uint32_t type) const { return map_->count(type); }

Handle TypeprintResourceFile::getResourceHandleViaGet1IndResource(uint32_t type, int index) {
  return handleFor(map_->indexed(type, index));
}

Handle TypeprintResourceFile::getResourceHandleForType(uint32_t type, int16_t resID) {
  return handleFor(map_->find(type, resID));
}

void TypeprintResourceFile::getResourceTypeViaGet1IndType(uint32_t* type, int index) const {
  if (type) *type = map_->typeAt(index);
}

std::vector<int16_t> TypeprintResourceFile::getSortedResIDsForType(uint32_t type) const {
  std::set<int16_t> ids;
  int n = map_->count(type);
  for (int i = 1; i <= n; ++i) ids.insert(map_->indexed(type, i)->id);
  return {ids.begin(), ids.end()};
}

void TypeprintResourceFile::activate() {
  if (activatedFonts_) return;
  activatedFonts_ = readFolderPrinterFonts(UxFileSystemParser::GetPathDeletingLastPathComponent(qsFile_));
}

void TypeprintResourceFile::deactivate() { activatedFonts_.reset(); }

const std::vector<FolderPrinterFont>& TypeprintResourceFile::activatedFonts() const {
  static const std::vector<FolderPrinterFont> kNone;
  return activatedFonts_ ? *activatedFonts_ : kNone;
}

// One handle per resource: asking again for the same resource gives the same handle.
Handle TypeprintResourceFile::handleFor(ResourceEntry* entry) {
  if (!entry) return nullptr;
  auto found = handles_.find(entry);
  if (found != handles_.end()) return found->second;
  Handle h = NewHandleFromBytes(entry->data());
  SetHandleOwner(h, this);
  handles_[entry] = h;
  entries_[h] = entry;
  return h;
}

ResourceEntry* TypeprintResourceFile::entryFor(Handle h) const {
  auto found = entries_.find(h);
  return found == entries_.end() ? nullptr : found->second;
}

void TypeprintResourceFile::forget(Handle h) {
  auto found = entries_.find(h);
  if (found == entries_.end()) return;
  handles_.erase(found->second);
  entries_.erase(found);
  SetHandleOwner(h, nullptr);
}

void TypeprintResourceFile::handleDisposed(Handle h) { forget(h); }

TypeprintResourceFile* TypeprintResourceFile::ownerOf(Handle h) {
  return static_cast<TypeprintResourceFile*>(GetHandleOwner(h));
}

bool TypeprintResourceFile::getResInfo(Handle h, int16_t* id, uint32_t* type, std::string* name) const {
  const ResourceEntry* entry = entryFor(h);
  if (!entry) return false;
  if (id) *id = entry->id;
  if (type) *type = entry->type;
  if (name) *name = entry->hasName ? entry->name : std::string();
  return true;
}

bool TypeprintResourceFile::changedResource(Handle h) {
  ResourceEntry* entry = entryFor(h);
  if (!entry) return false;
  entry->attributes |= kResChanged;
  map_->setData(entry, std::vector<uint8_t>(HandleBytes(h).begin(), HandleBytes(h).end()));
  return true;
}

bool TypeprintResourceFile::removeResource(Handle h) {
  ResourceEntry* entry = entryFor(h);
  if (!entry) return false;
  forget(h);
  return map_->remove(entry);
}

bool TypeprintResourceFile::setResInfo(Handle h, int16_t id, const std::string* name) {
  ResourceEntry* entry = entryFor(h);
  if (!entry) return false;
  map_->setInfo(entry, id, name);
  return true;
}

bool TypeprintResourceFile::detachResource(Handle h) {
  if (!entryFor(h)) return false;
  forget(h);
  return true;
}

bool TypeprintResourceFile::addResource(Handle h, uint32_t type, int16_t id, const std::string* name) {
  if (!h || GetHandleOwner(h)) return false;
  ResourceEntry* entry = map_->add(type, id, name, std::vector<uint8_t>(HandleBytes(h).begin(), HandleBytes(h).end()));
  SetHandleOwner(h, this);
  handles_[entry] = h;
  entries_[h] = entry;
  return true;
}

void TypeprintResourceFile::releaseResource(Handle) const {}

bool TypeprintResourceFile::updateResFile() {
  if (!map_->changed()) return true;
  if (qsReadOnly_) return false;
  // Handles marked changed may have been edited further since.
  for (auto& [h, entry] : entries_)
    if (entry->attributes & kResChanged) map_->setData(entry, std::vector<uint8_t>(HandleBytes(h).begin(), HandleBytes(h).end()));
  auto fork = map_->write();
  lastWrite_ = fork ? writeForkBack(forks_, qsIsDataFork_ ? ForkKind::Data : ForkKind::Resource, *fork)
                    : WriteResult{WriteStep::Open, EFBIG};
  // Only a failure of the folder flush comes after the new file is in place.
  if (!lastWrite_ && lastWrite_.failedAt != WriteStep::SyncFolder) {
    editAbandoned_ = true;
    return false;
  }
  map_->clearChanged();
  return bool(lastWrite_);
}

void* AllocateResourceFile(const char* path, bool readOnly) {
  if (!path) return nullptr;
  return TypeprintResourceFile::initWithFile(path, readOnly).release();
}

void* AllocateResourceFileFromForks(const char* path, const FileForks& forks, bool readOnly) {
  if (!path) return nullptr;
  return TypeprintResourceFile::initWithForks(path, forks, readOnly).release();
}

void FreeResourceFile(void* rf) { delete asFile(rf); }

int countResType(void* rf, uint32_t type) { return rf ? asFile(rf)->countResType(type) : 0; }

Handle getHandleOfTypeAndIndex(void* rf, uint32_t type, int index) {
  return rf ? asFile(rf)->getResourceHandleViaGet1IndResource(type, index) : nullptr;
}

Handle getHandleOfTypeAndResID(void* rf, uint32_t type, int16_t id) {
  return rf ? asFile(rf)->getResourceHandleForType(type, id) : nullptr;
}

bool FileHasFONDsInResourceFork(void* rf) { return countResType(rf, kTypeFOND) > 0; }
bool FileHasPOSTsInResourceFork(void* rf) { return countResType(rf, kTypePOST) > 0; }
bool is_psfont(void* rf) { return countResType(rf, kTypeNFNT) > 0; }

bool is_psprinterfont(void* rf) {
  Handle h = getHandleOfTypeAndResID(rf, kTypePOST, kPrinterFontFirstPOST);
  ReleaseResource(h);
  return h != nullptr;
}

bool hasValidResourcePSHeader(void* rf) {
  Handle h = getHandleOfTypeAndIndex(rf, kTypeSfnt, 1);
  BEReader r(HandleBytes(h));
  bool typ1 = r.u32() == kTyp1 && r.ok();
  ReleaseResource(h);
  return typ1;
}

void ReleaseResource(Handle h) {
  if (TypeprintResourceFile* rf = TypeprintResourceFile::ownerOf(h)) rf->releaseResource(h);
}

bool GetResInfo(Handle h, int16_t* id, uint32_t* type, std::string* name) {
  TypeprintResourceFile* rf = TypeprintResourceFile::ownerOf(h);
  return rf && rf->getResInfo(h, id, type, name);
}

bool ChangedResource(Handle h) {
  TypeprintResourceFile* rf = TypeprintResourceFile::ownerOf(h);
  return rf && rf->changedResource(h);
}

bool RemoveResource(Handle h) {
  TypeprintResourceFile* rf = TypeprintResourceFile::ownerOf(h);
  return rf && rf->removeResource(h);
}

bool SetResInfo(Handle h, int16_t id, const std::string* name) {
  TypeprintResourceFile* rf = TypeprintResourceFile::ownerOf(h);
  return rf && rf->setResInfo(h, id, name);
}

bool DetachResource(Handle h) {
  TypeprintResourceFile* rf = TypeprintResourceFile::ownerOf(h);
  return rf && rf->detachResource(h);
}

}  // namespace typeprint
