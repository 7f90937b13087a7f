// typeprint split: each face of a TrueType collection written as a font file of its own, named
// after its PostScript name.
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

#include "analysis/ttc_split.h"
#include "platform/linux/atomic_file.h"
#include "tools/commands/command_list.h"
#include "tools/file_checks.h"
#include "tools/identify_files.h"
#include "typeprint.h"

namespace typeprint::cli {
namespace {

namespace fs = std::filesystem;

struct SplitArgs {
  std::string collection, folder;
  bool force = false;
};

const char* collectionError(int status) {
  switch (status) {
    case kTTCNotCollection: return "not a TrueType collection";
    case kTTCBadVersion: return "damaged TrueType collection: empty, or an unknown version";
    default: return "damaged TrueType collection";
  }
}

// The face's PostScript name made safe for a file name: letters, digits, '-', '_', '+' and '.'
// are kept, anything else becomes '_'; no leading dot; "face-N" when there is no name.
std::string fileStem(const std::vector<uint8_t>& face, unsigned index) {
  char name[256] = "";
  // The getter wants a resource file and a style handle, which it does not read for sfnt data.
  char* noStyle = nullptr;
  TP_GetPostScriptNameFromNamesTable(reinterpret_cast<const char*>(face.data()), uint32_t(face.size()), &noStyle,
                                     &noStyle, 0, name, sizeof name);
  std::string stem;
  for (const char* p = name; *p; ++p) {
    const char c = *p;
    const bool safe = std::isalnum(static_cast<unsigned char>(c)) || std::strchr("-_+.", c);
    stem += safe && uint8_t(c) < 0x80 ? c : '_';
  }
  while (!stem.empty() && stem[0] == '.') stem[0] = '_';
  return stem.empty() ? "face-" + std::to_string(index) : stem;
}

// CFF outlines go in .otf files, TrueType outlines in .ttf files.
const char* extensionFor(const std::vector<uint8_t>& face) {
  return face.size() >= 4 && std::memcmp(face.data(), "OTTO", 4) == 0 ? ".otf" : ".ttf";
}

// STEM.EXT, or STEM-2.EXT, STEM-3.EXT... when an earlier face of this collection took the name.
std::string uniqueName(const std::string& stem, const std::string& extension, std::set<std::string>& taken) {
  std::string name = stem + extension;
  for (int n = 2; !taken.insert(name).second; ++n) name = stem + "-" + std::to_string(n) + extension;
  return name;
}

int runSplit(const SplitArgs& args) {
  if (std::optional<std::string> reason = unreadableReason(args.collection)) {
    reportProblem(args.collection, *reason);
    return kExitSomeFileFailed;
  }
  TrueTypeCollectionFont collection(args.collection);
  if (int status = collection.ReadIntoMemory(); status != kTTCSuccess || collection.faceCount() == 0) {
    reportProblem(args.collection, collectionError(status == kTTCSuccess ? kTTCDamaged : status));
    return kExitSomeFileFailed;
  }
  std::error_code ec;
  fs::create_directories(args.folder, ec);
  if (ec || !fs::is_directory(args.folder)) {
    reportProblem(args.folder, ec ? ec.message() : std::strerror(ENOTDIR));
    return kExitSomeFileFailed;
  }
  int exit = kExitOk;
  std::set<std::string> taken;
  std::vector<uint8_t> face;
  for (unsigned index = 0; index < collection.faceCountInFile(); ++index) {
    if (collection.GetDataPtrForFace(index, face) != kTTCSuccess) {
      reportProblem(args.collection, "face " + std::to_string(index) + ": " + collectionError(kTTCDamaged));
      exit = kExitSomeFileFailed;
      continue;
    }
    const std::string path = (fs::path(args.folder) / uniqueName(fileStem(face, index), extensionFor(face), taken)).string();
    if (!args.force && entryType(path, false) != EntryType::Missing) {
      reportProblem(path, "already exists (--force replaces it)");
      exit = kExitSomeFileFailed;
      continue;
    }
    if (const WriteResult written = replaceFileAtomically(path, ByteSpan(face)); !written) {
      reportProblem(path, written.reason());
      exit = kExitSomeFileFailed;
      continue;
    }
    std::printf("%s\n", path.c_str());
  }
  if (collection.faceCountInFile() < collection.faceCount()) {
    reportProblem(args.collection, collectionError(kTTCDamaged) + std::string(": face offsets beyond the file"));
    exit = kExitSomeFileFailed;
  }
  return exit;
}

}  // namespace

Command addSplitCommand(CLI::App& parent) {
  auto args = std::make_shared<SplitArgs>();
  CLI::App* app = parent.add_subcommand(
      "split", "write each face of a collection as a font file of its own");
  app->add_flag("--force", args->force, "replace files that exist already");
  app->add_option("FILE", args->collection, "a TrueType collection (.ttc)")->required();
  app->add_option("OUTDIR", args->folder, "the folder to write to, created when missing")->required();
  return {app, [args] { return runSplit(*args); }};
}

}  // namespace typeprint::cli
