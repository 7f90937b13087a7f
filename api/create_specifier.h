// Identification of one font file: every face it holds, one record each.
#pragma once

#include <cstdint>

#include "api/font_specifier.h"
#include "platform/linux/fork_locator.h"

namespace typeprint {

// Walks the file at `path` as a collection or as a resource file (plain data-fork fonts
// included), appends one record per accepted face with the attributes of `mask`, and removes
// duplicates. True when at least one face was accepted.
bool createSpecifiers(const char* path, uint32_t mask, TP_FontArray& array);

// The resource-file walk over forks the caller has already opened or decoded (a file unpacked
// from an archive in memory); `path` names the file for its folder and its records.
bool createSpecifiersFromForks(const char* path, const FileForks& forks, uint32_t mask, TP_FontArray& array);

}  // namespace typeprint
