#include "tools/command.h"

#include <thread>

namespace typeprint::cli {

void addJobsOption(CLI::App& app, WalkOptions& options) {
  app.add_option("-j,--jobs", options.jobs, "identify on N threads, 1 to 1024 (0, the default: one per core)")
      ->check(CLI::Range(0u, 1024u))
      ->type_name("N");
}

void addFollowOption(CLI::App& app, WalkOptions& options) {
  app.add_flag("--follow", options.follow, "follow symbolic links, also out of the given folders");
}

void addQuietOption(CLI::App& app, bool& quiet) {
  app.add_flag("-q,--quiet", quiet, "no message for each file that failed (the exit status still says)");
}

void addFormatOption(CLI::App& app, std::string& format, const std::vector<std::string>& allowed) {
  format = allowed.front();
  std::string names;
  for (const std::string& name : allowed) names += (names.empty() ? "" : "|") + name;
  app.add_option("-f,--format", format, "output format: " + names + " (default " + allowed.front() + ")")
      ->check(CLI::IsMember(allowed))
      ->type_name("FORMAT");
}

unsigned workerCount(unsigned jobs) {
  return jobs ? jobs : std::max(1u, std::thread::hardware_concurrency());
}

}  // namespace typeprint::cli
