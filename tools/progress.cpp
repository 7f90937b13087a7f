#include "tools/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace typeprint::cli {
namespace {

constexpr size_t kDefaultColumns = 80;

size_t terminalColumns(int fd) {
  struct winsize size {};
  if (::ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return kDefaultColumns;
}

// Characters, not bytes: UTF-8 continuation bytes take no column.
size_t characterCount(const std::string& text) {
  size_t n = 0;
  for (unsigned char c : text) n += (c & 0xC0) != 0x80;
  return n;
}

// The last `columns` characters of `text`, "..." first when something was cut.
std::string tail(const std::string& text, size_t columns) {
  if (characterCount(text) <= columns) return text;
  if (columns <= 3) return std::string(columns, '.');
  size_t keep = columns - 3, start = text.size();
  while (start > 0 && keep > 0) {
    --start;
    if ((uint8_t(text[start]) & 0xC0) != 0x80) --keep;
  }
  return "..." + text.substr(start);
}

void writeAll(int fd, const std::string& text) {
  size_t written = 0;
  while (written < text.size()) {
    const ssize_t n = ::write(fd, text.data() + written, text.size() - written);
    if (n <= 0) return;
    written += size_t(n);
  }
}

}  // namespace

Progress::Progress(size_t total, bool enabled, int fd)
    : total_(total), fd_(fd), enabled_(enabled && ::isatty(fd)), start_(Clock::now()) {}

std::string Progress::line(size_t done, size_t total, size_t faces, double rate, const std::string& path,
                           size_t columns) {
  char counts[128];
  std::snprintf(counts, sizeof counts, "%zu/%zu files, %zu faces, %.0f files/s ", done, total, faces, rate);
  const size_t room = columns > 1 ? columns - 1 : 0;
  std::string text = tail(counts, room);
  if (text.size() < room) text += tail(path, room - text.size());
  return text;
}

void Progress::fileDone(size_t faces, const std::string& path) {
  if (!enabled_.load(std::memory_order_relaxed)) return;
  ++done_;
  faces_ += faces;
  const int64_t now = std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start_).count();
  int64_t due = nextDraw_.load(std::memory_order_relaxed);
  // One thread wins each redraw slot; the others go straight on with their work.
  if (now < due || !nextDraw_.compare_exchange_strong(due, now + std::chrono::nanoseconds(kRedrawInterval).count()))
    return;
  draw(path);
}

void Progress::draw(const std::string& path) {
  std::lock_guard<std::mutex> lock(drawing_);
  if (!enabled_) return;
  const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
  const size_t done = done_;
  const std::string text = line(done, total_, faces_, seconds > 0 ? done / seconds : 0, path, terminalColumns(fd_));
  writeAll(fd_, "\r" + text + "\033[K");
}

void Progress::finish() {
  std::lock_guard<std::mutex> lock(drawing_);
  if (!enabled_.exchange(false)) return;
  writeAll(fd_, "\r\033[K");
}

}  // namespace typeprint::cli
