// The foundation's exceptions, the application-error helpers, the debug log line and the
// memory fill that marks freed or uninitialised blocks. These exceptions pass through the
// exported functions to the caller on purpose.
#pragma once

#include <locale>
#include <stdexcept>
#include <string>

namespace typeprint {

// File-manager error codes, carried by OSErrException.
enum : long {
  kNoErr = 0,
  kIOErr = -36,
  kBadNameErr = -37,
  kFileNotFoundErr = -43,
};

// A failed platform call: what() is the message, ":" and the code, e.g. "Open failed:-36".
class OSErrException : public std::runtime_error {
 public:
  OSErrException(const char* message, long code);
  ~OSErrException() override;
  long code() const { return code_; }

 private:
  long code_;
};

// Raised by file locations; differs from OSErrException only in its type.
class UXFileSystemException : public OSErrException {
 public:
  using OSErrException::OSErrException;
  ~UXFileSystemException() override;
};

// A required part of a data file is missing; what() is the text given, unchanged.
class DataRetrieveError : public std::runtime_error {
 public:
  explicit DataRetrieveError(const char* what);
  ~DataRetrieveError() override;
};

// The message, ":" and the value in decimal, with nothing in between. The flag has no effect.
std::string ErrMsgWithValue(std::string message, long value, bool unused = false);

// The value in decimal; with a locale, formatted in it (which may add grouping).
std::string ValueString(long value, const std::locale* locale = nullptr);

// Entries of string list 2, the application error texts.
enum applicationErrorEnumeration : short {
  kAppErrUnexpected = 1,
  kAppErrOutOfMemory,
  kAppErrFileNotFound,
  kAppErrFileRead,
  kAppErrFileWrite,
  kAppErrDamagedFont,
  kAppErrDataFile,
};

// Throws std::runtime_error carrying entry `e` of string list 2.
[[noreturn]] void AppError_Failure(applicationErrorEnumeration e);

// The code as printf's "%ld" writes it.
std::string AppErrorString(long code);

// Formats like printf into 2048 bytes (longer output is cut to 2047 characters) and writes it
// to standard error as one line.
void OutputFormattedDebugString(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Fills the block with the repeating bytes DE AD BE EF, DE first, in memory order on any host.
void _fill_deadbeef_(void* block, unsigned long size);

}  // namespace typeprint
