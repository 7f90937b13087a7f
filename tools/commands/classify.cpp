// typeprint classify: the classification of a family.
#include <cstdio>
#include <memory>

#include "tools/commands/command_list.h"
#include "tools/data_files.h"
#include "typeprint.h"

namespace typeprint::cli {
namespace {

struct ClassifyArgs {
  std::vector<std::string> families;
};

int runClassify(const ClassifyArgs& args) {
  if (!dataFilesFound()) return kExitSomeFileFailed;
  char buffer[256];
  const char* other = args.families.size() > 1 ? args.families[1].c_str() : nullptr;
  if (TP_GetClassificationFromFamily(args.families[0].c_str(), other, buffer, sizeof buffer) != TP_STATUS_OK) {
    std::fprintf(stderr, "typeprint: %s: no classification\n", args.families[0].c_str());
    return kExitSomeFileFailed;
  }
  std::printf("%s\n", buffer);
  return kExitOk;
}

}  // namespace

Command addClassifyCommand(CLI::App& parent) {
  auto args = std::make_shared<ClassifyArgs>();
  CLI::App* app = parent.add_subcommand("classify", "the classification of a family (-- when unknown)");
  app->add_option("FAMILY", args->families, "a family name, and optionally a second one to try")
      ->required()
      ->expected(1, 2);
  return {app, [args] { return runClassify(*args); }};
}

}  // namespace typeprint::cli
