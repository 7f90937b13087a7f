// typeprint identify: every face of each file named, with all its attributes.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "tools/commands/command_list.h"
#include "tools/data_files.h"
#include "tools/documents.h"
#include "tools/identify_files.h"
#include "tools/json_output.h"
#include "tools/text_output.h"

namespace typeprint::cli {
namespace {

struct IdentifyArgs {
  std::string format;
  std::string mask;
  bool quiet = false;
  std::vector<std::string> files;
};

bool parseMask(const std::string& text, uint32_t* mask) {
  char* end = nullptr;
  const unsigned long long value = std::strtoull(text.c_str(), &end, 0);
  if (text.empty() || *end || value > 0xFFFFFFFFull) return false;
  *mask = uint32_t(value);
  return true;
}

int runIdentify(const IdentifyArgs& args) {
  const auto start = std::chrono::steady_clock::now();
  IdentifyOptions options;
  if (!args.mask.empty()) parseMask(args.mask, &options.mask);
  if ((options.mask & TP_ATTR_FOUNDRY_NAME) && !dataFilesFound()) return kExitSomeFileFailed;
  options.keepArrays = args.format == "xml" || args.format == "plist";
  const bool lines = args.format == "jsonl";
  auto sink = [](const FileReport& r) { std::printf("%s\n", jsonText(fileJson(r)).c_str()); };
  const std::vector<FileReport> reports = identifyAll(args.files, options, lines ? ReportSink(sink) : nullptr);
  const bool failed = reportFailures(reports, true, args.quiet);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

  if (args.format == "text")
    for (const FileReport& r : reports)
      if (r.status == FileStatus::Ok) std::fputs(fileText(r).c_str(), stdout);
  if (args.format == "json") std::printf("%s\n", jsonText(outputDocument(reports, summarize(reports, seconds))).c_str());
  if (args.format == "xml") std::fputs(combinedXML(reports).c_str(), stdout);
  if (args.format == "plist") std::fputs(combinedPropertyList(reports).c_str(), stdout);
  return failed ? kExitSomeFileFailed : kExitOk;
}

}  // namespace

Command addIdentifyCommand(CLI::App& parent) {
  auto args = std::make_shared<IdentifyArgs>();
  CLI::App* app = parent.add_subcommand("identify", "every face of each file with all its attributes");
  addFormatOption(*app, args->format, {"text", "json", "jsonl", "xml", "plist"});
  app->add_option("--mask", args->mask, "attributes to collect, a bit mask (default all)")
      ->type_name("BITS")
      ->check(CLI::Validator(
          [](std::string& text) {
            uint32_t mask = 0;
            return parseMask(text, &mask) ? std::string() : "not a 32-bit number: " + text;
          },
          ""));
  addQuietOption(*app, args->quiet);
  app->add_option("FILE", args->files, "font files")->required();
  return {app, [args] { return runIdentify(*args); }};
}

}  // namespace typeprint::cli
