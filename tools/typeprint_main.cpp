// typeprint: identify, scan and compare font files from the command line.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/commands.h"
#include "tools/edit_commands.h"
#include "tools/extract_command.h"
#include "typeprint_version.h"

namespace {

const char kHelp[] =
    "usage: typeprint COMMAND [OPTIONS] [ARGS]\n"
    "       typeprint FILE...            (as identify FILE...)\n"
    "       typeprint                    (as scan)\n"
    "\n"
    "Commands:\n"
    "  identify [--format text|xml|plist|json] [--mask BITS] FILE...\n"
    "      every face of each file with all its attributes\n"
    "  scan [--format text|json] [--jobs N] [PATH...]\n"
    "      identify every font file under the folders (default: the system and user font folders)\n"
    "  duplicates [--jobs N] [PATH...]\n"
    "      faces that are the same font, and faces that share a PostScript name but differ\n"
    "  split FILE.ttc OUTDIR        write each face of a collection as its own .ttf file\n"
    "  styles NAME [NAME2]          the built-in styles that a font's names express\n"
    "  classify FAMILY [FAMILY2]    the classification of a family\n"
    "  purge --keep-style N [--in-place] FILE [OUT]\n"
    "      keep only style N in the families that have it, and drop the NFNT and sfnt resources\n"
    "      no family refers to any more; edits a copy (OUT, default FILE.edited) unless --in-place\n"
    "  promote --style N [--family ID] [--in-place] FILE [OUT]\n"
    "      make style N the family's plain style, named by its PostScript name; same copy rules\n"
    "      --in-place writes a new file over FILE (and its fork companion) keeping mode, owner and\n"
    "      group; a symbolic link keeps pointing at the edited file; other hard links to FILE keep\n"
    "      the old contents. A file another edit holds is refused.\n"
    "  extract [-o OUTDIR] [--afm] [--bitmaps] [--pfa] [--force] [--format text|json] PATH...\n"
    "      write the fonts inside Mac font files (suitcases, printer fonts, .dfont, in any fork\n"
    "      layout) as .ttf/.otf, .pfb (or .pfa) with .afm, and .bdf files\n"
    "\n"
    "Exit status: 0 success, 1 when a file could not be identified or read, 2 on usage errors.\n";

}  // namespace

int main(int argc, char** argv) {
  using namespace typeprint::cli;
  if (argc < 2) return scanCommand({});
  const std::string command = argv[1];
  std::vector<std::string> args(argv + 2, argv + argc);
  if (command == "--help" || command == "-h" || command == "help") {
    std::fputs(kHelp, stdout);
    return 0;
  }
  if (command == "--version") {
    std::printf("typeprint %d.%d.%d\n", TYPEPRINT_VERSION_MAJOR, TYPEPRINT_VERSION_MINOR, TYPEPRINT_VERSION_PATCH);
    return 0;
  }
  if (command == "identify") return identifyCommand(args);
  if (command == "scan") return scanCommand(args);
  if (command == "duplicates") return duplicatesCommand(args);
  if (command == "split") return splitCommand(args);
  if (command == "styles") return stylesCommand(args);
  if (command == "classify") return classifyCommand(args);
  if (command == "purge") return purgeCommand(args);
  if (command == "promote") return promoteCommand(args);
  if (command == "extract") return extractCommand(args);
  // "typeprint FILE..." is short for "typeprint identify FILE...".
  if (std::filesystem::exists(command)) return identifyCommand(std::vector<std::string>(argv + 1, argv + argc));
  std::fprintf(stderr, "typeprint: unknown command '%s' (see typeprint --help)\n", command.c_str());
  return 2;
}
