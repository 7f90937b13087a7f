// Identification that says why: the faces of a file, or the first reason it gave none, and the
// decisions taken on the way. This is what `typeprint identify --explain` prints and what the
// command's error messages quote; the exported interface is not affected.
//
//   Explanation e = explainIdentification("/fonts/Broken.ttf");
//   if (!e.faces) std::printf("%s\n", describe(*e.refusal).c_str());
//     // "name table: name table offset 0x1234, length 0x40, beyond the font's 0x1000 bytes (at 0xC)"
//   for (const DiagnosticEntry& step : e.trace) std::printf("  %s\n", describe(step).c_str());
//
// Trace topics, in the order they usually appear: "file" (unreadable, or a fork companion),
// "forks" (container and fork sizes), "data fork as resource map" (the probe of a data fork for a
// map; refusals here are normal for plain fonts), "resource map", "kind" (the kind decided and
// from what, or "not a font: first bytes ..."), "collection", "family" (a damaged family
// resource), "sfnt directory", "sfnt table" (a table past the end), "name table", "printer file"
// (which file was looked for, where, and whether it was found), "face" (each face accepted, or
// refused and why).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "api/font_specifier.h"
#include "base/diagnostics.h"
#include "platform/linux/fork_locator.h"
#include "typeprint.h"

namespace typeprint {

struct Explanation {
  std::unique_ptr<TP_FontArray> faces;      // the faces found; null when the file gave none
  std::optional<DiagnosticEntry> refusal;  // when it gave none: why
  std::vector<DiagnosticEntry> trace;      // every decision and refusal, in order
};

// Identifies the file at `path` as TP_CreateSpecifier does, collecting the attributes of `mask`.
Explanation explainIdentification(const std::string& path, uint32_t mask = TP_ATTR_ALL);
// The same over forks already opened or decoded for `path`.
Explanation explainIdentification(const std::string& path, const FileForks& forks, uint32_t mask = TP_ATTR_ALL);

// One entry as a line: "topic: text", with " (at 0x..)" for a refusal at an offset.
std::string describe(const DiagnosticEntry& entry);

}  // namespace typeprint
