// The question the Type 1 header reader asks of the foundry name table: does a text contain a
// known foundry name? The table lives elsewhere; it installs its answer here, and until it does
// no text names a known foundry.
#pragma once

#include "foundation/ux_string.h"

namespace typeprint {

using FoundryNameTest = bool (*)(const UxString& text);

// Installs the test; null restores the default that finds nothing.
void setFoundryNameTest(FoundryNameTest test);

// True when `text` contains a known foundry name.
bool containsKnownFoundryName(const UxString& text);

}  // namespace typeprint
