// A one-line progress display on a terminal: files done of the total, faces, rate and the current
// file, redrawn at most ten times a second, never wider than the terminal, erased at the end.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace typeprint::cli {

class Progress {
 public:
  // Draws on `fd` only when it is a terminal and `enabled`.
  Progress(size_t total, bool enabled, int fd);
  ~Progress() { finish(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Counts one more file done; safe to call from several threads.
  void fileDone(size_t faces, const std::string& path);
  // Erases the line; later calls draw nothing.
  void finish();

  // The line for a terminal `columns` wide: at most columns - 1 characters, so that it never
  // wraps; the path is shortened from the left.
  static std::string line(size_t done, size_t total, size_t faces, double rate, const std::string& path,
                          size_t columns);

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kRedrawInterval{100};

  void draw(const std::string& path);

  const size_t total_;
  const int fd_;
  std::atomic<bool> enabled_;
  const Clock::time_point start_;
  std::atomic<size_t> done_{0}, faces_{0};
  std::atomic<int64_t> nextDraw_{0};  // nanoseconds after start_
  std::mutex drawing_;
};

}  // namespace typeprint::cli
