// Files that change, block or misbehave under the library: special files in every place a path is
// opened, files shrinking while read, failing writes step by step, links, owners and long paths.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "builders/byte_edits.h"
#include "foundation/plist_helpers.h"
#include "foundation/streams.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/fork_locator.h"
#include "platform/linux/mapped_file.h"
#include "platform/linux/plist_io.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;

void makeFifo(const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0644), 0) << path; }

void makeSocket(const std::string& path) {
  const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::strcpy(address.sun_path, path.c_str());
  ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(fd);
}

// A FIFO, socket, device or folder is refused without blocking wherever a path is opened: as the
// file itself (nothing), and as a companion holding the fork (the file reads as a plain file).
TEST(HostileFiles, SpecialFilesAreRefusedWithoutBlocking) {
  const struct { const char* what; const char* special; void (*make)(const std::string&); bool fileItself; } rows[] = {
      {"FIFO as the file", "font", makeFifo, true},
      {"socket as the file", "font", makeSocket, true},
      {"folder as the file", "font", [](const std::string& p) { fs::create_directory(p); }, true},
      {"device as the file", "font", [](const std::string& p) { fs::create_symlink("/dev/zero", p); }, true},
      {"FIFO as ._N", "._font", makeFifo, false},
      {"FIFO as .AppleDouble/N", ".AppleDouble/font", makeFifo, false},
      {"FIFO as %N", "%font", makeFifo, false},
      {"FIFO as .resource/N", ".resource/font", makeFifo, false},
      {"FIFO as resource.frk/N", "resource.frk/font", makeFifo, false},
      {"FIFO as .finderinfo/N", ".finderinfo/font", makeFifo, false},
      {"FIFO as the __MACOSX mirror", "__MACOSX/._font", makeFifo, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    fs::create_directories(fs::path(dir.file(row.special)).parent_path());
    if (!row.fileItself) test::writeFile(dir.file("font"), "data fork");
    if (std::string(row.special) == ".finderinfo/font") {
      fs::create_directory(dir.file(".resource"));
      test::writeFile(dir.file(".resource/font"), "fork");
    }
    row.make(dir.file(row.special));
    std::optional<FileForks> forks = openForks(dir.file("font"));
    ASSERT_EQ(forks.has_value(), !row.fileItself);
    if (!forks) {
      void* data = nullptr;
      unsigned long length = 0;
      EXPECT_NE(UxStreams::ReadWholeFile(dir.file("font"), &data, &length), 0);
      EXPECT_FALSE(QCFUtils::QCFCreateCFDataRefFromPath(dir.file("font")));
      continue;
    }
    EXPECT_EQ(std::string(forks->dataFork.begin(), forks->dataFork.end()), "data fork");
    EXPECT_EQ(forks->type, 0u);
  }
}

std::string gInterferencePath;  // the file the interference resizes, and to what size
int gInterferenceSize = 0;

// A file that another process shortens or lengthens between its size being taken and its bytes
// being read is a failure, never a SIGBUS; an untouched file reads whole.
TEST(HostileFiles, AFileThatChangesSizeWhileReadFails) {
  const struct { const char* what; int sizeAfter; bool reads; } rows[] = {
      {"untouched", -1, true},
      {"truncated to nothing", 0, false},
      {"cut in the middle of a page", 70000, false},
      {"grown by a byte", 131073, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    const std::string contents(131072, 'x');
    test::writeFile(dir.file("font"), contents);
    gInterferenceSize = row.sizeAfter;
    gInterferencePath = dir.file("font");
    setReadInterferenceForTesting([](int) {
      if (gInterferenceSize >= 0) {
        ASSERT_EQ(truncate(gInterferencePath.c_str(), gInterferenceSize), 0);
      }
    });
    std::shared_ptr<const MappedFile> file = MappedFile::open(dir.file("font"));
    setReadInterferenceForTesting(nullptr);
    ASSERT_EQ(bool(file), row.reads);
    if (file) {
      EXPECT_EQ(std::string(file->bytes().begin(), file->bytes().end()), contents);
    }
  }
}

WriteStep gFailingStep = WriteStep::None;
int gFailingErrno = 0;

// Each step of a replacement failing in turn: the step and its reason reach the caller, the old
// file stays (but for the folder flush, which comes after the rename), no temporary file is left.
TEST(HostileFiles, EveryFailingWriteStepIsReportedWithItsReason) {
  const struct { WriteStep step; int error; const char* reason; bool replaced; } rows[] = {
      {WriteStep::Open, EACCES, "cannot create a temporary file beside it: Permission denied", false},
      {WriteStep::Write, ENOSPC, "cannot write the file: No space left on device", false},
      {WriteStep::Owner, EPERM, "cannot keep the file's permissions: Operation not permitted", false},
      {WriteStep::Sync, EIO, "cannot flush the file to disk: Input/output error", false},
      {WriteStep::Close, EDQUOT, "cannot close the file: Disk quota exceeded", false},
      {WriteStep::Rename, EXDEV, "cannot replace the file: Invalid cross-device link", false},
      {WriteStep::SyncFolder, EIO, "the file was replaced, but its folder could not be flushed to disk: Input/output error",
       true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.reason);
    test::ScratchDir dir;
    test::writeFile(dir.file("font"), "old");
    gFailingStep = row.step;
    gFailingErrno = row.error;
    setWriteFaultForTesting([](WriteStep step, const std::string&) { return step == gFailingStep ? gFailingErrno : 0; });
    const test::Bytes fresh = test::bytesOf("new");
    const WriteResult result = replaceFileAtomically(dir.file("font"), fresh);
    setWriteFaultForTesting(nullptr);
    EXPECT_FALSE(result);
    EXPECT_EQ(result.failedAt, row.step);
    EXPECT_EQ(result.reason(), row.reason);
    EXPECT_EQ(test::readFile(dir.file("font")), row.replaced ? "new" : "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1) << "temporary file left";
  }
}

struct stat statOf(const std::string& path, bool follow = true) {
  struct stat st {};
  EXPECT_EQ(follow ? stat(path.c_str(), &st) : lstat(path.c_str(), &st), 0) << path;
  return st;
}

// A replacement keeps mode, owner and group, writes through a symbolic link (of any depth,
// relative or absolute) to its target, and leaves other hard links with the old contents.
TEST(HostileFiles, ReplacingKeepsLinksOwnerAndGroup) {
  test::ScratchDir dir;
  fs::create_directory(dir.file("real"));
  const std::string target = dir.file("real/font");
  test::writeFile(target, "old");
  ASSERT_EQ(chmod(target.c_str(), 0604), 0);
  const bool privileged = geteuid() == 0;
  if (privileged) {
    ASSERT_EQ(chown(target.c_str(), 1234, 4321), 0);
  }
  fs::create_symlink("real/font", dir.file("relative"));
  fs::create_symlink(dir.file("relative"), dir.file("absolute to a link"));
  fs::create_hard_link(target, dir.file("hard"));
  for (const char* name : {"relative", "absolute to a link"}) {
    SCOPED_TRACE(name);
    const test::Bytes contents = test::bytesOf(name);
    ASSERT_TRUE(replaceFileAtomically(dir.file(name), contents));
    EXPECT_TRUE(fs::is_symlink(dir.file(name)));
    EXPECT_EQ(test::readFile(target), name);
    const struct stat st = statOf(target);
    EXPECT_EQ(st.st_mode & 07777, 0604u);
    if (privileged) {
      EXPECT_EQ(st.st_uid, 1234u);
      EXPECT_EQ(st.st_gid, 4321u);
    }
  }
  EXPECT_EQ(test::readFile(dir.file("hard")), "old");
}

// Nested folders with 200-byte names under `root`, deeper than PATH_MAX, made (and removed)
// one step at a time from the current folder.
class DeepFolder {
 public:
  explicit DeepFolder(const std::string& root) : root_(root), path_(root) {
    Here here;
    EXPECT_EQ(chdir(root.c_str()), 0);
    while (path_.size() <= PATH_MAX) {
      EXPECT_EQ(mkdir(kName.c_str(), 0755), 0);
      EXPECT_EQ(chdir(kName.c_str()), 0);
      path_ += "/" + kName;
      ++levels_;
    }
  }
  ~DeepFolder() {
    Here here;
    if (chdir(root_.c_str()) != 0) return;
    for (int i = 0; i < levels_; ++i) (void)!chdir(kName.c_str());
    for (const auto& entry : fs::directory_iterator(".")) unlink(entry.path().c_str());
    for (int i = 0; i < levels_; ++i) (void)!(chdir("..") == 0 && rmdir(kName.c_str()) == 0);
  }
  const std::string& path() const { return path_; }

 private:
  // Restores the current folder on leaving.
  struct Here {
    int fd = open(".", O_RDONLY | O_DIRECTORY);
    ~Here() { (void)!fchdir(fd); close(fd); }
  };
  const std::string kName = std::string(200, 'd');
  std::string root_, path_;
  int levels_ = 0;
};

// A name at the file system's 255-byte limit, and a path longer than PATH_MAX, are written,
// replaced and read back.
TEST(HostileFiles, LongNamesAndPathsAreWrittenAndRead) {
  test::ScratchDir dir;
  DeepFolder deep(dir.path());
  const struct { const char* what; std::string path; } rows[] = {
      {"255-byte name", dir.file(std::string(255, 'n'))},
      {"path beyond PATH_MAX", deep.path() + "/font"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    ASSERT_GT(row.path.size(), 255u);
    for (const char* contents : {"first", "second"}) {
      const test::Bytes bytes = test::bytesOf(contents);
      ASSERT_TRUE(replaceFileAtomically(row.path, bytes)) << replaceFileAtomically(row.path, {}).reason();
      std::shared_ptr<const MappedFile> file = MappedFile::open(row.path);
      ASSERT_TRUE(file);
      EXPECT_EQ(std::string(file->bytes().begin(), file->bytes().end()), contents);
    }
  }
}

// A binary property list of `count` arrays, each holding `refs` references to the next; the last
// is empty. Offsets and references are 4 bytes.
test::Bytes binaryChain(uint32_t count, int refs) {
  test::Bytes bytes = test::bytesOf("bplist00"), table;
  const auto u32 = [](test::Bytes& out, uint64_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(uint8_t(v >> shift));
  };
  for (uint32_t i = 0; i < count; ++i) {
    u32(table, bytes.size());
    const bool last = i + 1 == count;
    bytes.push_back(uint8_t(0xA0 | (last ? 0 : refs)));
    for (int r = 0; !last && r < refs; ++r) u32(bytes, i + 1);
  }
  const uint64_t tableAt = bytes.size();
  bytes.insert(bytes.end(), table.begin(), table.end());
  bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 4, 4});
  for (uint64_t v : {uint64_t(count), uint64_t(0), tableAt}) {
    u32(bytes, v >> 32);
    u32(bytes, v & 0xFFFFFFFF);
  }
  return bytes;
}

// Binary property lists that libplist would unfold recursively past the depth limit, or to 2^40
// nodes through shared objects, are refused before it sees them; a short chain reads.
TEST(HostileFiles, BinaryPropertyListsThatUnfoldTooFarAreRefused) {
  const struct { const char* what; test::Bytes bytes; bool reads; } rows[] = {
      {"chain of 100,000 arrays", binaryChain(100000, 1), false},
      {"40 arrays, each referring twice to the next", binaryChain(40, 2), false},
      {"chain of 10 arrays", binaryChain(10, 1), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(parsePropertyList(ByteSpan(row.bytes)).has_value(), row.reads);
  }
}

}  // namespace
}  // namespace typeprint
