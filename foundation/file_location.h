// Naming files and folders: path-string parsing (UxFileSystemParser), file and folder locations
// (UxFileSpecification, UxDirectorySpecification), folder enumeration (UxFileFind) and an
// access-permission value (UxAccessPermission). Paths are POSIX paths in UTF-8.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/ux_string.h"
#include "platform/linux/file_system.h"

namespace typeprint {

class UxDirectorySpecification;

// Static path-string rules. None of them touches the file system unless its comment says so.
class UxFileSystemParser {
 public:
  static constexpr char kPathDelimiter = '/';
  static constexpr const char* kPathDelimiterString = "/";
  static constexpr char kExtensionDelimiter = '.';
  static constexpr const char* kExtensionDelimiterString = ".";

  static bool EndsWithDelimiter(const UxString& s);
  static void AddDelimiter(UxString& s);
  // The first "." after the last "/" (from the start when there is none), so the extension of
  // "archive.tar.gz" is "tar.gz" and "/a.b/c" has none. `pos` becomes its index or npos.
  static bool HasExtension(const UxString& path, size_t& pos);
  // The text after that dot; false and empty text when there is none.
  static bool GetExtension(const UxString& path, UxString& ext);
  // `path` cut at that dot (when there is one), then "." and `ext`.
  static void ChangeExtension(const UxString& path, const UxString& ext, UxString& out);
  // The parent folder with its "/": "/a/b/" gives "/a/", "b" gives "", "/" stays "/".
  static UxString GetPathDeletingLastPathComponent(const UxString& path);
  // Just past the last "/", or the whole text; null gives null.
  static const char* FindFileName(const char* path);
  // The last path component; false when it is empty.
  static bool GetFileName(const UxString& path, UxString& name);
  // Sets `volume` to 0. True unless the path lies under "/Volumes/" with at least one more byte.
  static bool IsPathOnBootVolume(const UxString& path, short& volume);
  // True for an existing item whose extension (from the first dot of its last component, one
  // trailing "/" ignored) is one of the package extensions, compared with case. Sets `volume`
  // to 0.
  static bool IsPathAMacBundle(const UxString& path, short& volume);
  // Replaces each byte of a file name that is unsafe in names, a NUL, or a leading "." with "_".
  static void ReplaceIllegalFilenameChars(UxString* name);
  // Makes `s` absolute against the working folder; empty when that cannot be done.
  static void ExpandPartialPath(UxString& s);

  // Folder types of MacGetStandardFolder.
  static constexpr uint32_t kPreferencesFolderType = tag("pref");
  static constexpr uint32_t kApplicationSupportFolderType = tag("asup");
  static constexpr uint32_t kDocumentsFolderType = tag("docs");
  static constexpr uint32_t kDesktopFolderType = tag("desk");
  static constexpr uint32_t kTemporaryFolderType = tag("temp");
  static constexpr uint32_t kTrashFolderType = tag("trsh");
  static constexpr uint32_t kApplicationsFolderType = tag("apps");
  // The user's folder of that type, with "/" added, created first when `create` is set.
  // 0, or -43 when the folder is missing, or -1 for an unknown type. `domain` is not used: every
  // folder is the current user's.
  static long MacGetStandardFolder(uint32_t folderType, short domain, UxString& out, bool create);

  // The standard folders, as a path ending with "/" (false when unknown) and as a location
  // (an invalid one when unknown).
  static bool GetUserPreferencesDirectory(UxString& path);
  static bool GetUserPreferencesDirectory(UxDirectorySpecification& dir);
  static bool GetUserAppDataDirectory(UxString& path);
  static bool GetUserAppDataDirectory(UxDirectorySpecification& dir);
  static bool GetUserDocumentsDirectory(UxString& path);
  static bool GetUserDocumentsDirectory(UxDirectorySpecification& dir);
  static bool GetUserDesktopDirectory(UxString& path);
  static bool GetUserDesktopDirectory(UxDirectorySpecification& dir);
  static bool GetApplicationDirectory(UxString& path);
  static bool GetApplicationDirectory(UxDirectorySpecification& dir);
  static bool GetTempDirectory(UxString& path);
  static bool GetTempDirectory(UxDirectorySpecification& dir);
  static bool GetWorkingDirectory(UxString& path);
  static bool GetWorkingDirectory(UxDirectorySpecification& dir);

  static bool PathExists(const UxString& path);
};

// A file location: its full path, plus the Finder type and creator read once on demand.
class UxFileSpecification {
 public:
  UxFileSpecification();
  // The same as Set; an unusable path gives an invalid location.
  explicit UxFileSpecification(const UxString& path);
  explicit UxFileSpecification(const char* path);
  UxFileSpecification(const UxDirectorySpecification& dir, const UxString& name);
  virtual ~UxFileSpecification();
  UxFileSpecification(const UxFileSpecification&) = default;
  UxFileSpecification& operator=(const UxFileSpecification&) = default;

  // Throws UXFileSystemException "Path not found in UxFileSpecification::GetName" (-36) when
  // the path cannot be resolved.
  UxFileSpecification& operator=(const UxString& path);

  // Takes `path`, made absolute. It resolves when the item exists or its parent folder does;
  // otherwise the location becomes invalid and the result is false.
  bool Set(const UxString& path);
  // `name` inside `dir`; false (and invalid) for an invalid folder or a name that is empty,
  // "." or "..", or holds "/".
  bool Set(const UxDirectorySpecification& dir, const UxString& name);
  void SetInvalid();
  bool IsValid() const { return !path_.empty(); }

