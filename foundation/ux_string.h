// UxString: the library's one string type. A byte string (UTF-8 whenever the text came from
// Unicode) whose comparisons ignore ASCII case, with conversions to Pascal strings, wide
// strings, decimal numbers and legacy byte encodings.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/text_encoding.h"

namespace typeprint {

class UxString : public std::string {
 public:
  UxString() = default;
  UxString(const char* s) : std::string(s ? s : "") {}  // NOLINT: implicit by design
  UxString(const std::string& s) : std::string(s) {}    // NOLINT
  UxString(const UxString& other);
  UxString(unsigned long value) { MakeValueString(value); }  // NOLINT
  UxString(long value) { MakeValueString(value); }           // NOLINT
  // Entry `index` (from 1) of the library's string list `listID`.
  UxString(short listID, short index);
  virtual ~UxString();

  UxString& operator=(const UxString& other);
  UxString& operator=(const char* s) { assign(s ? s : ""); return *this; }
  UxString& operator=(const std::string& s) { assign(s); return *this; }

  // Decodes NUL-terminated bytes in `encoding` into UTF-8. False, text unchanged, when the
  // bytes are not valid in that encoding; a null pointer empties the text and gives false.
  bool Set(const char* bytes, TextEncoding encoding);
  // The same for a counted byte range (UTF-16 text holds NUL bytes).
  bool Set(ByteSpan bytes, TextEncoding encoding);
  // The text becomes the p[0] bytes after the length byte.
  void setPStr(const unsigned char* p);
  static UxString LoadResource(short listID, short index);

  operator const char*() const { return c_str(); }  // NOLINT
  // Length byte min(length, 255) then that many bytes, no terminator; `out` holds 256 bytes.
  unsigned char* GetPascalString(unsigned char* out) const;
  // The same into the object's own buffer, valid until the next call or destruction.
  unsigned char* GetPascalString() const;
  // The text's bytes read in `encoding`, as UTF-8 (Invalid: the system encoding, UTF-8);
  // nothing when the bytes are not valid in that encoding.
  std::optional<UxString> GetUnicode(TextEncoding encoding) const;
  // The text re-encoded in `encoding` (Invalid: the system encoding, UTF-8); nothing when the
  // bytes are not valid UTF-8 or not representable.
  std::optional<std::string> GetEncoded(TextEncoding encoding) const;
  // The text read as UTF-8, one wchar_t per UTF-16 unit; empty when not valid UTF-8.
  operator const wchar_t*() const;  // NOLINT

  void MakeValueString(unsigned long v);
  void MakeValueString(long v);

  // Comparisons ignore ASCII case and stop at the first NUL, as strcasecmp does.
  int CompareNoCase(const std::string& other) const;
  static int CompareNoCase(const std::string& a, const std::string& b);

  UxString& ToUpper();
  UxString& ToLower();
  // Removes trailing spaces and tabs; true when anything was removed.
  bool TrimWhitespaceFromEnd();

 private:
  mutable std::wstring wide_;
  mutable std::unique_ptr<unsigned char[]> pascal_;
};

bool operator==(const UxString& a, const std::string& b);
bool operator==(const std::string& a, const UxString& b);
bool operator==(const UxString& a, const UxString& b);
bool operator==(const UxString& a, const char* b);
bool operator!=(const UxString& a, const std::string& b);
bool operator!=(const UxString& a, const UxString& b);
bool operator!=(const UxString& a, const char* b);
bool operator<(const UxString& a, const std::string& b);
bool operator<(const UxString& a, const UxString& b);
bool operator<=(const UxString& a, const std::string& b);
bool operator>(const UxString& a, const std::string& b);
bool operator>=(const UxString& a, const std::string& b);

unsigned long ReplaceAll(UxString* s, char from, char to);
unsigned long ReplaceAll(UxString* s, const char* from, const char* to);
char* strncpyNULLTerminate(char* dst, const char* src, unsigned long size);

std::wstring UTF16ToWide(const std::u16string& units);
std::wstring UTF8ToWide(const UxString& s);
unsigned long WideToUTF8(const std::wstring& in, std::string* out);
UxString WideToUTF8(const std::wstring& in);
// Inert on purpose: both return an empty string whatever the input.
std::wstring DecomposedToPrecomposed(const std::wstring& in);
std::wstring PrecomposedToDecomposed(const std::wstring& in);

}  // namespace typeprint
