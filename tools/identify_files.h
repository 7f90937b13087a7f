// Identifying many files on worker threads, with progress on a terminal, and telling the user
// about the ones that failed.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/command.h"
#include "tools/face_report.h"

namespace typeprint::cli {

struct IdentifyOptions {
  uint32_t mask = TP_ATTR_ALL;
  unsigned workers = 1;
  bool keepArrays = false;  // for the XML and property-list documents
  bool progress = false;    // on stderr, when it is a terminal
};

// Called with each report in the order of the files, as soon as it and all before it are done.
using ReportSink = std::function<void(const FileReport&)>;

// The reports in the order of `files`, whatever the threads do.
std::vector<FileReport> identifyAll(const std::vector<std::string>& files, const IdentifyOptions& options,
                                    const ReportSink& sink = nullptr);

// "typeprint: PATH: REASON" on stderr.
void reportProblem(const std::string& path, const std::string& reason);

// Reports each failed file (and, with `notFontsToo`, each file that is not a font) unless quiet;
// true when any file failed or, with `notFontsToo`, was not a font.
bool reportFailures(const std::vector<FileReport>& reports, bool notFontsToo, bool quiet);

// Walks the roots (identify_files' WalkOptions), identifies every file found, and puts the walk's
// problems (unreadable folders, broken links) before the files in the result.
std::vector<FileReport> walkAndIdentify(const std::vector<std::string>& roots, const WalkOptions& walk,
                                        IdentifyOptions options, const ReportSink& sink = nullptr);

}  // namespace typeprint::cli
