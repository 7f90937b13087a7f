// The advisory lock an edit holds on a file from reading it to writing it back, so that two
// edits of one file never interleave and one of them silently lost: the second is refused.
#pragma once

#include <optional>
#include <string>

namespace typeprint {

enum class LockOutcome { Locked, HeldElsewhere, Unopenable };

class EditLock {
 public:
  // Takes an exclusive flock on the regular file at `path` without waiting. HeldElsewhere when
  // another edit holds it; Unopenable when the path is no regular file that can be opened.
  static std::optional<EditLock> acquire(const std::string& path, LockOutcome* outcome);
  EditLock(EditLock&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
  EditLock& operator=(EditLock&& other) noexcept;
  EditLock(const EditLock&) = delete;
  EditLock& operator=(const EditLock&) = delete;
  ~EditLock();

 private:
  explicit EditLock(int fd) : fd_(fd) {}
  int fd_ = -1;
};

}  // namespace typeprint
