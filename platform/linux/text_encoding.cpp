#include "platform/linux/text_encoding.h"

#include <unicode/locid.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <memory>
#include <vector>

namespace typeprint {
namespace {

// ICU's names for the encodings. The ibm-943 table (Shift-JIS with the IBM/Microsoft
// extensions) stands in for Mac Japanese, which ICU does not carry.
const char* converterName(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::MacRoman: return "macintosh";
    case TextEncoding::MacJapanese: return "ibm-943_P15A-2003";
    case TextEncoding::ASCII: return "US-ASCII";
    case TextEncoding::UTF8: return "UTF-8";
    case TextEncoding::Invalid: return "UTF-8";
    case TextEncoding::UTF16BE: return "UTF-16BE";
  }
  return nullptr;
}

struct ConverterCloser {
  void operator()(UConverter* c) const { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

// A converter that stops at the first invalid or unmappable sequence instead of substituting.
Converter strictConverter(TextEncoding encoding) {
  const char* name = converterName(encoding);
  if (!name) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  Converter c(ucnv_open(name, &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setToUCallBack(c.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(c.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  if (U_FAILURE(status)) return nullptr;
  return c;
}

std::optional<std::u16string> toUTF16(ByteSpan bytes, TextEncoding encoding) {
  if (bytes.empty()) return std::u16string();
  Converter c = strictConverter(encoding);
  if (!c) return std::nullopt;
  // Every encoding here yields at most one UTF-16 unit per input byte, plus one spare.
  std::u16string out(bytes.size + 1, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t n = ucnv_toUChars(c.get(), reinterpret_cast<UChar*>(&out[0]), int32_t(out.size()),
                            reinterpret_cast<const char*>(bytes.data), int32_t(bytes.size), &status);
  if (U_FAILURE(status) || n < 0) return std::nullopt;
  out.resize(size_t(n));
  return out;
}

std::optional<std::string> fromUTF16(const std::u16string& text, TextEncoding encoding) {
  if (text.empty()) return std::string();
  Converter c = strictConverter(encoding);
  if (!c) return std::nullopt;
  std::string out(text.size() * 4 + 4, '\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t n = ucnv_fromUChars(c.get(), &out[0], int32_t(out.size()),
                              reinterpret_cast<const UChar*>(text.data()), int32_t(text.size()), &status);
  if (U_FAILURE(status) || n < 0) return std::nullopt;
  out.resize(size_t(n));
  return out;
}

}  // namespace

std::optional<std::u16string> utf8ToUTF16(const std::string& utf8) {
  return toUTF16(ByteSpan(reinterpret_cast<const uint8_t*>(utf8.data()), utf8.size()), TextEncoding::UTF8);
}

std::optional<std::string> utf16ToUTF8(const std::u16string& utf16) {
  return fromUTF16(utf16, TextEncoding::UTF8);
}

std::optional<std::string> decodeToUTF8(ByteSpan bytes, TextEncoding encoding) {
  std::optional<std::u16string> units = toUTF16(bytes, encoding);
  if (!units) return std::nullopt;
  return utf16ToUTF8(*units);
}

std::optional<std::string> encodeFromUTF8(const std::string& utf8, TextEncoding encoding) {
  std::optional<std::u16string> units = utf8ToUTF16(utf8);
  if (!units) return std::nullopt;
  return fromUTF16(*units, encoding);
}

std::string toLowerUnicode(const std::string& utf8) {
  if (!utf8ToUTF16(utf8)) return utf8;
  icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
  text.toLower(icu::Locale::getRoot());
  std::string out;
  text.toUTF8String(out);
  return out;
}

}  // namespace typeprint
