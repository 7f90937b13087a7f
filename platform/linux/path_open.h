// Opening paths safely: never blocking on a FIFO or device, and reaching paths longer than the
// kernel's PATH_MAX by opening their folders one step at a time.
#pragma once

#include <string>

namespace typeprint {

// Opens `folder` as a directory descriptor (O_DIRECTORY), also when the path is longer than
// PATH_MAX. -1 with errno set on failure.
int openFolder(const std::string& folder);

// Opens `path` read-only without blocking and keeps it only when it is a regular file: a FIFO,
// socket or device gives -1 with errno EINVAL, a folder EISDIR. Symbolic links are followed.
int openRegularFile(const std::string& path);

// The folder part and the last component of `path` ("." for a bare name).
struct SplitPath {
  std::string folder;
  std::string name;
};
SplitPath splitFolder(const std::string& path);

}  // namespace typeprint
