// Opening a resource-fork font file (fork location, container detection, map reading) and
// walking every resource through handles, for the container forms fonts arrive in.
#include <benchmark/benchmark.h>

#include <string>

#include "resources/resource_file.h"
#include "resources/resource_map.h"

namespace {

std::string fixture(const char* relative) {
  std::string here = __FILE__;
  return here.substr(0, here.rfind('/')) + "/../tests/fonts/mac/" + relative;
}

void openAndWalk(benchmark::State& state, const char* relative, bool hasMap) {
  const std::string path = fixture(relative);
  for (auto _ : state) {
    void* rf = typeprint::AllocateResourceFile(path.c_str(), true);
    if (!rf) {
      if (hasMap) state.SkipWithError("fixture not readable");
      continue;
    }
    auto* file = static_cast<typeprint::TypeprintResourceFile*>(rf);
    size_t bytes = 0;
    for (int t = 1; t <= file->count1ResTypes(); ++t) {
      uint32_t type = 0;
      file->getResourceTypeViaGet1IndType(&type, t);
      for (int i = 1; i <= typeprint::countResType(rf, type); ++i)
        bytes += typeprint::GetHandleSize(typeprint::getHandleOfTypeAndIndex(rf, type, i));
    }
    benchmark::DoNotOptimize(bytes);
    typeprint::FreeResourceFile(rf);
  }
}

BENCHMARK_CAPTURE(openAndWalk, macbinary_lwfn, "d-t1mac-lwfn/macbinary/C059Rom", true);
BENCHMARK_CAPTURE(openAndWalk, appledouble_suitcase, "b-suitcase-truetype/appledouble/DejaVuSans", true);
BENCHMARK_CAPTURE(openAndWalk, dfont, "a-dfont/DejaVuSans.dfont", true);
BENCHMARK_CAPTURE(openAndWalk, plain_ttf_no_map, "e-sfnt/DejaVuSans-kern.ttf", false);

}  // namespace