  const UxString& GetFullPath() const { return path_; }
  void GetFullPath(UxString& out) const { out = path_; }
  // The path and its NUL into `buffer`; false, and nothing written, when it does not fit.
  bool GetFullPathUTF8(char* buffer, size_t size) const;
  // The last path component. Throws UXFileSystemException "Bad filename in
  // UxFileSpecification::GetName" (-37) when the location is invalid or names no file.
  void GetName(UxString& name) const;
  UxString GetName() const;
  // The name and its NUL into `buffer`; false when it does not fit. Throws as GetName.
  bool GetNameUTF8(char* buffer, size_t size) const;
  // The parent folder's path with its "/".
  void GetLocationUTF8(UxString& out) const;
  void GetParentDirectory(UxDirectorySpecification& dir) const;

  // The file's Finder type and creator, read once through the fork locator and cached.
  // 0 on success, -43 when the file cannot be opened (the defaults are given then).
  short MacGetTypeAndCreator(uint32_t& type, uint32_t& creator) const;

  // 0 gives 0 and -43 is returned as it is; any other code throws UXFileSystemException
  // "Error in UxFileSpecification::GetName" carrying it.
  short FailOnError(short err) const;

  bool operator==(const UxFileSpecification& other) const { return path_ == other.path_; }
  bool operator!=(const UxFileSpecification& other) const { return !(*this == other); }

 private:
  friend class UxDirectorySpecification;
  UxString path_;
  mutable uint32_t typeUnknown_ = 1;
  mutable uint32_t fileType_;
  mutable uint32_t creator_;
};

// A folder location; its path always ends with "/".
class UxDirectorySpecification {
 public:
  UxDirectorySpecification() = default;
  explicit UxDirectorySpecification(const UxString& path);
  explicit UxDirectorySpecification(const char* path);
  UxDirectorySpecification(const UxDirectorySpecification& parent, const UxString& name);
  virtual ~UxDirectorySpecification();
  UxDirectorySpecification(const UxDirectorySpecification&) = default;
  UxDirectorySpecification& operator=(const UxDirectorySpecification&) = default;
  // Throws as UxFileSpecification's assignment does.
  UxDirectorySpecification& operator=(const UxString& path);

  // As UxFileSpecification::Set, then the delimiter is added.
  bool Set(const UxString& path);
  bool Set(const UxDirectorySpecification& parent, const UxString& name);
  void SetInvalid() { file_.SetInvalid(); }
  bool IsValid() const { return file_.IsValid(); }

  const UxString& GetFullPath() const { return file_.GetFullPath(); }
  void GetFullPath(UxString& out) const { out = file_.GetFullPath(); }
  bool GetFullPathUTF8(char* buffer, size_t size) const { return file_.GetFullPathUTF8(buffer, size); }
  // The folder's own name, without "/". Throws UXFileSystemException "Bad filename in
  // UxDirectorySpecification::GetName" (-37) when invalid or for the root folder.
  void GetName(UxString& name) const;
  UxString GetName() const;
  void GetLocationUTF8(UxString& out) const;
  // False, and `dir` invalid, for the root folder.
  bool GetParentDirectory(UxDirectorySpecification& dir) const;
  const UxFileSpecification& GetFileSpecification() const { return file_; }

  bool operator==(const UxDirectorySpecification& other) const { return file_ == other.file_; }
  bool operator!=(const UxDirectorySpecification& other) const { return !(*this == other); }

 private:
  void AddDelimiter();
  UxFileSpecification file_;
};

// How a file is to be opened and what others are denied meanwhile.
class UxAccessPermission {
 public:
  enum Access { kReadAccess, kWriteAccess, kReadWriteAccess };
  enum Deny { kDenyNone, kDenyRead, kDenyWrite, kDenyReadWrite };

  UxAccessPermission(Access access = kReadAccess, Deny deny = kDenyNone) : access_(access), deny_(deny) {}
  virtual ~UxAccessPermission();
  UxAccessPermission(const UxAccessPermission&) = default;
  UxAccessPermission& operator=(const UxAccessPermission&) = default;

  void GetPermission(Access& access, Deny& deny) const {
    access = access_;
    deny = deny_;
  }
  bool operator==(const UxAccessPermission& o) const { return access_ == o.access_ && deny_ == o.deny_; }
  bool operator!=(const UxAccessPermission& o) const { return !(*this == o); }

 private:
  Access access_;
  Deny deny_;
};

// Walks the entries of one folder, "." and ".." included.
class UxFileFind {
 public:
  UxFileFind() = default;
  virtual ~UxFileFind();
  UxFileFind(const UxFileFind&) = delete;
  UxFileFind& operator=(const UxFileFind&) = delete;

  // Opens the folder `folder`; false when it cannot be read.
  bool FindFile(const UxString& folder);
  // Moves to the next entry; false once none remain.
  bool FindNextFile();
  UxString GetFileName() const { return name_; }
  UxString GetFileTitle() const { return name_; }
  // The folder's path, with its "/", followed by the entry's name.
  UxString GetFilePath() const { return root_ + name_; }
  UxString GetRoot() const { return root_; }
  bool IsDirectory() const;
  bool IsDots() const { return name_ == "." || name_ == ".."; }
  void Close() { reader_.close(); }
  void CloseContext() { Close(); }

  // Attributes that POSIX folders do not report; they read as 0 or false.
  uint64_t GetLength() const { return 0; }
  bool IsReadOnly() const { return false; }
  bool IsCompressed() const { return false; }
  bool IsSystem() const { return false; }
  bool IsHidden() const { return false; }
  bool IsTemporary() const { return false; }
  bool IsNormal() const { return false; }
  bool IsArchived() const { return false; }

 private:
  posix::DirectoryReader reader_;
  UxString root_;
  UxString name_;
};

}  // namespace typeprint
