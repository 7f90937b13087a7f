#include "tools/extract_command.h"

#include <cstdio>
#include <filesystem>
#include <set>
#include <sstream>

#include "rescue/extraction.h"
#include "tools/cli_args.h"
#include "tools/face_report.h"
#include "tools/file_walk.h"

namespace typeprint::cli {
namespace {

namespace fs = std::filesystem;
using rescue::PlannedFile;
using rescue::SourcePlan;
using rescue::WriteOutcome;
using rescue::WrittenFile;

struct SourceResult {
  SourcePlan plan;
  WriteOutcome written;
  bool explicitOperand = false;
  std::string failure;  // the plan's or the write's error
  std::string skippedBecause;
};

std::string canonical(const std::string& path) {
  std::error_code error;
  fs::path full = fs::weakly_canonical(path, error);
  return error ? path : full.string();
}

std::string checksumVerdict(const WrittenFile& file) {
  if (!file.checksum) return "not identified";
  std::string text = "checksum " + formatHex(*file.checksum);
  if (file.sourceChecksum)
    text += *file.sourceChecksum == *file.checksum ? ", same as in the source"
                                                   : ", differs from " + formatHex(*file.sourceChecksum) + " in the source";
  if (file.sourceChecksum && *file.sourceChecksum != *file.checksum && !file.planned->sourceChecksumAlsoCovers.empty())
    text += ", which also covers " + file.planned->sourceChecksumAlsoCovers;
  return text;
}

void printText(const std::vector<SourceResult>& results) {
  for (const SourceResult& r : results) {
    if (!r.skippedBecause.empty()) {
      std::printf("%s: skipped, %s\n", r.plan.path.c_str(), r.skippedBecause.c_str());
      continue;
    }
    std::printf("%s (%s)\n", r.plan.path.c_str(), r.plan.layout.container.empty() ? "no resources" : r.plan.layout.describe().c_str());
    for (const WrittenFile& file : r.written.files) {
      const PlannedFile& p = *file.planned;
      std::printf("  wrote %s from %s %d", file.path.c_str(), p.resourceType.c_str(), p.resourceID);
      if (p.fromPath != r.plan.path) std::printf(" of %s (%s)", p.fromPath.c_str(), p.fromLayout.describe().c_str());
      if (p.format == "ttf" || p.format == "otf") std::printf(", %s", checksumVerdict(file).c_str());
      std::printf("\n");
      for (const std::string& note : p.notes) std::printf("    note: %s\n", note.c_str());
    }
    for (const std::string& note : r.plan.notes) std::printf("  note: %s\n", note.c_str());
    if (!r.failure.empty()) std::printf("  failed: %s\n", r.failure.c_str());
  }
}

std::string jsonNotes(const std::vector<std::string>& notes) {
  std::string out = "[";
  for (size_t i = 0; i < notes.size(); ++i) out += (i ? "," : "") + jsonString(notes[i]);
  return out + "]";
}

std::string jsonLayout(const rescue::SourceLayout& layout) {
  return "{\"container\":" + jsonString(layout.container) + ",\"forkFile\":" + jsonString(layout.forkFile) +
         ",\"dataFork\":" + (layout.dataFork ? "true" : "false") + "}";
}

void printJson(const std::vector<SourceResult>& results) {
  std::ostringstream out;
  out << "{\"command\":\"extract\",\"sources\":[";
  for (size_t i = 0; i < results.size(); ++i) {
    const SourceResult& r = results[i];
    const char* status = !r.skippedBecause.empty() ? "skipped" : r.failure.empty() ? "ok" : "failed";
    out << (i ? "," : "") << "{\"path\":" << jsonString(r.plan.path) << ",\"layout\":" << jsonLayout(r.plan.layout)
        << ",\"status\":\"" << status << "\"";
    if (!r.failure.empty()) out << ",\"error\":" << jsonString(r.failure);
    if (!r.skippedBecause.empty()) out << ",\"reason\":" << jsonString(r.skippedBecause);
    out << ",\"notes\":" << jsonNotes(r.plan.notes) << ",\"files\":[";
    for (size_t k = 0; k < r.written.files.size(); ++k) {
      const WrittenFile& file = r.written.files[k];
      const PlannedFile& p = *file.planned;
      out << (k ? "," : "") << "{\"path\":" << jsonString(file.path) << ",\"format\":\"" << p.format
          << "\",\"from\":" << jsonString(p.fromPath) << ",\"layout\":" << jsonLayout(p.fromLayout)
          << ",\"resourceType\":" << jsonString(p.resourceType) << ",\"resourceID\":" << p.resourceID;
      if (p.familyID) out << ",\"familyID\":" << *p.familyID << ",\"style\":" << p.style;
      if (file.checksum) out << ",\"checksum\":" << *file.checksum;
      if (file.sourceChecksum) {
        out << ",\"sourceChecksum\":" << *file.sourceChecksum
            << ",\"checksumMatches\":" << (file.checksum == file.sourceChecksum ? "true" : "false")
            << ",\"sourceChecksumAlsoCovers\":" << jsonString(p.sourceChecksumAlsoCovers);
      }
      out << ",\"notes\":" << jsonNotes(p.notes) << "}";
    }
    out << "]}";
  }
  out << "]}\n";
  std::fputs(out.str().c_str(), stdout);
}

}  // namespace

int extractCommand(const std::vector<std::string>& rawArgs) {
  std::vector<std::string> args;
  for (const std::string& a : rawArgs) args.push_back(a == "-o" ? "--output" : a);
  ParsedArgs parsed = parseArgs(args, {"--output", "--format"}, {"--afm", "--bitmaps", "--pfa", "--force"});
  if (!parsed.error.empty()) return usageError("extract", parsed.error);
  const std::string format = parsed.value("--format", "text");
  if (format != "text" && format != "json") return usageError("extract", "unknown format " + format);
  if (parsed.operands.empty()) return usageError("extract", "no PATH given");
  rescue::ExtractOptions options;
  options.afm = parsed.has("--afm");
  options.bitmaps = parsed.has("--bitmaps");
  options.pfa = parsed.has("--pfa");
  options.force = parsed.has("--force");
  const std::string folder = parsed.value("--output", ".");
  std::error_code error;
  fs::create_directories(folder, error);
  if (error || !fs::is_directory(folder)) return usageError("extract", "cannot make the folder " + folder);

  std::vector<SourceResult> results;
  for (const std::string& operand : parsed.operands) {
    std::vector<std::string> unreadable;
    const bool isFolder = fs::is_directory(operand);
    for (const std::string& path : collectFiles({operand}, &unreadable)) {
      SourceResult r;
      r.plan = rescue::planExtraction(path, options);
      r.explicitOperand = !isFolder;
      if (!r.plan.isMacFont && isFolder) continue;
      results.push_back(std::move(r));
    }
    for (const std::string& path : unreadable) {
      SourceResult r;
      r.plan.path = path;
      r.failure = "cannot read it";
      results.push_back(std::move(r));
    }
  }
  // A printer file read for a suitcase is written with its family's metrics, not again alone.
  std::set<std::string> reached;
  for (const SourceResult& r : results)
    for (const std::string& printer : r.plan.printerFiles) reached.insert(canonical(printer));
  bool failed = false;
  for (SourceResult& r : results) {
    if (r.plan.printerFiles.empty() && reached.count(canonical(r.plan.path)) && r.plan.error.empty()) {
      r.skippedBecause = "its printer font is written with its family";
      continue;
    }
    if (r.failure.empty()) r.failure = r.plan.error;
    if (r.failure.empty()) {
      r.written = rescue::writePlan(r.plan, folder, options.force);
      r.failure = r.written.error;
    }
    failed |= !r.failure.empty();
  }
  if (format == "json")
    printJson(results);
  else
    printText(results);
  return failed ? 1 : 0;
}

}  // namespace typeprint::cli
