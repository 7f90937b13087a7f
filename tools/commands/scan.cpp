// typeprint scan: identify every file under folders, by default the configured font folders.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>

#include "tools/commands/command_list.h"
#include "tools/data_files.h"
#include "tools/file_walk.h"
#include "tools/identify_files.h"
#include "tools/json_output.h"
#include "tools/text_output.h"

namespace typeprint::cli {
namespace {

struct ScanArgs {
  std::string format;
  WalkOptions walk;
  std::vector<std::string> paths;
};

int runScan(const ScanArgs& args) {
  if (!dataFilesFound()) return kExitSomeFileFailed;
  const auto start = std::chrono::steady_clock::now();
  const bool lines = args.format == "jsonl";
  IdentifyOptions options;
  // Lines streamed to a terminal would be torn by the progress line.
  options.progress = !(lines && ::isatty(STDOUT_FILENO));
  auto sink = [](const FileReport& r) { std::printf("%s\n", jsonText(fileJson(r)).c_str()); };
  const std::vector<FileReport> reports =
      walkAndIdentify(args.paths.empty() ? defaultFontFolders() : args.paths, args.walk, options,
                      lines ? ReportSink(sink) : nullptr);
  const Summary summary =
      summarize(reports, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  const bool failed = reportFailures(reports, false, args.walk.quiet);

  if (args.format == "json") std::printf("%s\n", jsonText(outputDocument(reports, summary)).c_str());
  if (args.format == "text")
    for (const FileReport& r : reports) std::fputs(scanLines(r).c_str(), stdout);
  if (args.format != "json") std::fputs(summaryText(summary).c_str(), stderr);
  return failed ? kExitSomeFileFailed : kExitOk;
}

}  // namespace

Command addScanCommand(CLI::App& parent) {
  auto args = std::make_shared<ScanArgs>();
  CLI::App* app = parent.add_subcommand("scan", "identify every font file under folders (default: the font folders)");
  addFormatOption(*app, args->format, {"text", "json", "jsonl"});
  addJobsOption(*app, args->walk);
  addFollowOption(*app, args->walk);
  addQuietOption(*app, args->walk.quiet);
  app->add_option("PATH", args->paths, "folders and files (default: the folders fontconfig is configured with)");
  return {app, [args] { return runScan(*args); }};
}

}  // namespace typeprint::cli
