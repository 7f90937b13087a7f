// The per-face work of a PostScript family: names from the printer file and the face checksum
// for every style of the fixture Type 1 suitcase, and reading the printer fonts of a folder, the
// fallback when a computed printer-file name is missing.
#include <benchmark/benchmark.h>

#include <string>

#include "resources/families.h"
#include "resources/printer_font_folder.h"
#include "resources/resource_checksums.h"
#include "resources/resource_file.h"
#include "resources/resource_metadata.h"

namespace {

std::string fixture(const char* relative) {
  std::string here = __FILE__;
  return here.substr(0, here.rfind('/')) + "/../tests/fonts/mac/" + relative;
}

void everyFaceOfTheType1Family(benchmark::State& state) {
  const std::string path = fixture("c-type1-family/appledouble/NimbusSans");
  for (auto _ : state) {
    auto rf = typeprint::ResourceFile::open(path, true);
    typeprint::Resource fond = rf->at(typeprint::kTypeFOND, 1);
    uint32_t sum = 0;
    for (int i = 0; i < typeprint::getCountOfUniqueStyles(fond->data()); ++i) {
      short style = typeprint::getStyleFromStyleIndex(fond->data(), i);
      typeprint::UxString printer, kind, family, psName;
      typeprint::CollectPSMetaDataMac(rf.get(), path, fond, style, &printer, &kind, nullptr, &family, nullptr, &psName,
                                      nullptr, nullptr);
      uint32_t chained = 0;
      sum += typeprint::GetLanternChecksum(path, rf.get(), fond->data(), style, false, chained) +
             uint32_t(psName.size());
    }
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(everyFaceOfTheType1Family);

void folderPrinterFonts(benchmark::State& state, const std::string& folder) {
  for (auto _ : state) benchmark::DoNotOptimize(typeprint::readFolderPrinterFonts(folder).size());
}
BENCHMARK_CAPTURE(folderPrinterFonts, fixture_lwfn_folder, fixture("c-type1-family/appledouble"));
// 22 TrueType files and no printer font: the cost of rejecting a folder's other fonts.
BENCHMARK_CAPTURE(folderPrinterFonts, truetype_folder, std::string("/usr/share/fonts/truetype/dejavu"));

}  // namespace
