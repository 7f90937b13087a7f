// typeprint extract: the fonts inside Mac font files (suitcases, printer fonts, .dfont files, in
// every fork layout) written out as files Linux reads, with a report of what came from where.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>

#include "rescue/extraction.h"
#include "tools/commands/command_list.h"
#include "tools/file_walk.h"
#include "tools/identify_files.h"
#include "tools/json_output.h"

namespace typeprint::cli {
namespace {

namespace fs = std::filesystem;
using rescue::PlannedFile;
using rescue::SourceLayout;
using rescue::SourcePlan;
using rescue::WriteOutcome;
using rescue::WrittenFile;

struct ExtractArgs {
  std::vector<std::string> paths;
  std::string folder = ".";
  std::string format = "text";
  rescue::ExtractOptions options;
  WalkOptions walk;
};

struct SourceResult {
  SourcePlan plan;
  WriteOutcome written;
  std::string failure;         // the plan's, the walk's or the write's error
  std::string skippedBecause;  // a printer file already written with its family
};

std::string canonical(const std::string& path) {
  std::error_code error;
  fs::path full = fs::weakly_canonical(path, error);
  return error ? path : full.string();
}

std::string hex(uint32_t value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", value);
  return text;
}

std::string checksumVerdict(const WrittenFile& file) {
  if (!file.checksum) return "not identified";
  std::string text = "checksum " + hex(*file.checksum);
  if (!file.sourceChecksum) return text;
  if (*file.sourceChecksum == *file.checksum) return text + ", same as in the source";
  text += ", differs from " + hex(*file.sourceChecksum) + " in the source";
  const std::string& covers = file.planned->sourceChecksumAlsoCovers;
  return covers.empty() ? text : text + ", which also covers " + covers;
}

void printText(const std::vector<SourceResult>& results) {
  for (const SourceResult& r : results) {
    if (!r.skippedBecause.empty()) {
      std::printf("%s: skipped, %s\n", r.plan.path.c_str(), r.skippedBecause.c_str());
      continue;
    }
    const std::string layout = r.plan.layout.container.empty() ? "no resources" : r.plan.layout.describe();
    std::printf("%s (%s)\n", r.plan.path.c_str(), layout.c_str());
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

Json layoutJson(const SourceLayout& layout) {
  Json out;
  out["container"] = layout.container;
  putText(out, "forkFile", layout.forkFile);
  out["dataFork"] = layout.dataFork;
  return out;
}

Json writtenJson(const WrittenFile& file) {
  const PlannedFile& p = *file.planned;
  Json out;
  putText(out, "path", file.path);
  out["format"] = p.format;
  putText(out, "from", p.fromPath);
  out["layout"] = layoutJson(p.fromLayout);
  out["resourceType"] = p.resourceType;
  out["resourceID"] = p.resourceID;
  if (p.familyID) {
    out["familyID"] = *p.familyID;
    out["style"] = p.style;
  }
  if (file.checksum) out["checksum"] = hex(*file.checksum);
  if (file.sourceChecksum) {
    out["sourceChecksum"] = hex(*file.sourceChecksum);
    out["checksumMatches"] = file.checksum == file.sourceChecksum;
    out["sourceChecksumAlsoCovers"] = p.sourceChecksumAlsoCovers;
  }
  out["notes"] = p.notes;
  return out;
}

// The schema's document: every source as a file (no faces), the summary, and under "extract"
// each source's layout, notes and written files.
void printJson(const std::vector<SourceResult>& results, double seconds) {
  Json files = Json::array(), extract = Json::array();
  Summary summary;
  summary.seconds = seconds;
  for (const SourceResult& r : results) {
    Json file;
    putText(file, "path", r.plan.path);
    file["status"] = r.failure.empty() ? "ok" : "failed";
    if (!r.failure.empty()) putText(file, "error", r.failure);
    file["faces"] = Json::array();
    files.push_back(std::move(file));
    ++summary.files;
    (r.failure.empty() ? summary.identified : summary.failures) += 1;

    Json source;
    putText(source, "path", r.plan.path);
    source["layout"] = layoutJson(r.plan.layout);
    std::vector<std::string> notes = r.plan.notes;
    if (!r.skippedBecause.empty()) notes.push_back("skipped: " + r.skippedBecause);
    source["notes"] = notes;
    Json written = Json::array();
    for (const WrittenFile& w : r.written.files) written.push_back(writtenJson(w));
    source["written"] = std::move(written);
    extract.push_back(std::move(source));
  }
  Json document;
  document["version"] = kSchemaVersion;
  document["files"] = std::move(files);
  document["summary"] = summaryJson(summary);
  document["extract"] = std::move(extract);
  std::printf("%s\n", jsonText(document).c_str());
}

int runExtract(const ExtractArgs& args) {
  const auto start = std::chrono::steady_clock::now();
  std::error_code error;
  fs::create_directories(args.folder, error);
  if (error || !fs::is_directory(args.folder)) {
    reportProblem(args.folder, error ? error.message() : "not a folder");
    return kExitSomeFileFailed;
  }
  std::vector<SourceResult> results;
  for (const std::string& root : args.paths) {
    const bool isFolder = fs::is_directory(root);
    WalkResult walk = collectFiles({root}, args.walk.follow);
    for (const FileReport& problem : walk.problems) {
      SourceResult r;
      r.plan.path = problem.path;
      r.failure = problem.error;
      results.push_back(std::move(r));
    }
    for (const std::string& path : walk.files) {
      SourceResult r;
      r.plan = rescue::planExtraction(path, args.options);
      // Inside folders, files that are no Mac fonts are passed over.
      if (!r.plan.isMacFont && isFolder) continue;
      results.push_back(std::move(r));
    }
  }
  // A printer file read for a suitcase is written with its family's metrics, not again alone.
  std::set<std::string> reached;
  for (const SourceResult& r : results)
    for (const std::string& printer : r.plan.printerFiles) reached.insert(canonical(printer));
  bool failed = false;
  for (SourceResult& r : results) {
    if (r.failure.empty() && r.plan.error.empty() && r.plan.printerFiles.empty() && reached.count(canonical(r.plan.path))) {
      r.skippedBecause = "its printer font is written with its family";
      continue;
    }
    if (r.failure.empty()) r.failure = r.plan.error;
    if (r.failure.empty()) {
      r.written = rescue::writePlan(r.plan, args.folder, args.options.force);
      r.failure = r.written.error;
    }
    if (!r.failure.empty()) {
      failed = true;
      if (!args.walk.quiet) reportProblem(r.plan.path, r.failure);
    }
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (args.format == "json")
    printJson(results, seconds);
  else
    printText(results);
  return failed ? kExitSomeFileFailed : kExitOk;
}

}  // namespace

Command addExtractCommand(CLI::App& parent) {
  auto args = std::make_shared<ExtractArgs>();
  CLI::App* app = parent.add_subcommand(
      "extract", "write the fonts inside Mac font files as .ttf/.otf, .pfb (.pfa) with .afm, and .bdf files");
  app->add_option("-o,--output", args->folder, "the folder to write to, created when missing (default: .)");
  app->add_flag("--afm", args->options.afm, "write an .afm from the family's widths and kerning beside each printer font");
  app->add_flag("--bitmaps", args->options.bitmaps, "write each bitmap strike as a .bdf file");
  app->add_flag("--pfa", args->options.pfa, "write printer fonts as .pfa instead of .pfb");
  app->add_flag("--force", args->options.force, "replace files that exist already");
  addFormatOption(*app, args->format, {"text", "json"});
  addFollowOption(*app, args->walk);
  addQuietOption(*app, args->walk.quiet);
  app->add_option("PATH", args->paths, "Mac font files, or folders to search")->required();
  return {app, [args] { return runExtract(*args); }};
}

}  // namespace typeprint::cli
