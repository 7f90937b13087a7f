// Why a file was refused, and what was decided on the way. A parser that rejects its input
// returns TP_REFUSE(topic, offset, format, ...) instead of a bare false or nullopt; a decision
// worth telling (where a fork was found, which kind a file is) is written with TP_NOTE. Both are
// recorded only while a DiagnosticLog is open on the calling thread, so a caller asks for them
// per call, and a call that nobody explains pays one thread-local test at a refusal and nothing
// at all when every check passes: the text is never formatted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typeprint {

struct DiagnosticEntry {
  bool refusal = false;   // a parser rejected its input (else a decision)
  const char* topic = "";  // what was read: "sfnt directory", "resource map", "fork", ...
  std::string text;        // e.g. "name table offset 0x1234 beyond the file's 0x1000 bytes"
  std::optional<uint64_t> offset;  // the byte offset the refusal concerns, when it has one
};

// Collects the entries of the calls made on this thread while it is open. Logs nest: an inner
// log collects alone until it closes.
class DiagnosticLog {
 public:
  DiagnosticLog();
  ~DiagnosticLog();
  DiagnosticLog(const DiagnosticLog&) = delete;
  DiagnosticLog& operator=(const DiagnosticLog&) = delete;

  const std::vector<DiagnosticEntry>& entries() const { return entries_; }
  // The first refusal whose topic is one of `topics` (all topics when empty); null when none.
  const DiagnosticEntry* firstRefusal(const std::vector<std::string>& topics = {}) const;

  // The log open on this thread; null when none is.
  static DiagnosticLog* current();
  void add(DiagnosticEntry entry) { entries_.push_back(std::move(entry)); }
  // Takes the entries of a log that was nested in this one, under another topic.
  void adopt(const DiagnosticLog& inner, const char* topic);

 private:
  DiagnosticLog* outer_;
  std::vector<DiagnosticEntry> entries_;
};

// The value of a refusal: false for a parser returning bool, nothing for one returning an
// optional.
struct Refused {
  operator bool() const { return false; }  // NOLINT: converts where a parser returns bool
  template <typename T>
  operator std::optional<T>() const {  // NOLINT: and where it returns an optional
    return std::nullopt;
  }
};

// Records into the open log; call through the macros, which skip the formatting without one.
Refused recordRefusal(const char* topic, std::optional<uint64_t> offset, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
void recordNote(const char* topic, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace typeprint

// `return TP_REFUSE("resource map", offset, "type list count %d exceeds the map", n);`
#define TP_REFUSE(topic, offset, ...) \
  (::typeprint::DiagnosticLog::current() ? ::typeprint::recordRefusal(topic, offset, __VA_ARGS__) : ::typeprint::Refused{})
// A refusal that concerns no single offset.
#define TP_REFUSE_WHOLE(topic, ...) TP_REFUSE(topic, std::nullopt, __VA_ARGS__)
#define TP_NOTE(topic, ...) \
  do { \
    if (::typeprint::DiagnosticLog::current()) ::typeprint::recordNote(topic, __VA_ARGS__); \
  } while (false)
