#include "resources/resource_file.h"

#include <cerrno>
#include <set>

#include "base/diagnostics.h"
#include "foundation/file_location.h"
#include "platform/linux/fork_writer.h"

namespace typeprint {
namespace {

constexpr int16_t kPrinterFontFirstPOST = 501;
constexpr uint32_t kTyp1 = tag("typ1");

// Reading the data fork as a map is a probe: most data forks hold no map, so what it refuses is
// kept apart under a topic of its own.
std::optional<ResourceMap> readDataForkMap(ByteSpan dataFork) {
  DiagnosticLog* outer = DiagnosticLog::current();
  if (!outer) return ResourceMap::read(dataFork);
  DiagnosticLog probe;
  std::optional<ResourceMap> map = ResourceMap::read(dataFork);
  outer->adopt(probe, "data fork as resource map");
  return map;
}

}  // namespace

ResourceFile::ResourceFile(const std::string& path, bool readOnly, const FileForks& forks)
    : path_(path), readOnly_(readOnly), forks_(forks) {}

std::unique_ptr<ResourceFile> ResourceFile::open(const std::string& path, bool readOnly,
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
  auto rf = open(path, *forks, readOnly);
  why = rf ? ResourceOpenFailure::None : ResourceOpenFailure::NoResourceMap;
  if (rf) rf->editLock_ = std::move(lock);
  return rf;
}

// The resource fork's map first; when there is none (no fork, or no usable map in it), the
// data fork read as a map, as a `.dfont` is. isDataFork is set whenever the data fork was tried.
std::unique_ptr<ResourceFile> ResourceFile::open(const std::string& path, const FileForks& forks, bool readOnly) {
  std::unique_ptr<ResourceFile> rf(new ResourceFile(path, readOnly, forks));
  if (!rf->forks_.resourceFork.empty()) rf->map_ = ResourceMap::read(rf->forks_.resourceFork);
  if (!rf->map_) {
    rf->isDataFork_ = true;
    rf->map_ = readDataForkMap(rf->forks_.dataFork);
  }
  if (!rf->map_) return nullptr;
  TP_NOTE("resource map", "%zu types in the %s fork", size_t(rf->countTypes()), rf->isDataFork_ ? "data" : "resource");
  return rf;
}

ResourceFile::~ResourceFile() {
  // A file whose map could not be read has nothing to write.
  if (!readOnly_ && map_ && !editAbandoned_) update();
}

std::vector<int16_t> ResourceFile::sortedIDs(uint32_t type) const {
  std::set<int16_t> ids;
  for (int i = 1; i <= count(type); ++i) ids.insert(at(type, i)->id);
  return {ids.begin(), ids.end()};
}

bool ResourceFile::isPrinterFont() const { return find(kTypePOST, kPrinterFontFirstPOST) != nullptr; }

bool ResourceFile::hasType1Outline() const {
  BEReader r(dataOf(at(kTypeSfnt, 1)));
  return r.u32() == kTyp1 && r.ok();
}

const std::vector<FolderPrinterFont>& ResourceFile::folderPrinterFonts() {
  if (!folderPrinterFonts_)
    folderPrinterFonts_ = readFolderPrinterFonts(UxFileSystemParser::GetPathDeletingLastPathComponent(path_));
  return *folderPrinterFonts_;
}

bool ResourceFile::update() {
  if (!map_->changed()) return true;
  if (readOnly_) return false;
  auto fork = map_->write();
  lastWrite_ = fork ? writeForkBack(forks_, isDataFork_ ? ForkKind::Data : ForkKind::Resource, *fork)
                    : WriteResult{WriteStep::Open, EFBIG};
  // Only a failure of the folder flush comes after the new file is in place.
  if (!lastWrite_ && lastWrite_.failedAt != WriteStep::SyncFolder) {
    editAbandoned_ = true;
    return false;
  }
  map_->clearChanged();
  return bool(lastWrite_);
}

}  // namespace typeprint
