#include "foundation/errors.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <sstream>

#include "foundation/ux_string.h"

namespace typeprint {

OSErrException::OSErrException(const char* message, long code)
    : std::runtime_error(ErrMsgWithValue(message ? message : "", code)), code_(code) {}
OSErrException::~OSErrException() = default;

UXFileSystemException::~UXFileSystemException() = default;

DataRetrieveError::DataRetrieveError(const char* what) : std::runtime_error(what ? what : "") {}
DataRetrieveError::~DataRetrieveError() = default;

std::string ErrMsgWithValue(std::string message, long value, bool) {
  return message + ":" + ValueString(value);
}

std::string ValueString(long value, const std::locale* locale) {
  std::ostringstream s;
  s.imbue(locale ? *locale : std::locale::classic());
  s << value;
  return s.str();
}

void AppError_Failure(applicationErrorEnumeration e) { throw std::runtime_error(UxString(2, e)); }

std::string AppErrorString(long code) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%ld", code);
  return buffer;
}

void OutputFormattedDebugString(const char* format, ...) {
  char buffer[2048];
  va_list args;
  va_start(args, format);
  std::vsnprintf(buffer, sizeof buffer, format, args);
  va_end(args);
  std::fputs(buffer, stderr);
  std::fputc('\n', stderr);
  std::fflush(stderr);
}

// Writing byte by byte gives the same memory as whole aligned words holding DE AD BE EF
// followed by the leftover bytes, and needs no host byte-order handling.
void _fill_deadbeef_(void* block, unsigned long size) {
  static const uint8_t kPattern[4] = {0xDE, 0xAD, 0xBE, 0xEF};
  uint8_t* bytes = static_cast<uint8_t*>(block);
  for (unsigned long i = 0; i < size; ++i) bytes[i] = kPattern[i % 4];
}

}  // namespace typeprint
