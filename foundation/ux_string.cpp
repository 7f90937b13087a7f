#include "foundation/ux_string.h"

#include <strings.h>

#include <cctype>
#include <cstring>
#include <locale>
#include <sstream>

namespace typeprint {
namespace {

constexpr size_t kPascalBufferSize = 256;

// The library's own string lists, by list ID, stored as Mac Roman bytes the way a string-list
// resource holds them. List 2 holds the application error texts, indexed by
// applicationErrorEnumeration (foundation/errors.h).
struct StringList {
  short id;
  std::initializer_list<const char*> entries;
};
const StringList kStringLists[] = {
    {2,
     {"An unexpected error occurred.", "Out of memory.", "The file could not be found.",
      "The file could not be read.", "The file could not be written.", "The font file is damaged.",
      "The data file is missing or damaged."}},
};

}  // namespace

UxString::UxString(const UxString& other) : std::string(other), wide_(other.wide_) {}

UxString::UxString(short listID, short index) { *this = LoadResource(listID, index); }

UxString::~UxString() = default;

UxString& UxString::operator=(const UxString& other) {
  if (this == &other) return *this;
  assign(other);
  wide_ = other.wide_;
  // The Pascal buffer travels only when both sides have one; otherwise the target keeps its own.
  if (pascal_ && other.pascal_) std::memcpy(pascal_.get(), other.pascal_.get(), kPascalBufferSize);
  return *this;
}

bool UxString::Set(const char* bytes, TextEncoding encoding) {
  if (!bytes) {
    clear();
    return false;
  }
  return Set(ByteSpan(reinterpret_cast<const uint8_t*>(bytes), std::strlen(bytes)), encoding);
}

bool UxString::Set(ByteSpan bytes, TextEncoding encoding) {
  std::optional<std::string> utf8 = decodeToUTF8(bytes, encoding);
  if (!utf8) return false;
  assign(*utf8);
  return true;
}

void UxString::setPStr(const unsigned char* p) { assign(reinterpret_cast<const char*>(p + 1), p[0]); }

UxString UxString::LoadResource(short listID, short index) {
  for (const StringList& list : kStringLists) {
    if (list.id != listID) continue;
    if (index < 1 || size_t(index) > list.entries.size()) return UxString();
    UxString text;
    if (!text.Set(list.entries.begin()[index - 1], TextEncoding::MacRoman)) return UxString();
    return text;
  }
  return UxString();
}

unsigned char* UxString::GetPascalString(unsigned char* out) const {
  size_t n = std::min<size_t>(length(), 255);
  out[0] = static_cast<unsigned char>(n);
  std::memcpy(out + 1, data(), n);
  return out;
}

unsigned char* UxString::GetPascalString() const {
  if (!pascal_) pascal_.reset(new unsigned char[kPascalBufferSize]());
  return GetPascalString(pascal_.get());
}

std::optional<UxString> UxString::GetUnicode(TextEncoding encoding) const {
  UxString text;
  if (!text.Set(ByteSpan(reinterpret_cast<const uint8_t*>(data()), length()), encoding)) return std::nullopt;
  return text;
}

std::optional<std::string> UxString::GetEncoded(TextEncoding encoding) const {
  return encodeFromUTF8(*this, encoding);
}

UxString::operator const wchar_t*() const {
  wide_ = UTF8ToWide(*this);
  return wide_.c_str();
}

// The classic locale keeps the digits free of grouping whatever the process's global locale is.
void UxString::MakeValueString(unsigned long v) {
  std::ostringstream s;
  s.imbue(std::locale::classic());
  s << v;
  assign(s.str());
}

void UxString::MakeValueString(long v) {
  std::ostringstream s;
  s.imbue(std::locale::classic());
  s << v;
  assign(s.str());
}

int UxString::CompareNoCase(const std::string& other) const { return strcasecmp(c_str(), other.c_str()); }

int UxString::CompareNoCase(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str());
}

UxString& UxString::ToUpper() {
  for (char& c : *this) c = char(std::toupper(static_cast<unsigned char>(c)));
  return *this;
}

UxString& UxString::ToLower() {
  for (char& c : *this) c = char(std::tolower(static_cast<unsigned char>(c)));
  return *this;
}

bool UxString::TrimWhitespaceFromEnd() {
  size_t end = find_last_not_of(" \t");
  size_t keep = end == npos ? 0 : end + 1;
  if (keep == length()) return false;
  erase(keep);
  return true;
}

bool operator==(const UxString& a, const std::string& b) { return a.CompareNoCase(b) == 0; }
bool operator==(const std::string& a, const UxString& b) { return b.CompareNoCase(a) == 0; }
bool operator==(const UxString& a, const UxString& b) { return a.CompareNoCase(b) == 0; }
bool operator==(const UxString& a, const char* b) { return a.CompareNoCase(b ? b : "") == 0; }
bool operator!=(const UxString& a, const std::string& b) { return !(a == b); }
bool operator!=(const UxString& a, const UxString& b) { return !(a == b); }
bool operator!=(const UxString& a, const char* b) { return !(a == b); }
bool operator<(const UxString& a, const std::string& b) { return a.CompareNoCase(b) < 0; }
bool operator<(const UxString& a, const UxString& b) { return a.CompareNoCase(b) < 0; }
bool operator<=(const UxString& a, const std::string& b) { return a.CompareNoCase(b) <= 0; }
bool operator>(const UxString& a, const std::string& b) { return a.CompareNoCase(b) > 0; }
bool operator>=(const UxString& a, const std::string& b) { return a.CompareNoCase(b) >= 0; }

unsigned long ReplaceAll(UxString* s, char from, char to) {
  unsigned long count = 0;
  for (char& c : *s) {
    if (c == from) {
      c = to;
      ++count;
    }
  }
  return count;
}

unsigned long ReplaceAll(UxString* s, const char* from, const char* to) {
  const size_t fromLength = std::strlen(from), toLength = std::strlen(to);
  if (fromLength == 0) return 0;
  unsigned long count = 0;
  for (size_t pos = s->find(from); pos != std::string::npos; pos = s->find(from, pos)) {
    s->replace(pos, fromLength, to);
    pos += toLength;  // never rescan the inserted text
    ++count;
  }
  return count;
}

char* strncpyNULLTerminate(char* dst, const char* src, unsigned long size) {
  if (size == 0) return dst;
  std::strncpy(dst, src, size - 1);
  dst[size - 1] = '\0';
  return dst;
}

std::wstring UTF16ToWide(const std::u16string& units) {
  std::wstring out;
  for (char16_t u : units) {
    if (u == 0) break;  // copying stops at the first zero unit
    out.push_back(wchar_t(u));
  }
  return out;
}

std::wstring UTF8ToWide(const UxString& s) {
  std::optional<std::u16string> units = utf8ToUTF16(s.c_str());
  return units ? UTF16ToWide(*units) : std::wstring();
}

unsigned long WideToUTF8(const std::wstring& in, std::string* out) {
  std::u16string units;
  units.reserve(in.size());
  for (wchar_t w : in) units.push_back(char16_t(uint32_t(w) & 0xFFFF));
  std::optional<std::string> utf8 = utf16ToUTF8(units);
  if (!utf8) return 0;
  *out = *utf8;
  return out->length();
}

UxString WideToUTF8(const std::wstring& in) {
  std::string out;
  WideToUTF8(in, &out);
  return UxString(out);
}

std::wstring DecomposedToPrecomposed(const std::wstring&) { return std::wstring(); }
std::wstring PrecomposedToDecomposed(const std::wstring&) { return std::wstring(); }

}  // namespace typeprint
