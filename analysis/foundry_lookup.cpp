#include "analysis/foundry_lookup.h"

#include <atomic>

#include "tables/foundry_table.h"

namespace typeprint {
namespace {

bool askFoundryTable(const UxString& text) {
  return CFoundryNameTable::GetSharedFoundryNameTable().ContainsKnownFoundryName(text, nullptr, nullptr);
}

std::atomic<FoundryNameTest> gFoundryNameTest{askFoundryTable};

}  // namespace

void setFoundryNameTest(FoundryNameTest test) { gFoundryNameTest = test ? test : askFoundryTable; }

bool containsKnownFoundryName(const UxString& text) { return gFoundryNameTest.load()(text); }

}  // namespace typeprint
