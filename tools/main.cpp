// typeprint: identify, scan and compare font files from the command line.
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tools/commands/command_list.h"
#include "typeprint_version.h"

namespace typeprint::cli {
namespace {

#define TYPEPRINT_STRINGIFY(x) #x
#define TYPEPRINT_VERSION_TEXT(a, b, c) TYPEPRINT_STRINGIFY(a) "." TYPEPRINT_STRINGIFY(b) "." TYPEPRINT_STRINGIFY(c)
constexpr const char* kVersion =
    TYPEPRINT_VERSION_TEXT(TYPEPRINT_VERSION_MAJOR, TYPEPRINT_VERSION_MINOR, TYPEPRINT_VERSION_PATCH);

constexpr const char* kDescription =
    "typeprint identifies font files: every face of TrueType, OpenType, collections,\n"
    "PostScript Type 1 and classic Mac font files, with its names, version, foundry\n"
    "and checksums.";

constexpr const char* kFooter =
    "With no COMMAND, typeprint scans the font folders; \"typeprint FILE...\"\n"
    "identifies the files. \"typeprint COMMAND --help\" describes a command.\n"
    "\n"
    "Exit status: 0 when all went well, 1 when some file failed, 2 for a usage\n"
    "error.";

// "typeprint" alone scans, and "typeprint FILE..." identifies: a first argument that is neither
// a command nor an option is a file. A mistyped command so reads as a missing file, which
// identify reports with its name.
std::vector<std::string> withImpliedCommand(int argc, char** argv, const CLI::App& app) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty()) return {"scan"};
  const std::string& first = args[0];
  const bool isCommand = !app.get_subcommands([&](const CLI::App* sub) { return sub->get_name() == first; }).empty();
  if (!isCommand && !first.empty() && first[0] != '-') args.insert(args.begin(), "identify");
  return args;
}

int usageError(const CLI::ParseError& e, const CLI::App& app) {
  std::fprintf(stderr, "typeprint: %s\n", e.what());
  const CLI::App* chosen = &app;
  for (const CLI::App* sub = &app; sub;) {
    const std::vector<const CLI::App*> parsed = sub->get_subcommands([](const CLI::App* s) { return s->parsed(); });
    sub = parsed.empty() ? nullptr : parsed.front();
    if (sub) chosen = sub;
  }
  std::fprintf(stderr, "Try '%s --help' for more information.\n",
               chosen == &app ? "typeprint" : ("typeprint " + chosen->get_name()).c_str());
  return kExitUsage;
}

}  // namespace
}  // namespace typeprint::cli

int main(int argc, char** argv) {
  using namespace typeprint::cli;
  CLI::App app(kDescription, "typeprint");
  app.set_version_flag("--version", std::string("typeprint ") + kVersion, "print the version and exit");
  app.set_help_flag("-h,--help", "print this help and exit");
  app.get_formatter()->column_width(16);
  app.require_subcommand(1);
  std::vector<Command> commands;
  for (AddCommand add : kCommands) commands.push_back(add(app));
  app.footer(kFooter);  // after the commands, which would otherwise inherit it

  std::vector<std::string> args = withImpliedCommand(argc, argv, app);
  std::reverse(args.begin(), args.end());  // CLI11 takes the arguments last first
  try {
    app.parse(args);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    return usageError(e, app);
  }
  for (const Command& command : commands)
    if (command.app->parsed()) return command.run();
  return kExitUsage;
}
