#include "tools/commands.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "analysis/ttc_split.h"
#include "tools/cli_args.h"
#include "tools/face_report.h"
#include "tools/file_walk.h"
#include "typeprint.h"

namespace typeprint::cli {
namespace {

bool parseMask(const std::string& text, uint32_t* mask) {
  char* end = nullptr;
  unsigned long value = std::strtoul(text.c_str(), &end, 0);
  if (text.empty() || *end || value > 0xFFFFFFFFul) return false;
  *mask = uint32_t(value);
  return true;
}

// Progress on stderr, redrawn in place, only when stderr is a terminal.
class Progress {
 public:
  explicit Progress(size_t total) : total_(total), enabled_(isatty(STDERR_FILENO)), start_(clock::now()) {}
  void update(size_t done, const std::string& current) {
    if (!enabled_) return;
    std::lock_guard<std::mutex> lock(mutex_);
    double seconds = std::chrono::duration<double>(clock::now() - start_).count();
    double rate = seconds > 0 ? done / seconds : 0;
    const int width = 30;
    int filled = total_ ? int(width * done / total_) : width;
    std::string shown = current.size() > 40 ? "..." + current.substr(current.size() - 37) : current;
    std::fprintf(stderr, "\r[%s%s] %zu/%zu %.0f files/s %-40s", std::string(filled, '#').c_str(),
                 std::string(width - filled, ' ').c_str(), done, total_, rate, shown.c_str());
  }
  void finish() {
    if (enabled_) std::fprintf(stderr, "\r%*s\r", 100, "");
  }

