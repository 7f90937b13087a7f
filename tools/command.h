// What every subcommand shares: how it is added to the command line, the options several commands
// take, and the exit statuses.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace typeprint::cli {

// Exit statuses of the typeprint command.
enum ExitStatus : int {
  kExitOk = 0,
  kExitSomeFileFailed = 1,
  kExitUsage = 2,
};

// A subcommand once added to the application: `run` is called after a successful parse when the
// subcommand was chosen, and returns the exit status.
struct Command {
  CLI::App* app = nullptr;
  std::function<int()> run;
};

// Each subcommand lives in its own file under tools/commands/ and has one function that adds it
// to the application; tools/commands/command_list.h lists them in the order --help shows them.
using AddCommand = Command (*)(CLI::App& parent);

// Options that several commands take, with one meaning each.
struct WalkOptions {
  unsigned jobs = 0;    // 0: the number of cores
  bool follow = false;  // follow symbolic links out of the given folders
  bool quiet = false;   // no per-file messages
};
void addJobsOption(CLI::App& app, WalkOptions& options);
void addFollowOption(CLI::App& app, WalkOptions& options);
void addQuietOption(CLI::App& app, bool& quiet);
// -f, --format with the allowed values; the first is the default.
void addFormatOption(CLI::App& app, std::string& format, const std::vector<std::string>& allowed);

// The number of worker threads for `jobs` (0: the number of cores).
unsigned workerCount(unsigned jobs);

}  // namespace typeprint::cli
