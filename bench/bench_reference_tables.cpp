// Lookups in the shipped foundry and classification tables, as the getters make them once per face.
#include <benchmark/benchmark.h>

#include "tables/classification_table.h"
#include "tables/foundry_table.h"

namespace {

using typeprint::CClassificationMappings;
using typeprint::CFoundryNameTable;
using typeprint::UxString;

// A text that names no foundry walks the whole table (the slowest case); an early entry stops at once.
void BM_FoundryPatternLookup(benchmark::State& state, const char* text) {
  const CFoundryNameTable& table = CFoundryNameTable::GetSharedFoundryNameTable();
  const UxString notice = text;
  for (auto _ : state) {
    UxString foundry;
    benchmark::DoNotOptimize(table.ContainsKnownFoundryName(notice, &foundry, nullptr));
  }
}
BENCHMARK_CAPTURE(BM_FoundryPatternLookup, miss,
                  "Copyright (c) 2011, Somebody Unknown (somebody@example.org), with Reserved Font Name Foo.");
BENCHMARK_CAPTURE(BM_FoundryPatternLookup, early_hit, "DejaVu fonts team");

void BM_ClassificationLookup(benchmark::State& state) {
  const CClassificationMappings& mappings = CClassificationMappings::GetSharedClassificationMappings();
  const UxString family = "DejaVu Sans Mono";
  for (auto _ : state) benchmark::DoNotOptimize(mappings.GetClassNameFromFontFamily(family));
}
BENCHMARK(BM_ClassificationLookup);

void BM_LoadFoundryTable(benchmark::State& state) {
  for (auto _ : state) {
    CFoundryNameTable table;
    benchmark::DoNotOptimize(table.LoadTable());
  }
}
BENCHMARK(BM_LoadFoundryTable);

void BM_LoadClassifications(benchmark::State& state) {
  for (auto _ : state) {
    CClassificationMappings mappings;
    benchmark::DoNotOptimize(mappings.LoadMappings());
  }
}
BENCHMARK(BM_LoadClassifications);

}  // namespace
