// typeprint duplicates: faces that are the same font in several files, and faces that share a
// PostScript name but are different fonts.
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <set>

#include "tools/commands/command_list.h"
#include "tools/data_files.h"
#include "tools/file_walk.h"
#include "tools/identify_files.h"
#include "tools/json_output.h"
#include "tools/text_output.h"

namespace typeprint::cli {
namespace {

struct DuplicatesArgs {
  std::string format;
  WalkOptions walk;
  std::vector<std::string> paths;
};

struct Seen {
  const FileReport* file;
  const FaceReport* face;
};

struct Groups {
  std::map<uint32_t, std::vector<Seen>> sameFont;          // by checksum, in more than one file
  std::map<std::string, std::vector<Seen>> nameConflicts;  // one PostScript name, several checksums
};

Groups findGroups(const std::vector<FileReport>& reports) {
  Groups groups;
  std::map<std::string, std::vector<Seen>> byName;
  for (const FileReport& r : reports) {
    for (const FaceReport& f : r.faces) {
      if (f.checksum) groups.sameFont[*f.checksum].push_back({&r, &f});
      if (f.postScriptName && !f.postScriptName->empty()) byName[*f.postScriptName].push_back({&r, &f});
    }
  }
  for (auto it = groups.sameFont.begin(); it != groups.sameFont.end();) {
    std::set<std::string> paths;
    for (const Seen& s : it->second) paths.insert(s.file->path);
    it = paths.size() < 2 ? groups.sameFont.erase(it) : std::next(it);
  }
  for (auto& [name, faces] : byName) {
    std::set<uint32_t> checksums;
    for (const Seen& s : faces) checksums.insert(s.face->checksum.value_or(0));
    if (checksums.size() > 1) groups.nameConflicts[name] = std::move(faces);
  }
  return groups;
}

Json seenJson(const Seen& s) {
  Json out;
  putText(out, "path", s.file->path);
  out["index"] = s.face->index;
  if (s.face->checksum) out["checksum"] = hex8(*s.face->checksum);
  if (s.face->version) putText(out, "version", *s.face->version);
  return out;
}

void printJson(const std::vector<FileReport>& reports, const Summary& summary, const Groups& groups) {
  Json document = outputDocument(reports, summary);
  Json same = Json::array(), conflicts = Json::array();
  for (const auto& [checksum, faces] : groups.sameFont) {
    Json group;
    group["checksum"] = hex8(checksum);
    group["faces"] = Json::array();
    for (const Seen& s : faces) group["faces"].push_back(seenJson(s));
    same.push_back(std::move(group));
  }
  for (const auto& [name, faces] : groups.nameConflicts) {
    Json group;
    putText(group, "postScriptName", name);
    group["faces"] = Json::array();
    for (const Seen& s : faces) group["faces"].push_back(seenJson(s));
    conflicts.push_back(std::move(group));
  }
  document["duplicates"] = std::move(same);
  document["conflicts"] = std::move(conflicts);
  std::printf("%s\n", jsonText(document).c_str());
}

void printText(const Groups& groups) {
  for (const auto& [checksum, faces] : groups.sameFont) {
    std::printf("same font %s (%s):\n", hex8(checksum).c_str(), faces[0].face->postScriptName.value_or("").c_str());
    for (const Seen& s : faces) std::printf("  %s [face %u]\n", s.file->path.c_str(), s.face->index);
  }
  for (const auto& [name, faces] : groups.nameConflicts) {
    std::printf("conflict %s: same PostScript name, different fonts:\n", name.c_str());
    for (const Seen& s : faces)
      std::printf("  %s [face %u] checksum %s version %s\n", s.file->path.c_str(), s.face->index,
                  hex8(s.face->checksum.value_or(0)).c_str(), s.face->version.value_or("").c_str());
  }
  std::printf("\n%zu duplicate groups, %zu conflicts\n", groups.sameFont.size(), groups.nameConflicts.size());
}

int runDuplicates(const DuplicatesArgs& args) {
  if (!dataFilesFound()) return kExitSomeFileFailed;
  const auto start = std::chrono::steady_clock::now();
  IdentifyOptions options;
  options.progress = true;
  const std::vector<FileReport> reports =
      walkAndIdentify(args.paths.empty() ? defaultFontFolders() : args.paths, args.walk, options);
  const Summary summary =
      summarize(reports, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  const bool failed = reportFailures(reports, false, args.walk.quiet);
  const Groups groups = findGroups(reports);
  if (args.format == "json") {
    printJson(reports, summary, groups);
  } else {
    printText(groups);
    std::fputs(summaryText(summary).c_str(), stderr);
  }
  return failed ? kExitSomeFileFailed : kExitOk;
}

}  // namespace

Command addDuplicatesCommand(CLI::App& parent) {
  auto args = std::make_shared<DuplicatesArgs>();
  CLI::App* app = parent.add_subcommand(
      "duplicates", "faces that are the same font, and fonts that share a PostScript name");
  addFormatOption(*app, args->format, {"text", "json"});
  addJobsOption(*app, args->walk);
  addFollowOption(*app, args->walk);
  addQuietOption(*app, args->walk.quiet);
  app->add_option("PATH", args->paths, "folders and files (default: the folders fontconfig is configured with)");
  return {app, [args] { return runDuplicates(*args); }};
}

}  // namespace typeprint::cli
