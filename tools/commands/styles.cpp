// typeprint styles: the built-in styles that a font's names express.
#include <cstdio>
#include <memory>

#include "tools/commands/command_list.h"
#include "tools/data_files.h"
#include "typeprint.h"

namespace typeprint::cli {
namespace {

struct StylesArgs {
  std::vector<std::string> names;
};

int runStyles(const StylesArgs& args) {
  if (!dataFilesFound()) return kExitSomeFileFailed;
  constexpr uint32_t kMaxStyles = 16;
  constexpr int32_t kNameSize = 64;
  std::vector<std::vector<char>> storage(kMaxStyles, std::vector<char>(kNameSize, '\0'));
  std::vector<char*> names;
  for (auto& s : storage) names.push_back(s.data());
  uint32_t count = 0;
  const std::string second = args.names.size() > 1 ? args.names[1] : "";
  if (TP_GetStyles(args.names[0].c_str(), second.c_str(), kMaxStyles, kNameSize, &count, names.data()) !=
      TP_STATUS_OK) {
    std::fprintf(stderr, "typeprint: %s: no styles found\n", args.names[0].c_str());
    return kExitSomeFileFailed;
  }
  for (uint32_t i = 0; i < count; ++i) std::printf("%s\n", names[i]);
  return kExitOk;
}

}  // namespace

Command addStylesCommand(CLI::App& parent) {
  auto args = std::make_shared<StylesArgs>();
  CLI::App* app = parent.add_subcommand("styles", "the built-in styles that a font's names express");
  app->add_option("NAME", args->names, "a PostScript name, and optionally a full name")->required()->expected(1, 2);
  return {app, [args] { return runStyles(*args); }};
}

}  // namespace typeprint::cli
