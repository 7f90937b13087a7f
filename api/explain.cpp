#include "api/explain.h"

#include <cinttypes>
#include <cstdio>

#include "api/create_specifier.h"
#include "faces/font_data.h"

namespace typeprint {
namespace {

// A file that cannot be read or whose container is damaged says so first of all; a `.dfont` keeps
// its map in its data fork; a resource fork whose map is damaged, a damaged collection, a table
// directory that lists no tables or a damaged family comes before what was tried after it; otherwise the last refusal is the one that ended the walk. The
// probe of a data fork for a resource map refuses every plain font, so it counts only when
// nothing else was refused.
std::optional<DiagnosticEntry> reasonFor(const std::string& path, const DiagnosticLog& log) {
  const DiagnosticEntry* first = log.firstRefusal();
  if (first && (std::string(first->topic) == "file" || std::string(first->topic) == "container")) return *first;
  if (fontTypeFromExtension(path.c_str()) == kExtDfont)
    if (const DiagnosticEntry* map = log.firstRefusal({"data fork as resource map"})) return *map;
  for (const char* topic : {"resource map", "collection", "sfnt directory", "family"})
    if (const DiagnosticEntry* found = log.firstRefusal({topic})) return *found;
  const DiagnosticEntry* probe = nullptr;
  for (auto it = log.entries().rbegin(); it != log.entries().rend(); ++it) {
    if (!it->refusal) continue;
    if (std::string(it->topic) != "data fork as resource map") return *it;
    probe = &*it;
  }
  if (probe) return *probe;
  return DiagnosticEntry{true, "file", "no face was accepted", std::nullopt};
}

template <typename Identify>
Explanation explain(const std::string& path, Identify identify) {
  Explanation result;
  DiagnosticLog log;
  auto faces = std::make_unique<TP_FontArray>();
  if (identify(*faces)) result.faces = std::move(faces);
  else result.refusal = reasonFor(path, log);
  result.trace = log.entries();
  return result;
}

}  // namespace

Explanation explainIdentification(const std::string& path, uint32_t mask) {
  return explain(path, [&](TP_FontArray& faces) { return createSpecifiers(path.c_str(), mask, faces); });
}

Explanation explainIdentification(const std::string& path, const FileForks& forks, uint32_t mask) {
  return explain(path, [&](TP_FontArray& faces) { return createSpecifiersFromForks(path.c_str(), forks, mask, faces); });
}

std::string describe(const DiagnosticEntry& entry) {
  std::string line = std::string(entry.topic) + ": " + entry.text;
  if (entry.refusal && entry.offset) {
    char at[32];
    std::snprintf(at, sizeof at, " (at 0x%" PRIX64 ")", *entry.offset);
    line += at;
  }
  return line;
}

}  // namespace typeprint
