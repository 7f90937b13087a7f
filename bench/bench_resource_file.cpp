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
    auto file = typeprint::ResourceFile::open(path, true);
    if (!file) {
      if (hasMap) state.SkipWithError("fixture not readable");
      continue;
    }
    size_t bytes = 0;
    for (int t = 1; t <= file->countTypes(); ++t) {
      const uint32_t type = file->typeAt(t);
      for (int i = 1; i <= file->count(type); ++i) bytes += file->at(type, i)->data().size;
    }
    benchmark::DoNotOptimize(bytes);
  }
}

BENCHMARK_CAPTURE(openAndWalk, macbinary_lwfn, "d-t1mac-lwfn/macbinary/C059Rom", true);
BENCHMARK_CAPTURE(openAndWalk, appledouble_suitcase, "b-suitcase-truetype/appledouble/DejaVuSans", true);
BENCHMARK_CAPTURE(openAndWalk, dfont, "a-dfont/DejaVuSans.dfont", true);
BENCHMARK_CAPTURE(openAndWalk, plain_ttf_no_map, "e-sfnt/DejaVuSans-kern.ttf", false);

}  // namespace
