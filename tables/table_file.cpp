#include "tables/table_file.h"

#include "platform/linux/data_location.h"
#include "platform/linux/mapped_file.h"
#include "platform/linux/plist_io.h"

namespace typeprint {

std::optional<PlistValue> readTableFile(const std::string& path) {
  if (path.empty()) return std::nullopt;
  std::shared_ptr<const MappedFile> file = MappedFile::open(path);
  if (!file || file->bytes().empty()) return std::nullopt;
  return parsePropertyList(file->bytes());
}

std::optional<PlistValue> readInstalledTableFile(const std::string& name) {
  return readTableFile(libraryDataFile(name));
}

}  // namespace typeprint
