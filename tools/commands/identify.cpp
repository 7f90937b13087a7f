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
#include "tools/output.h"
#include "tools/text_output.h"

namespace typeprint::cli {
namespace {

struct IdentifyArgs {
  std::string format;
  std::string mask;
  std::string output;
  bool quiet = false;
  bool explain = false;
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
  options.trace = args.explain;
  const bool lines = args.format == "jsonl";
  Output out(args.output);
  auto sink = [&out](const FileReport& r) { out.write(jsonText(fileJson(r)) + "\n"); };
  const std::vector<FileReport> reports = identifyAll(args.files, options, lines ? ReportSink(sink) : nullptr);
  const bool failed = reportFailures(reports, true, args.quiet);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

  if (args.format == "text") {
    for (const FileReport& r : reports) {
      if (args.explain) out.write(explanationText(r));
      if (r.status == FileStatus::Ok) out.write(fileText(r));
    }
  }
  if (args.format == "json") out.write(jsonText(outputDocument(reports, summarize(reports, seconds))) + "\n");
  if (args.format == "xml") out.write(combinedXML(reports));
  if (args.format == "plist") out.write(combinedPropertyList(reports));
  return out.finish() && !failed ? kExitOk : kExitSomeFileFailed;
}

}  // namespace

Command addIdentifyCommand(CLI::App& parent) {
  auto args = std::make_shared<IdentifyArgs>();
  CLI::App* app = parent.add_subcommand("identify", "every face of each file with all its attributes");
  addFormatOption(*app, args->format, {"text", "json", "jsonl", "xml", "plist"});
  CLI::Option* format = app->get_option("--format");
  app->add_option("--mask", args->mask, "attributes to collect, a bit mask (default all)")
      ->type_name("BITS")
      ->check(CLI::Validator(
          [](std::string& text) {
            uint32_t mask = 0;
            return parseMask(text, &mask) ? std::string() : "not a 32-bit number: " + text;
          },
          ""));
  app->add_flag("--explain", args->explain,
                "print the decisions taken for each file: container and forks found, kind, faces, printer "
                "file looked for and where, or why the file gave no face (text only)")
      ->excludes(format);
  addOutputOption(*app, args->output);
  addQuietOption(*app, args->quiet);
  app->add_option("FILE", args->files, "font files")->required();
  return {app, [args] { return runIdentify(*args); }};
}

}  // namespace typeprint::cli
