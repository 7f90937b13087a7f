#include "tools/identify_files.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <thread>

#include "platform/linux/fork_locator.h"
#include "tools/file_walk.h"
#include "tools/progress.h"

namespace typeprint::cli {

std::vector<FileReport> identifyAll(const std::vector<std::string>& files, const IdentifyOptions& options,
                                    const ReportSink& sink) {
  std::vector<FileReport> reports(files.size());
  std::vector<char> finished(files.size(), 0);
  std::atomic<size_t> next{0};
  std::mutex sinking;
  size_t sunk = 0;
  Progress progress(files.size(), options.progress, STDERR_FILENO);
  auto work = [&] {
    ForkLookupCache folders;  // each folder's companions looked up once per thread
    for (size_t i = next++; i < files.size(); i = next++) {
      reports[i] = identifyFile(files[i], options.mask, options.keepArrays);
      progress.fileDone(reports[i].faces.size(), files[i]);
      if (!sink) continue;
      std::lock_guard<std::mutex> lock(sinking);
      finished[i] = 1;
      while (sunk < files.size() && finished[sunk]) sink(reports[sunk++]);
    }
  };
  std::vector<std::thread> threads;
  for (unsigned t = 1; t < options.workers && t < files.size(); ++t) threads.emplace_back(work);
  work();
  for (std::thread& t : threads) t.join();
  progress.finish();
  return reports;
}

void reportProblem(const std::string& path, const std::string& reason) {
  std::fprintf(stderr, "typeprint: %s: %s\n", path.c_str(), reason.c_str());
}

bool reportFailures(const std::vector<FileReport>& reports, bool notFontsToo, bool quiet) {
  bool failed = false;
  for (const FileReport& r : reports) {
    const bool counts = r.status == FileStatus::Failed || (notFontsToo && r.status == FileStatus::NotAFont);
    if (!counts) continue;
    failed = true;
    if (!quiet) reportProblem(r.path, r.error);
  }
  return failed;
}

std::vector<FileReport> walkAndIdentify(const std::vector<std::string>& roots, const WalkOptions& walk,
                                        IdentifyOptions options, const ReportSink& sink) {
  WalkResult found = collectFiles(roots, walk.follow);
  options.workers = workerCount(walk.jobs);
  std::vector<FileReport> reports = std::move(found.problems);
  if (sink)
    for (const FileReport& r : reports) sink(r);
  for (FileReport& r : identifyAll(found.files, options, sink)) reports.push_back(std::move(r));
  return reports;
}

}  // namespace typeprint::cli
