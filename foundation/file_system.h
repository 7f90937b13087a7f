// Acting on files and folders: UxFileSystem's operations on locations, and the free functions
// on path strings (existence, copy, move, remove, folder trees, the trash).
#pragma once

#include <cstdint>

#include "foundation/file_location.h"
#include "foundation/ux_string.h"

namespace typeprint {

class UxFileSystem {
 public:
  static constexpr uint32_t kDefaultFileType = tag("TEXT");
  static constexpr uint32_t kDefaultCreatorType = tag("ttxt");

  // The size the Finder shows: data fork plus resource fork; 0 when the file cannot be read.
  static uint64_t GetFileSize(const UxFileSpecification& file);
  // Seconds since 1970-01-01 UTC; false when the file is missing.
  static bool GetFileModDate(const UxFileSpecification& file, int64_t& seconds);
  static bool SetFileModDate(const UxFileSpecification& file, int64_t seconds);

  // A locked file is one its owner may not write. Setting read-only clears every write bit;
  // clearing it gives the owner write permission back.
  static bool SetReadOnly(const UxFileSpecification& file, bool readOnly);
  static bool SetReadOnly(const UxDirectorySpecification& dir, bool readOnly);  // does nothing
  static bool IsLockedFile(const UxFileSpecification& file);

  static bool IsValidFile(const UxFileSpecification& file);
  static bool IsValidDirectory(const UxDirectorySpecification& dir);
  static bool IsValidDrive(const UxDirectorySpecification& dir);  // the folder exists
  static bool IsRootDirectory(const UxDirectorySpecification& dir);

  // Creates an empty file; false when something already exists there.
  static bool CreateFile(const UxFileSpecification& file);
  static bool CreateDirectory(const UxDirectorySpecification& dir);
  static bool DeleteFile(const UxFileSpecification& file);
  static bool DeleteDirectory(const UxDirectorySpecification& dir);  // an empty folder only

  // Copies and moves never replace an existing target.
  static bool CopyFile(const UxFileSpecification& from, const UxFileSpecification& to);
  static bool CopyDirectory(const UxDirectorySpecification& from, const UxDirectorySpecification& to);
  static bool MoveFile(const UxFileSpecification& from, const UxFileSpecification& to);
  static bool MoveDirectory(const UxDirectorySpecification& from, const UxDirectorySpecification& to);
  // True when the source exists, the target does not, and the target's folder does.
  static bool CanMoveFile(const UxFileSpecification& from, const UxFileSpecification& to);
  static bool CanMoveDirectory(const UxDirectorySpecification& from, const UxDirectorySpecification& to);

  static bool GetCurrentDirectory(UxDirectorySpecification& dir);
  static bool SetCurrentDirectory(const UxDirectorySpecification& dir);
  // Bytes available to the user on the folder's file system; 0 when unknown.
  static uint64_t GetFreeByteCountOnDrive(const UxDirectorySpecification& dir);

  static short TranslateError(short err) { return err; }
};

// Whether anything exists at `path` (symbolic links are followed).
bool OSPathExists(const UxString& path);
// Copies a file, or a folder with everything in it; with `overwrite` an existing target is
// removed first, otherwise it makes the copy fail.
bool OSCopyFile(const UxString& from, const UxString& to, bool overwrite);
// Moves or renames; across file systems the item is copied, then the original removed. Never
// replaces an existing target.
bool OSMoveFile(const UxString& from, const UxString& to);
// With `force`, first makes the file mode 0777; then DeleteFile(path, force), or remove(3)
// when that fails. 0 on success, -1 otherwise.
int OSRemoveFile(const UxString& path, bool force);
// rmdir(2): 0 or -1.
int OSRemoveDir(const UxString& path);
// Creates one folder; true when a folder is there afterwards.
bool OSCreateDir(const UxString& path);
// Creates every missing folder up to the last "/" of `path`: "/a/b/" makes /a/b, "/a/b/f"
// makes /a/b and leaves the file name alone.
bool MakeFullPath(const UxString& path);
// Removes a folder and everything in it (links are removed, not followed); with `keepRoot`
// only the contents go.
bool OSRemoveDirectoryTree(const UxString& path, bool keepRoot = false);
// True for a readable folder without entries; with `ignoreHidden`, names starting with "."
// do not count.
bool FolderIsEmpty(const UxString& path, bool ignoreHidden = false);
// Removes the folder when it is empty; true when it was removed.
bool DeleteIfEmpty(const UxString& path);
// Removes the folder holding `path`, then its parent and so on, while each is empty and lies
// strictly inside `root`. Returns the number of folders removed.
int DeleteEmptyParentFolders(const UxString& path, const UxString& root);
// `folder` must end with "/"; true when `file` is longer and begins with it, ignoring case.
bool FileIsDescendantOfFolder(const UxString& file, const UxString& folder);
// See UxFileSystemParser::ReplaceIllegalFilenameChars and ::IsPathAMacBundle.
void ReplaceIllegalFilenameChars(UxString* name);
bool IsPathAMacBundle(const UxString& path);

// Edits on the last path component. The name part is the component before its extension.
UxString GetFileNamePart(const UxString& path);      // "/a/b.tar.gz" -> "b.tar.gz"
UxString ExtractFileNamePart(const UxString& path);  // "/a/b.tar.gz" -> "b"
UxString GetFileExtension(const UxString& path);     // "/a/b.tar.gz" -> "tar.gz"
UxString SetFileExtension(const UxString& path, const UxString& ext);
UxString ReplaceFileNamePart(const UxString& path, const UxString& name);  // keeps the extension
UxString ReplaceLastPathComponent(const UxString& path, const UxString& component);

// "~" and "~/x" expand to the home folder, "~user/x" to that user's; anything else, or an
// unknown user, is returned unchanged.
UxString ExpandTildeInPath(const UxString& path);
// Gives the owner write permission back (see UxFileSystem::SetReadOnly).
bool UnlockFile(const UxString& path);
// True when nothing is at `path` afterwards: a missing path, or an item unlocked and removed
// (a folder with its contents). When removal fails and `trashOnFailure` is set, the result is
// that of MoveToTrash.
bool DeleteFile(const UxString& path, bool trashOnFailure = true);
// Moves the item into the user's trash ($XDG_DATA_HOME/Trash). True for a missing path.
bool MoveToTrash(const UxString& path);
// The same into the trash folder `trash` (holding files/ and info/, created when missing):
// the item becomes files/NAME, or NAME.1, NAME.2 ... when taken, and info/NAME.trashinfo
// records its original path and the deletion date.
bool MoveToTrashFolder(const UxString& path, const UxString& trash);
// The main program's executable.
bool GetAppPath(UxString* path);

}  // namespace typeprint
