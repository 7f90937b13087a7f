#include "analysis/foundry_lookup.h"

namespace typeprint {
namespace {

bool findsNothing(const UxString&) { return false; }

FoundryNameTest gFoundryNameTest = findsNothing;

}  // namespace

void setFoundryNameTest(FoundryNameTest test) { gFoundryNameTest = test ? test : findsNothing; }

bool containsKnownFoundryName(const UxString& text) { return gFoundryNameTest(text); }

}  // namespace typeprint
