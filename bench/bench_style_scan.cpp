// Cost of finding the built-in styles of one face from its PostScript and full names over the
// shipped keyword table, the work a font manager does once per face when it lists styles.
#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

#include "style/style_scan.h"

namespace {

const std::pair<const char*, const char*> kNames[] = {
    {"TimesNewRomanPS-BoldItalicMT", "Times New Roman Bold Italic"},
    {"HelveticaNeueLTStd-BdCn", "Helvetica Neue LT Std 77 Bold Condensed"},
    {"AvenirNext-UltraLightItalic", "Avenir Next Ultra Light Italic"},
    {"NotoSans-ExtraCondensedSemiBoldItalic", "Noto Sans ExtraCondensed SemiBold Italic"},
    {"Inconsolata", "Inconsolata"},
};

void BM_ScanFontForBuiltinStyles(benchmark::State& state) {
  typeprint::UxFontStyleScan::Initialize();
  typeprint::UxFontStyleScan scan = typeprint::UxFontStyleScan::shared();
  std::vector<typeprint::SBuiltinStyle> out;
  for (auto _ : state) {
    for (const auto& [first, second] : kNames) benchmark::DoNotOptimize(scan.ScanFontForBuiltinStyles(first, second, out));
  }
  state.SetItemsProcessed(state.iterations() * int64_t(std::size(kNames)));
}
BENCHMARK(BM_ScanFontForBuiltinStyles);

}  // namespace
