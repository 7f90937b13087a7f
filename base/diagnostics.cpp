#include "base/diagnostics.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace typeprint {
namespace {

thread_local DiagnosticLog* tCurrent = nullptr;

std::string formatted(const char* format, va_list args) {
  va_list measure;
  va_copy(measure, args);
  const int length = std::vsnprintf(nullptr, 0, format, measure);
  va_end(measure);
  if (length <= 0) return {};
  std::string text(size_t(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, args);
  text.resize(size_t(length));
  return text;
}

}  // namespace

DiagnosticLog::DiagnosticLog() : outer_(tCurrent) { tCurrent = this; }

DiagnosticLog::~DiagnosticLog() { tCurrent = outer_; }

DiagnosticLog* DiagnosticLog::current() { return tCurrent; }

const DiagnosticEntry* DiagnosticLog::firstRefusal(const std::vector<std::string>& topics) const {
  for (const DiagnosticEntry& entry : entries_)
    if (entry.refusal && (topics.empty() || std::find(topics.begin(), topics.end(), entry.topic) != topics.end()))
      return &entry;
  return nullptr;
}

void DiagnosticLog::adopt(const DiagnosticLog& inner, const char* topic) {
  for (DiagnosticEntry entry : inner.entries_) {
    entry.topic = topic;
    add(std::move(entry));
  }
}

Refused recordRefusal(const char* topic, std::optional<uint64_t> offset, const char* format, ...) {
  if (DiagnosticLog* log = DiagnosticLog::current()) {
    va_list args;
    va_start(args, format);
    DiagnosticEntry entry{true, topic, formatted(format, args), offset};
    va_end(args);
    // A structure read once per face refuses the same way each time; the log keeps it once.
    const auto& seen = log->entries();
    const bool repeated = std::any_of(seen.begin(), seen.end(), [&](const DiagnosticEntry& e) {
      return e.refusal && e.offset == entry.offset && e.text == entry.text && std::string(e.topic) == entry.topic;
    });
    if (!repeated) log->add(std::move(entry));
  }
  return {};
}

void recordNote(const char* topic, const char* format, ...) {
  if (DiagnosticLog* log = DiagnosticLog::current()) {
    va_list args;
    va_start(args, format);
    log->add({false, topic, formatted(format, args), std::nullopt});
    va_end(args);
  }
}

}  // namespace typeprint