 private:
  using clock = std::chrono::steady_clock;
  size_t total_;
  bool enabled_;
  clock::time_point start_;
  std::mutex mutex_;
};

// Identifies every file on `jobs` threads; results stay in file order whatever the threads do.
std::vector<FileReport> identifyAll(const std::vector<std::string>& files, uint32_t mask, unsigned jobs) {
  std::vector<FileReport> reports(files.size());
  std::atomic<size_t> next{0}, done{0};
  Progress progress(files.size());
  auto work = [&] {
    for (size_t i = next++; i < files.size(); i = next++) {
      reports[i] = identifyFile(files[i], mask);
      reports[i].damaged = reports[i].status != TP_STATUS_OK && looksLikeIdentifiableFont(files[i]);
      progress.update(++done, files[i]);
    }
  };
  std::vector<std::thread> threads;
  for (unsigned t = 1; t < jobs; ++t) threads.emplace_back(work);
  work();
  for (std::thread& t : threads) t.join();
  progress.finish();
  return reports;
}

unsigned parseJobs(const ParsedArgs& parsed, bool* ok) {
  *ok = true;
  unsigned cores = std::max(1u, std::thread::hardware_concurrency());
  auto it = parsed.options.find("--jobs");
  if (it == parsed.options.end()) return cores;
  char* end = nullptr;
  long n = std::strtol(it->second.c_str(), &end, 10);
  if (*end || n < 1 || n > 256) *ok = false;
  return unsigned(n);
}

// Folders and files to scan: the operands, or the default font folders.
std::vector<std::string> scanRoots(const ParsedArgs& parsed) {
  return parsed.operands.empty() ? defaultFontFolders() : parsed.operands;
}

// Every file under the roots the operands name (or the font folders), identified on --jobs
// threads. False for a bad --jobs value.
bool identifyRoots(const ParsedArgs& parsed, std::vector<std::string>& files, std::vector<std::string>& unreadable,
                   std::vector<FileReport>& reports) {
  bool jobsOk = true;
  const unsigned jobs = parseJobs(parsed, &jobsOk);
  if (!jobsOk) return false;
  files = collectFiles(scanRoots(parsed), &unreadable);
  reports = identifyAll(files, TP_ATTR_ALL, jobs);
  return true;
}

// Reports failures on stderr; true when any file failed. Files that are not identifiable fonts
// are passed over silently.
bool reportFailures(const std::vector<FileReport>& reports, const std::vector<std::string>& unreadable,
                    size_t* failures, size_t* skipped) {
  *failures = unreadable.size();
  *skipped = 0;
  for (const std::string& path : unreadable) std::fprintf(stderr, "typeprint: %s: cannot read folder\n", path.c_str());
  for (const FileReport& r : reports) {
    if (r.status == TP_STATUS_OK) continue;
    if (!r.damaged) {
      ++*skipped;
      continue;
    }
    ++*failures;
    std::fprintf(stderr, "typeprint: %s: damaged or unreadable font file\n", r.path.c_str());
  }
  return *failures > 0;
}

}  // namespace

int identifyCommand(const std::vector<std::string>& args) {
  const ParsedArgs parsed = parseArgs(args, {"--format", "--mask"});
  if (!parsed.error.empty()) return usageError("", parsed.error);
  const std::string format = parsed.value("--format", "text");
  if (format != "text" && format != "xml" && format != "plist" && format != "json")
    return usageError("", "unknown format " + format);
  uint32_t mask = TP_ATTR_ALL;
  if (parsed.has("--mask") && !parseMask(parsed.value("--mask", ""), &mask))
    return usageError("", "bad mask " + parsed.value("--mask", ""));
  if (parsed.operands.empty()) return usageError("", "identify needs at least one FILE");

  int status = 0;
  std::string jsonItems;
  for (const std::string& path : parsed.operands) {
    FileReport report = identifyFile(path, mask, format == "xml" || format == "plist");
    if (report.status != TP_STATUS_OK) {
      std::fprintf(stderr, "typeprint: %s: not an identifiable font file\n", path.c_str());
      status = 1;
      continue;
    }
    if (format == "text") std::fputs(textReport(report).c_str(), stdout);
    if (format == "xml") std::fputs(report.xml.c_str(), stdout);
    if (format == "plist") std::fputs(report.plist.c_str(), stdout);
    if (format == "json") jsonItems += (jsonItems.empty() ? "" : ",\n") + jsonReport(report);
  }
  if (format == "json") std::printf("[%s]\n", jsonItems.c_str());
  return status;
}

int scanCommand(const std::vector<std::string>& args) {
  const ParsedArgs parsed = parseArgs(args, {"--format", "--jobs"});
  if (!parsed.error.empty()) return usageError("", parsed.error);
  const std::string format = parsed.value("--format", "text");
  if (format != "text" && format != "json") return usageError("", "unknown format " + format);
  std::vector<std::string> files, unreadable;
  std::vector<FileReport> reports;
  if (!identifyRoots(parsed, files, unreadable, reports)) return usageError("", "bad --jobs value");


  size_t faces = 0, identified = 0, failures = 0, skipped = 0;
  std::map<std::string, size_t> kinds;
  for (const FileReport& r : reports) {
    if (r.status != TP_STATUS_OK) continue;
    ++identified;
    faces += r.faces.size();
    for (const FaceReport& f : r.faces) ++kinds[f.kind.value_or("unknown")];
  }
  bool failed = reportFailures(reports, unreadable, &failures, &skipped);

  if (format == "json") {
    std::printf("{\"files\":[");
    bool first = true;
    for (const FileReport& r : reports) {
      if (r.status != TP_STATUS_OK) continue;
      std::printf("%s\n%s", first ? "" : ",", jsonReport(r).c_str());
      first = false;
    }
    std::printf("],\n\"summary\":{\"files\":%zu,\"identified\":%zu,\"faces\":%zu,\"failures\":%zu,\"skipped\":%zu,\"kinds\":{",
                files.size(), identified, faces, failures, skipped);
    first = true;
    for (const auto& [kind, n] : kinds) {
      std::printf("%s%s:%zu", first ? "" : ",", jsonString(kind).c_str(), n);
      first = false;
    }
    std::printf("}}}\n");
  } else {
    for (const FileReport& r : reports) {
      for (const FaceReport& f : r.faces) {
        std::printf("%-48s %-20s %s %s\n", f.postScriptName.value_or("").c_str(), f.kind.value_or("").c_str(),
                    f.checksum ? formatHex(*f.checksum).c_str() : "--------", r.path.c_str());
      }
    }
    std::printf("\n%zu files, %zu identified, %zu faces, %zu failures, %zu not identifiable\n", files.size(),
                identified, faces, failures, skipped);
    for (const auto& [kind, n] : kinds) std::printf("  %-22s %zu\n", kind.c_str(), n);
  }
  return failed ? 1 : 0;
}

int duplicatesCommand(const std::vector<std::string>& args) {
  const ParsedArgs parsed = parseArgs(args, {"--jobs"});
  if (!parsed.error.empty()) return usageError("", parsed.error);
  std::vector<std::string> files, unreadable;
  std::vector<FileReport> reports;
  if (!identifyRoots(parsed, files, unreadable, reports)) return usageError("", "bad --jobs value");

  struct Seen {
    const FileReport* file;
    const FaceReport* face;
  };
  std::map<uint32_t, std::vector<Seen>> byChecksum;
  std::map<std::string, std::vector<Seen>> byName;
  for (const FileReport& r : reports) {
    for (const FaceReport& f : r.faces) {
      if (f.checksum) byChecksum[*f.checksum].push_back({&r, &f});
      if (f.postScriptName && !f.postScriptName->empty()) byName[*f.postScriptName].push_back({&r, &f});
    }
  }
  size_t groups = 0, conflicts = 0;
  for (const auto& [checksum, faces] : byChecksum) {
    std::set<std::string> paths;
    for (const Seen& s : faces) paths.insert(s.file->path);
    if (paths.size() < 2) continue;
    ++groups;
    std::printf("same font %s (%s):\n", formatHex(checksum).c_str(), faces[0].face->postScriptName.value_or("").c_str());
    for (const Seen& s : faces) std::printf("  %s [face %u]\n", s.file->path.c_str(), s.face->index);
  }
  for (const auto& [name, faces] : byName) {
    std::set<uint32_t> checksums;
    for (const Seen& s : faces) checksums.insert(s.face->checksum.value_or(0));
    if (checksums.size() < 2) continue;
    ++conflicts;
    std::printf("conflict %s: same PostScript name, different fonts:\n", name.c_str());
    for (const Seen& s : faces)
      std::printf("  %s [face %u] checksum %s version %s\n", s.file->path.c_str(), s.face->index,
                  formatHex(s.face->checksum.value_or(0)).c_str(), s.face->version.value_or("").c_str());
  }
  std::printf("\n%zu duplicate groups, %zu conflicts\n", groups, conflicts);
  size_t failures = 0, skipped = 0;
  return reportFailures(reports, unreadable, &failures, &skipped) ? 1 : 0;
}

int splitCommand(const std::vector<std::string>& args) {
  if (args.size() != 2) return usageError("", "split needs FILE.ttc OUTDIR");
  std::error_code ec;
  if (!std::filesystem::is_directory(args[1], ec)) {
    std::fprintf(stderr, "typeprint: %s: not a folder\n", args[1].c_str());
    return 1;
  }
  std::vector<std::string> written;
  WriteResult writeFailure;
  const int status = TrueTypeCollectionFont::SeparateTTCFonts(args[0], args[1], written, &writeFailure);
  for (const std::string& path : written) std::printf("%s\n", path.c_str());
  if (!writeFailure) {
    std::fprintf(stderr, "typeprint: %s: %s\n", args[1].c_str(), writeFailure.reason().c_str());
    return 1;
  }
  if (status != kTTCSuccess || written.empty()) {
    std::fprintf(stderr, "typeprint: %s: %s\n", args[0].c_str(),
                 status == kTTCNotCollection || written.empty() ? "not a TrueType collection"
                                                                : "damaged or unreadable collection");
    return 1;
  }
  return 0;
}

int stylesCommand(const std::vector<std::string>& args) {
  if (args.empty() || args.size() > 2) return usageError("", "styles needs NAME [NAME2]");
  const std::string second = args.size() > 1 ? args[1] : "";
  constexpr uint32_t kMaxStyles = 16;
  constexpr int32_t kNameSize = 64;
  std::vector<std::vector<char>> storage(kMaxStyles, std::vector<char>(kNameSize, '\0'));
  std::vector<char*> names;
  for (auto& s : storage) names.push_back(s.data());
  uint32_t count = 0;
  if (TP_GetStyles(args[0].c_str(), second.c_str(), kMaxStyles, kNameSize, &count, names.data()) != TP_STATUS_OK)
    return 1;
  for (uint32_t i = 0; i < count; ++i) std::printf("%s\n", names[i]);
  return 0;
}

int classifyCommand(const std::vector<std::string>& args) {
  if (args.empty() || args.size() > 2) return usageError("", "classify needs FAMILY [FAMILY2]");
  char buffer[256];
  if (TP_GetClassificationFromFamily(args[0].c_str(), args.size() > 1 ? args[1].c_str() : nullptr, buffer,
                                     sizeof buffer) != TP_STATUS_OK)
    return 1;
  std::printf("%s\n", buffer);
  return 0;
}

}  // namespace typeprint::cli
