// Every typeprint subcommand, in the order --help lists them. To add one: write
// tools/commands/NAME.cpp with `Command addNameCommand(CLI::App& parent)` (see identify.cpp),
// declare it here and add it to kCommands. CMake picks the file up by itself.
#pragma once

#include "tools/command.h"

namespace typeprint::cli {

Command addIdentifyCommand(CLI::App& parent);
Command addScanCommand(CLI::App& parent);
Command addDuplicatesCommand(CLI::App& parent);
Command addSplitCommand(CLI::App& parent);
Command addStylesCommand(CLI::App& parent);
Command addClassifyCommand(CLI::App& parent);
Command addPurgeCommand(CLI::App& parent);
Command addPromoteCommand(CLI::App& parent);
Command addExtractCommand(CLI::App& parent);

inline constexpr AddCommand kCommands[] = {
    addIdentifyCommand, addScanCommand,     addDuplicatesCommand, addSplitCommand,
    addStylesCommand,   addClassifyCommand, addPurgeCommand,      addPromoteCommand,
    addExtractCommand,
};

}  // namespace typeprint::cli
