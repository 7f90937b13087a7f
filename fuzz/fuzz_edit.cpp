// Edits arbitrary bytes as a resource-fork font file: opens them for writing, purges or promotes
// families as the edit commands do, writes the file back and reads it again. The first byte picks
// the edit and the style; with its top bit set, the next four bytes give the length of the data
// file and the rest becomes its AppleDouble companion `._font`, so edits of a fork kept beside
// the file are reached too. Files live in a scratch folder, rewritten for every input.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>

#include "resources/family_editing.h"
#include "resources/fond.h"
#include "resources/resource_file.h"

using namespace typeprint;

namespace {

const std::string& scratchFolder() {
  static const std::string folder = [] {
    char pattern[] = "/tmp/fuzz-edit-XXXXXX";
    const char* made = mkdtemp(pattern);
    return std::string(made ? made : "/tmp");
  }();
  return folder;
}

void writeFile(const std::string& path, const uint8_t* data, size_t size) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return;
  std::fwrite(data, 1, size, f);
  std::fclose(f);
}

// The edits the purge and promote commands make on every family.
void edit(ResourceFile& rf, uint8_t selector) {
  const short style = short(selector & 0x07);
  std::set<int16_t> referenced;
  for (int16_t id : rf.sortedIDs(kTypeFOND)) {
    Resource fond = rf.find(kTypeFOND, id);
    switch ((selector >> 3) & 3) {
      case 0: purgeAllButFromFOND(rf, style, fond); break;
      case 1: promoteFOND(rf, fond, style); break;
      case 2: purgeFromFOND(rf, fond, {style}, true); break;
      default: purgeFromFOND(rf, fond, {style, short(style + 1)}, false); promoteFOND(rf, fond, style); break;
    }
    for (const FondEntry& entry : fondEntries(fond->data())) referenced.insert(entry.resID);
  }
  if (selector & 0x20) purgeAllButOfType(rf, referenced, kTypeNFNT);
  if (selector & 0x40) purgeAllButOfType(rf, referenced, kTypeSfnt);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const uint8_t selector = data[0];
  const std::string path = scratchFolder() + "/font", companion = scratchFolder() + "/._font";
  unlink(companion.c_str());
  if (selector & 0x80) {
    if (size < 5) return 0;
    const size_t dataSize = std::min<size_t>(size - 5, uint32_t(data[1]) << 24 | data[2] << 16 | data[3] << 8 | data[4]);
    writeFile(path, data + 5, dataSize);
    writeFile(companion, data + 5 + dataSize, size - 5 - dataSize);
  } else {
    writeFile(path, data + 1, size - 1);
  }
  bool written = false;
  int families = 0;
  {
    auto rf = ResourceFile::open(path, false);
    if (!rf) return 0;
    edit(*rf, selector);
    families = rf->count(kTypeFOND);
    written = rf->update();
  }
  // What was written reads back as a resource file holding the families left.
  if (written) {
    auto again = ResourceFile::open(path, true);
    if (!again || again->count(kTypeFOND) != families) abort();
  }
  return 0;
}
