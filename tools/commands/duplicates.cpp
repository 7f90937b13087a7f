// typeprint duplicates: the faces of the walked files grouped by the font they are, every copy
// judged against the copy suggested to keep, with the evidence, and the copy fontconfig uses.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "compare/duplicate_groups.h"
#include "compare/fontconfig_choice.h"
#include "tools/commands/command_list.h"
#include "tools/data_files.h"
#include "tools/file_walk.h"
#include "tools/identify_files.h"
#include "tools/json_output.h"
#include "tools/output.h"
#include "tools/text_output.h"
#include "tools/utf8_text.h"

namespace typeprint::cli {
namespace {

using compare::TCopyVerdict;
using compare::TDuplicateGroup;
using compare::TFontconfigChoice;
using compare::TFontCopy;
using compare::Verdict;

constexpr size_t kTextWidth = 80;
constexpr size_t kVerdictColumn = 17;

struct DuplicatesArgs {
  std::string format;
  std::string output;
  WalkOptions walk;
  std::vector<std::string> paths;
};

// The font folders of the system ($XDG_DATA_DIRS, by default /usr/local/share and /usr/share)
// and of the user ($XDG_DATA_HOME or ~/.local/share, and ~/.fonts), for the keeper's preference.
struct FolderClasses {
  std::vector<std::string> system, user;
};

FolderClasses folderClasses() {
  FolderClasses classes;
  const char* dataDirs = std::getenv("XDG_DATA_DIRS");
  std::istringstream dirs(dataDirs && *dataDirs ? dataDirs : "/usr/local/share:/usr/share");
  for (std::string dir; std::getline(dirs, dir, ':');)
    if (!dir.empty() && dir[0] == '/') classes.system.push_back(dir + "/fonts");
  const char* dataHome = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  if (dataHome && *dataHome == '/') classes.user.push_back(std::string(dataHome) + "/fonts");
  if (home && *home) {
    if (!(dataHome && *dataHome == '/')) classes.user.push_back(std::string(home) + "/.local/share/fonts");
    classes.user.push_back(std::string(home) + "/.fonts");
  }
  return classes;
}

// The style a face's full name adds to its family: "DejaVu Sans Bold" in "DejaVu Sans" is "Bold".
std::string styleOf(const FaceReport& face) {
  const std::string family = face.family.value_or(""), full = face.fullName.value_or("");
  if (family.empty() || full.size() <= family.size() || full.compare(0, family.size(), family) != 0) return "";
  const size_t start = full.find_first_not_of(' ', family.size());
  return start == std::string::npos ? "" : full.substr(start);
}

// The outline kind inside a web font's kind: "WOFF2 (TrueType)" holds "TrueType".
std::string innerKind(const std::string& kind, const std::string& container) {
  const std::string prefix = container + " (";
  if (container.empty() || kind.size() <= prefix.size() || kind.compare(0, prefix.size(), prefix) != 0) return kind;
  return kind.substr(prefix.size(), kind.size() - prefix.size() - 1);
}

std::vector<formats::TNamedInstance> instancesOf(const FaceReport& face) {
  std::vector<formats::TNamedInstance> instances;
  if (!face.instances) return instances;
  for (const auto& item : *face.instances) {
    formats::TNamedInstance instance;
    instance.subfamilyName = item.value("subfamilyName", "");
    instance.postScriptName = item.value("postScriptName", "");
    instances.push_back(std::move(instance));
  }
  return instances;
}

TFontCopy copyOfFace(const FileReport& file, const FaceReport& face) {
  TFontCopy c;
  c.path = file.path;
  c.face = face.index;
  const std::string contentKind = face.contentKind.value_or("");
  if (contentKind == "WOFF" || contentKind == "WOFF2") c.container = contentKind;
  c.kind = innerKind(face.kind.value_or(""), c.container);
  if (c.kind == "TrueType Collection") c.container = "collection";
  c.postScriptName = face.postScriptName.value_or("");
  c.family = face.family.value_or("");
  c.style = face.styleName ? *face.styleName : styleOf(face);
  c.version = face.version.value_or("");
  c.foundry = face.foundry.value_or("");
  c.checksum = face.checksum;
  c.legacyChecksum = face.legacyChecksum;
  c.kerningChecksum = face.kerningChecksum;
  const bool type1 = c.kind.rfind("PostScript", 0) == 0;
  if (type1 && face.contentChecksum) c.programChecksum = *face.contentChecksum;
  if (!type1 && !c.checksum) c.checksum = face.contentChecksum;
  c.instances = instancesOf(face);
  c.variable = face.axes && !face.axes->empty();
  c.array = file.array;
  return c;
}

std::vector<TFontCopy> fontCopies(const std::vector<FileReport>& reports) {
  const FolderClasses classes = folderClasses();
  std::vector<TFontCopy> copies;
  for (const FileReport& r : reports) {
    if (r.status != FileStatus::Ok) continue;
    for (const FaceReport& f : r.faces) {
      TFontCopy c = copyOfFace(r, f);
      compare::readFileFacts(c);
      c.folder = compare::classifyFolder(r.path, classes.system, classes.user);
      copies.push_back(std::move(c));
    }
  }
  return copies;
}

Json evidenceJson(const compare::TEvidence& evidence) {
  Json out;
  putText(out, "text", evidence.text);
  for (const auto& [key, value] : evidence.facts) putText(out, key, value);
  out["differing"] = evidence.differing;
  return out;
}

Json groupJson(const TDuplicateGroup& group, const std::optional<TFontconfigChoice>& choice,
               const std::vector<TFontCopy>& copies) {
  Json out;
  putText(out, "postScriptName", group.postScriptName);
  putText(out, "family", group.family);
  putText(out, "style", group.style);
  out["conflict"] = group.hasConflict;
  Json keep;
  for (const TCopyVerdict& v : group.copies) {
    if (!v.keep) continue;
    putText(keep, "path", copies[v.copy].path);
    keep["face"] = copies[v.copy].face;
  }
  putText(keep, "reason", group.keepReason);
  out["keep"] = std::move(keep);
  if (choice) {
    Json fc;
    putText(fc, "pattern", choice->pattern);
    putText(fc, "path", choice->path);
    fc["face"] = choice->face;
    putText(fc, "family", choice->family);
    fc["familyFound"] = choice->familyFound;
    bool isKeeper = false, inGroup = false;
    for (const TCopyVerdict& v : group.copies) {
      inGroup = inGroup || v.fontconfig;
      isKeeper = isKeeper || (v.fontconfig && v.keep);
    }
    fc["inGroup"] = inGroup;
    fc["isKeeper"] = isKeeper;
    out["fontconfig"] = std::move(fc);
  } else {
    out["fontconfig"] = nullptr;
  }
  Json list = Json::array();
  for (const TCopyVerdict& v : group.copies) {
    Json item;
    putText(item, "path", copies[v.copy].path);
    item["face"] = copies[v.copy].face;
    item["verdict"] = compare::verdictName(v.verdict);
    item["evidence"] = evidenceJson(v.evidence);
    item["keep"] = v.keep;
    item["fontconfig"] = v.fontconfig;
    list.push_back(std::move(item));
  }
  out["copies"] = std::move(list);
  return out;
}

// `text` broken at spaces into lines of at most kTextWidth columns, each after `indent` spaces.
std::string wrapped(const std::string& text, size_t indent) {
  std::string out, line;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (!line.empty() && indent + line.size() + 1 + word.size() > kTextWidth) {
      out += std::string(indent, ' ') + line + "\n";
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  if (!line.empty()) out += std::string(indent, ' ') + line + "\n";
  return out;
}

std::string groupText(const TDuplicateGroup& group, const std::optional<TFontconfigChoice>& choice,
                      const std::vector<TFontCopy>& copies) {
  std::string out = group.family + (group.style.empty() ? "" : " " + group.style) + " (" + group.postScriptName + ")" +
                    (group.hasConflict ? ": CONFLICT" : "") + "\n";
  for (const TCopyVerdict& v : group.copies) {
    const TFontCopy& c = copies[v.copy];
    std::string label = "  " + std::string(v.keep ? "keep" : compare::verdictName(v.verdict));
    label.resize(kVerdictColumn, ' ');
    out += label + validUTF8(c.path) + (c.face ? " [face " + std::to_string(c.face) + "]" : "") +
           (v.fontconfig ? "  (fontconfig)" : "") + "\n";
    out += wrapped(v.keep ? "suggested: " + group.keepReason : v.evidence.text, kVerdictColumn);
  }
  if (choice) {
    bool isKeeper = false, inGroup = false;
    for (const TCopyVerdict& v : group.copies) {
      inGroup = inGroup || v.fontconfig;
      isKeeper = isKeeper || (v.fontconfig && v.keep);
    }
    if (!isKeeper)
      out += wrapped("fontconfig uses " + validUTF8(choice->path) + (inGroup ? "" : " (not among these copies)") +
                         ", not the suggested copy",
                     2);
  }
  return out + "\n";
}

int runDuplicates(const DuplicatesArgs& args) {
  if (!dataFilesFound()) return kExitSomeFileFailed;
  const auto start = std::chrono::steady_clock::now();
  IdentifyOptions options;
  options.progress = true;
  options.keepArrays = true;  // TP_Match tells which attributes of modified copies differ
  WalkOptions walk = args.walk;
  walk.follow = true;  // links are reported as the same file, never counted twice
  const std::vector<FileReport> reports =
      walkAndIdentify(args.paths.empty() ? defaultFontFolders() : args.paths, walk, options);
  const std::vector<TFontCopy> copies = fontCopies(reports);
  compare::FileContent content;
  std::vector<TDuplicateGroup> groups = compare::findDuplicateGroups(copies, content);
  compare::FontconfigMatcher matcher;
  const std::vector<std::optional<TFontconfigChoice>> choices = compare::markFontconfigChoices(groups, copies, matcher);
  const Summary summary =
      summarize(reports, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  const bool failed = reportFailures(reports, false, args.walk.quiet);
  size_t conflicts = 0;
  for (const TDuplicateGroup& g : groups) conflicts += g.hasConflict;

  Output out(args.output);
  if (args.format == "json") {
    Json document = outputDocument(reports, summary);
    Json list = Json::array();
    for (size_t i = 0; i < groups.size(); ++i) list.push_back(groupJson(groups[i], choices[i], copies));
    document["groups"] = std::move(list);
    out.write(jsonText(document) + "\n");
  } else {
    for (size_t i = 0; i < groups.size(); ++i) out.write(groupText(groups[i], choices[i], copies));
    out.write(std::to_string(groups.size()) + " groups of copies, " + std::to_string(conflicts) + " with conflicts\n");
    std::fputs(summaryText(summary).c_str(), stderr);
  }
  if (!out.finish()) return kExitSomeFileFailed;
  if (conflicts) return kExitConflicts;
  return failed ? kExitSomeFileFailed : kExitOk;
}

}  // namespace

Command addDuplicatesCommand(CLI::App& parent) {
  auto args = std::make_shared<DuplicatesArgs>();
  CLI::App* app = parent.add_subcommand(
      "duplicates", "copies of the same font, how they differ, which to keep and which fontconfig uses");
  addFormatOption(*app, args->format, {"text", "json"});
  addJobsOption(*app, args->walk);
  addQuietOption(*app, args->walk.quiet);
  addOutputOption(*app, args->output);
  app->add_option("PATH", args->paths, "folders and files (default: the folders fontconfig is configured with)");
  app->footer("Symbolic links are followed and reported as the same file. Exit status: 0 without\n"
              "conflicts, 3 when two different fonts share a PostScript name, 1 when some file\n"
              "failed, 2 for a usage error.");
  return {app, [args] { return runDuplicates(*args); }};
}

}  // namespace typeprint::cli
