#include "formats/archive_specifier.h"

#include "api/create_specifier.h"
#include "formats/binhex.h"
#include "platform/linux/mapped_file.h"

namespace typeprint::formats {

std::unique_ptr<TP_FontArray> createSpecifiersFromBinHex(const std::string& path, uint32_t mask) {
  std::shared_ptr<const MappedFile> mapped = MappedFile::open(path);
  TMacFile file;
  if (!mapped || decodeBinHex(mapped->bytes(), file) != EDecodeStatus::kDecoded) return nullptr;
  auto array = std::make_unique<TP_FontArray>();
  if (!createSpecifiersFromForks(path.c_str(), forksOf(file), mask, *array)) return nullptr;
  return array;
}

}  // namespace typeprint::formats
