#include "tools/cli_args.h"

#include <cstdio>

namespace typeprint::cli {

ParsedArgs parseArgs(const std::vector<std::string>& args, const std::set<std::string>& valued,
                     const std::set<std::string>& flags) {
  ParsedArgs parsed;
  for (size_t i = 0; i < args.size() && parsed.error.empty(); ++i) {
    const std::string& a = args[i];
    if (a.rfind("--", 0) != 0 || a == "--") {
      parsed.operands.push_back(a);
      continue;
    }
    const size_t eq = a.find('=');
    const std::string name = a.substr(0, eq);
    if (flags.count(name) && eq == std::string::npos)
      parsed.flags.insert(name);
    else if (!valued.count(name))
      parsed.error = "unknown option " + name;
    else if (eq != std::string::npos)
      parsed.options[name] = a.substr(eq + 1);
    else if (i + 1 < args.size())
      parsed.options[name] = args[++i];
    else
      parsed.error = "option " + name + " needs a value";
  }
  return parsed;
}

int usageError(const std::string& command, const std::string& message) {
  std::fprintf(stderr, "typeprint%s%s: %s (see typeprint --help)\n", command.empty() ? "" : " ", command.c_str(),
               message.c_str());
  return 2;
}

}  // namespace typeprint::cli
