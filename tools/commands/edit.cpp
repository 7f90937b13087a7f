// typeprint purge and promote: strip the families of a resource-fork font file down to one style,
// and make one style of a family its plain style. Both work on a copy of the file (its whole
// container form) unless told to edit in place.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <system_error>

#include "platform/linux/file_system.h"
#include "platform/linux/fork_locator.h"
#include "resources/family_editing.h"
#include "resources/fond.h"
#include "resources/resource_file.h"
#include "tools/commands/command_list.h"

namespace typeprint::cli {
namespace {

namespace fs = std::filesystem;

// FILE [OUT] and --in-place, which both commands take, and their own numbers.
struct EditArgs {
  std::string file, out;
  bool inPlace = false;
  int16_t style = 0;
  int16_t familyValue = 0;
  std::optional<int16_t> family;  // familyValue, when --family was given
};

void addEditOperands(CLI::App& app, EditArgs& args) {
  CLI::Option* inPlace = app.add_flag(
      "--in-place", args.inPlace,
      "write a new file over FILE (and its fork companion) keeping mode, owner and group; a symbolic "
      "link keeps pointing at the edited file; other hard links keep the old contents; a file another "
      "edit holds is refused");
  app.add_option("FILE", args.file, "a resource-fork font file (suitcase, .dfont)")->required();
  app.add_option("OUT", args.out, "the edited copy (default FILE.edited)")->excludes(inPlace);
}

int failure(const std::string& path, const std::string& message) {
  std::fprintf(stderr, "typeprint: %s: %s\n", path.c_str(), message.c_str());
  return 1;
}

// Where the copy of a companion file goes: the same place relative to the copy as the original
// companion is to the original (`._N`, `.AppleDouble/N`, `%N`, `.resource/N`...). Nothing when
// the companion lives elsewhere or its name does not end with the file's name.
std::optional<fs::path> companionFor(const fs::path& file, const fs::path& companion, const fs::path& copy) {
  const fs::path relative = companion.lexically_relative(file.parent_path());
  const std::string name = file.filename().string();
  const std::string last = relative.filename().string();
  if (relative.empty() || *relative.begin() == ".." || last.size() < name.size() ||
      last.compare(last.size() - name.size(), name.size(), name) != 0)
    return std::nullopt;
  const std::string copied = last.substr(0, last.size() - name.size()) + copy.filename().string();
  return copy.parent_path() / relative.parent_path() / copied;
}

// The files that make up the copy; removed again unless the edit succeeds.
class CopiedFiles {
 public:
  ~CopiedFiles() {
    if (keep_) return;
    for (const std::string& path : paths_) posix::removeEntry(path);
  }
  bool copy(const std::string& from, const std::string& to) {
    std::error_code ignored;
    fs::create_directories(fs::path(to).parent_path(), ignored);
    if (!posix::copyRegularFile(from, to)) return false;
    paths_.push_back(to);
    return true;
  }
  void keep() { keep_ = true; }

