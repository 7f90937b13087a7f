#include "resources/resource_file.h"

#include <set>

#include "foundation/file_location.h"
#include "platform/linux/fork_writer.h"

namespace typeprint {
namespace {

constexpr int16_t kPrinterFontFirstPOST = 501;
constexpr uint32_t kTyp1 = tag("typ1");

}  // namespace

ResourceFile::ResourceFile(const std::string& path, bool readOnly, const FileForks& forks)
    : path_(path), readOnly_(readOnly), forks_(forks) {}

std::unique_ptr<ResourceFile> ResourceFile::open(const std::string& path, bool readOnly) {
  std::optional<FileForks> forks = openForks(path);
  if (!forks) return nullptr;
  return open(path, *forks, readOnly);
}

// The resource fork's map first; when there is none (no fork, or no usable map in it), the
// data fork read as a map, as a `.dfont` is. isDataFork is set whenever the data fork was tried.
std::unique_ptr<ResourceFile> ResourceFile::open(const std::string& path, const FileForks& forks,
                                                      bool readOnly) {
  std::unique_ptr<ResourceFile> rf(new ResourceFile(path, readOnly, forks));
  rf->map_ = ResourceMap::read(rf->forks_.resourceFork);
  if (!rf->map_) {
    rf->isDataFork_ = true;
    rf->map_ = ResourceMap::read(rf->forks_.dataFork);
  }
  if (!rf->map_) return nullptr;
  return rf;
}

ResourceFile::~ResourceFile() {
  if (!readOnly_) update();
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
  if (!fork || !writeForkBack(forks_, isDataFork_ ? ForkKind::Data : ForkKind::Resource, *fork)) return false;
  map_->clearChanged();
  return true;
}

}  // namespace typeprint
