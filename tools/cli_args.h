// Command-line arguments of the typeprint subcommands: "--name value" and "--name=value" options,
// value-less flags, and operands.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace typeprint::cli {

struct ParsedArgs {
  std::map<std::string, std::string> options;  // "--format" -> "json"
  std::set<std::string> flags;                 // "--in-place"
  std::vector<std::string> operands;
  std::string error;  // empty when the arguments parsed

  bool has(const std::string& option) const { return options.count(option) || flags.count(option); }
  std::string value(const std::string& option, const std::string& fallback) const {
    auto it = options.find(option);
    return it == options.end() ? fallback : it->second;
  }
};

// `valued` lists the options that take a value, `flags` the options that take none.
ParsedArgs parseArgs(const std::vector<std::string>& args, const std::set<std::string>& valued,
                     const std::set<std::string>& flags = {});

// Reports a usage error on stderr ("typeprint[ COMMAND]: MESSAGE") and gives exit status 2.
int usageError(const std::string& command, const std::string& message);

}  // namespace typeprint::cli
