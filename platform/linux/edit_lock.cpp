#include "platform/linux/edit_lock.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/path_open.h"

namespace typeprint {
namespace {

// An edit replaces the file by renaming a new one over it, so a lock taken on the file just
// before another edit's rename locks the old file. Such a lock is dropped and taken again on
// the new file, a few times at most.
constexpr int kLockAttempts = 8;

bool sameFile(int fd, const std::string& path) {
  const int again = openRegularFile(path);
  if (again < 0) return false;
  struct stat a, b;
  const bool same = ::fstat(fd, &a) == 0 && ::fstat(again, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
  ::close(again);
  return same;
}

}  // namespace

std::optional<EditLock> EditLock::acquire(const std::string& path, LockOutcome* outcome) {
  for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
    const int fd = openRegularFile(path);
    if (fd < 0) break;
    int rc;
    do rc = ::flock(fd, LOCK_EX | LOCK_NB);
    while (rc != 0 && errno == EINTR);
    if (rc != 0) {
      const bool held = errno == EWOULDBLOCK;
      ::close(fd);
      if (outcome) *outcome = held ? LockOutcome::HeldElsewhere : LockOutcome::Unopenable;
      return std::nullopt;
    }
    if (sameFile(fd, path)) {
      if (outcome) *outcome = LockOutcome::Locked;
      return EditLock(fd);
    }
    ::close(fd);
  }
  if (outcome) *outcome = LockOutcome::Unopenable;
  return std::nullopt;
}

EditLock& EditLock::operator=(EditLock&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = other.fd_;
    other.fd_ = -1;
  }
  return *this;
}

EditLock::~EditLock() {
  if (fd_ >= 0) ::close(fd_);
}

}  // namespace typeprint
