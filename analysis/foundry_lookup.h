// The question the Type 1 header reader asks of the foundry name table: does a text contain a
// known foundry name? By default the shared foundry table answers; tests may install their own.
#pragma once

#include "foundation/ux_string.h"

namespace typeprint {

using FoundryNameTest = bool (*)(const UxString& text);

// Installs a test in place of the shared foundry table; null restores the table.
void setFoundryNameTest(FoundryNameTest test);

// True when `text` contains a known foundry name.
bool containsKnownFoundryName(const UxString& text);

}  // namespace typeprint