 private:
  std::vector<std::string> paths_;
  bool keep_ = false;
};

// Copies `file` in its whole container form to `copy`: the file itself and, when its resource
// fork lives in a companion file, that companion. An empty message on success.
std::string copyContainer(const std::string& file, const std::string& copy, CopiedFiles& copied) {
  if (posix::entryKind(copy, false) != posix::EntryKind::Missing) return copy + " already exists";
  std::optional<FileForks> forks = openForks(file);
  if (!forks) return "cannot read the file";
  std::optional<fs::path> companionCopy;
  if (!forks->companionPath.empty()) {
    companionCopy = companionFor(file, forks->companionPath, copy);
    if (!companionCopy) return "its resource fork lives where a copy cannot follow it; edit it with --in-place";
    if (posix::entryKind(companionCopy->string(), false) != posix::EntryKind::Missing)
      return companionCopy->string() + " already exists";
  }
  if (!copied.copy(file, copy)) return "cannot copy it to " + copy;
  if (companionCopy && !copied.copy(forks->companionPath, companionCopy->string()))
    return "cannot copy its resource fork to " + companionCopy->string();
  return {};
}

// The file to edit: the original with --in-place, else a fresh copy at OUT or FILE.edited.
std::string prepareTarget(const EditArgs& args, CopiedFiles& copied, std::string* error) {
  const std::string& file = args.file;
  if (args.inPlace) return file;
  const std::string target = !args.out.empty() ? args.out : file + ".edited";
  *error = copyContainer(file, target, copied);
  return target;
}

// Prepares the file to edit (see prepareTarget) and opens it for writing; 0, or the exit status
// of the failure, reported.
int openTarget(const EditArgs& args, CopiedFiles& copied, std::string& target, std::unique_ptr<ResourceFile>& rf) {
  std::string error;
  target = prepareTarget(args, copied, &error);
  if (!error.empty()) return failure(args.file, error);
  ResourceOpenFailure why = ResourceOpenFailure::None;
  rf = ResourceFile::open(target, false, &why);
  if (rf) return 0;
  return failure(args.file, why == ResourceOpenFailure::BeingEdited ? "another process is editing it"
                            : why == ResourceOpenFailure::Unreadable ? "cannot read the file"
                                                                      : "not a resource-fork font file");
}

bool hasStyle(Resource fond, uint16_t style) {
  for (const FondEntry& entry : fondEntries(fond->data()))
    if (entry.style == style) return true;
  return false;
}

// Writes the edits; on success the copy is kept and the result reported.
int finish(ResourceFile& rf, const std::string& target, CopiedFiles& copied, const std::string& report) {
  if (!rf.update()) return failure(target, rf.lastWrite().reason());
  copied.keep();
  std::printf("%s: %s\n", target.c_str(), report.c_str());
  return 0;
}

// Removes every resource of `type` that no family entry of the right kind refers to.
size_t purgeUnreferenced(ResourceFile& rf, uint32_t type, const std::set<int16_t>& referenced) {
  const int before = rf.count(type);
  purgeAllButOfType(rf, referenced, type);
  return size_t(before - rf.count(type));
}

int runPurge(const EditArgs& args) {
  const int16_t style = args.style;
  CopiedFiles copied;
  std::string target;
  std::unique_ptr<ResourceFile> rf;
  if (int status = openTarget(args, copied, target, rf)) return status;

  size_t families = 0;
  std::set<int16_t> bitmaps, outlines;
  for (int16_t id : rf->sortedIDs(kTypeFOND)) {
    Resource fond = rf->find(kTypeFOND, id);
    // A family without the style keeps all its faces.
    if (hasStyle(fond, uint16_t(style))) {
      purgeAllButFromFOND(*rf, style, fond);
      ++families;
    }
    for (const FondEntry& entry : fondEntries(fond->data())) (entry.isOutline() ? outlines : bitmaps).insert(entry.resID);
  }
  if (families == 0) return failure(args.file, "no family has style " + std::to_string(style));
  const size_t removedBitmaps = purgeUnreferenced(*rf, kTypeNFNT, bitmaps);
  const size_t removedOutlines = purgeUnreferenced(*rf, kTypeSfnt, outlines);
  return finish(*rf, target, copied,
                "kept style " + std::to_string(style) + " in " + std::to_string(families) + " families; removed " +
                    std::to_string(removedBitmaps) + " NFNT and " + std::to_string(removedOutlines) + " sfnt resources");
}

int runPromote(const EditArgs& args) {
  const int16_t style = args.style;
  CopiedFiles copied;
  std::string target;
  std::unique_ptr<ResourceFile> rf;
  if (int status = openTarget(args, copied, target, rf)) return status;

  const std::vector<int16_t> families = rf->sortedIDs(kTypeFOND);
  if (!args.family && families.size() != 1)
    return failure(args.file, families.empty() ? "no family" : "several families: choose one with --family ID");
  const int16_t id = args.family.value_or(families.empty() ? 0 : families[0]);
  Resource fond = rf->find(kTypeFOND, id);
  if (!fond) return failure(args.file, "no family with ID " + std::to_string(id));
  if (!hasStyle(fond, uint16_t(style)))
    return failure(args.file, "family " + std::to_string(id) + " has no style " + std::to_string(style));
  promoteFOND(*rf, fond, style);
  const std::string name = fond->hasName ? fond->name : std::string();
  return finish(*rf, target, copied,
                "style " + std::to_string(style) + " of family " + std::to_string(id) + " is now plain, family \"" +
                    name + "\"");
}

}  // namespace

Command addPurgeCommand(CLI::App& parent) {
  auto args = std::make_shared<EditArgs>();
  CLI::App* app = parent.add_subcommand(
      "purge", "keep one style of a Mac font file's families, drop unused fonts");
  app->add_option("--keep-style", args->style, "the style number to keep (identify shows it)")
      ->required()
      ->check(CLI::Range(0, 0x7F))
      ->type_name("N");
  addEditOperands(*app, *args);
  return {app, [args] { return runPurge(*args); }};
}

Command addPromoteCommand(CLI::App& parent) {
  auto args = std::make_shared<EditArgs>();
  CLI::App* app = parent.add_subcommand(
      "promote", "make one style of a Mac font family its plain style");
  app->add_option("--style", args->style, "the style number to promote (identify shows it)")
      ->required()
      ->check(CLI::Range(0, 0x7F))
      ->type_name("N");
  CLI::Option* family =
      app->add_option("--family", args->familyValue, "the family resource ID, needed when there are several")
          ->type_name("ID");
  addEditOperands(*app, *args);
  return {app, [args, family] {
            if (family->count()) args->family = args->familyValue;
            return runPromote(*args);
          }};
}

}  // namespace typeprint::cli
