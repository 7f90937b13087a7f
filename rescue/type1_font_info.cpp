#include "rescue/type1_font_info.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace typeprint::rescue {
namespace {

constexpr size_t kMaxNestedString = 64;  // brackets deeper than this end the value

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\0'; }
bool isDelimiter(char c) { return isSpace(c) || std::strchr("()<>[]{}/%", c) != nullptr; }

// The position just after the first "/key" that is a whole name; npos when there is none.
size_t findKey(std::string_view text, std::string_view key) {
  for (size_t at = text.find(key); at != std::string_view::npos; at = text.find(key, at + 1)) {
    const size_t end = at + key.size();
    if (end == text.size() || isDelimiter(text[end])) return end;
  }
  return std::string_view::npos;
}

size_t skipSpaces(std::string_view text, size_t at) {
  while (at < text.size() && isSpace(text[at])) ++at;
  return at;
}

// A PostScript string literal starting at `at` ("("), its escapes resolved.
std::string readString(std::string_view text, size_t at) {
  std::string out;
  size_t depth = 0;
  for (size_t i = at; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '(') {
      if (depth++ > 0) out.push_back(c);
      if (depth > kMaxNestedString) break;
    } else if (c == ')') {
      if (--depth == 0) break;
      out.push_back(c);
    } else if (c == '\\' && i + 1 < text.size()) {
      const char e = text[++i];
      if (e >= '0' && e <= '7') {
        int value = 0;
        for (int digits = 0; digits < 3 && i < text.size() && text[i] >= '0' && text[i] <= '7'; ++digits, ++i)
          value = value * 8 + (text[i] - '0');
        --i;
        out.push_back(char(value & 0xFF));
      } else if (e == 'n' || e == 'r') {
        out.push_back(' ');
      } else if (e == 't') {
        out.push_back(' ');
      } else if (e != '\n' && e != '\r') {
        out.push_back(e);
      }
    } else {
      out.push_back(c == '\n' || c == '\r' ? ' ' : c);
    }
  }
  return out;
}

// The token starting at `at`, up to the next delimiter (a leading "/" kept out).
std::string_view readToken(std::string_view text, size_t at) {
  if (at < text.size() && text[at] == '/') ++at;
  size_t end = at;
  while (end < text.size() && !isDelimiter(text[end])) ++end;
  return text.substr(at, end - at);
}

// The text between a bracket at `at` and its match, brackets of the same kind nested.
std::string_view readBracketed(std::string_view text, size_t at) {
  const char open = text[at], close = open == '{' ? '}' : ']';
  size_t depth = 0;
  for (size_t i = at; i < text.size(); ++i) {
    if (text[i] == open) ++depth;
    if (text[i] == close && --depth == 0) return text.substr(at + 1, i - at - 1);
  }
  return {};
}

std::optional<std::string> stringValue(std::string_view text, std::string_view key) {
  size_t at = findKey(text, key);
  if (at == std::string_view::npos) return std::nullopt;
  at = skipSpaces(text, at);
  if (at < text.size() && text[at] == '(') return readString(text, at);
  return std::string(readToken(text, at));
}

std::optional<double> numberValue(std::string_view text, std::string_view key) {
  std::optional<std::string> value = stringValue(text, key);
  if (!value || value->empty()) return std::nullopt;
  char* end = nullptr;
  const double number = std::strtod(value->c_str(), &end);
  if (*end) return std::nullopt;
  return number;
}

std::optional<std::array<double, 4>> boxValue(std::string_view text, std::string_view key) {
  size_t at = findKey(text, key);
  if (at == std::string_view::npos) return std::nullopt;
  at = skipSpaces(text, at);
  if (at >= text.size() || (text[at] != '{' && text[at] != '[')) return std::nullopt;
  const std::string inner(readBracketed(text, at));
  std::array<double, 4> box{};
  const char* p = inner.c_str();
  for (double& v : box) {
    char* end = nullptr;
    v = std::strtod(p, &end);
    if (end == p) return std::nullopt;
    p = end;
  }
  return box;
}

// The next token from `at` on, which moves past it: a name (its "/" dropped), a word or a number;
// a lone delimiter gives an empty token. Empty at the end of the text.
std::string_view nextToken(std::string_view text, size_t* at) {
  *at = skipSpaces(text, *at);
  if (*at >= text.size()) return {};
  const size_t start = *at + (text[*at] == '/' ? 1 : 0);
  size_t end = start;
  while (end < text.size() && !isDelimiter(text[end])) ++end;
  *at = end > *at ? end : *at + 1;
  return text.substr(start, end - start);
}

// "dup CODE /name put" entries after the /Encoding key, up to its "def".
void readEncoding(std::string_view text, size_t at, std::map<uint8_t, std::string>* encoding) {
  while (at < text.size()) {
    std::string_view word = nextToken(text, &at);
    if (word == "def") return;
    if (word != "dup") continue;
    const std::string code(nextToken(text, &at));
    if (skipSpaces(text, at) >= text.size() || text[skipSpaces(text, at)] != '/') continue;
    std::string_view name = nextToken(text, &at);
    char* end = nullptr;
    const long value = std::strtol(code.c_str(), &end, 10);
    if (*end == 0 && !code.empty() && value >= 0 && value <= 255 && !name.empty())
      (*encoding)[uint8_t(value)] = std::string(name);
  }
}

}  // namespace

Type1FontInfo readType1FontInfo(ByteSpan clearText) {
  const std::string_view text(reinterpret_cast<const char*>(clearText.data), clearText.size);
  Type1FontInfo info;
  info.fontName = stringValue(text, "/FontName").value_or("");
  info.fullName = stringValue(text, "/FullName").value_or("");
  info.familyName = stringValue(text, "/FamilyName").value_or("");
  info.weight = stringValue(text, "/Weight").value_or("");
  info.version = stringValue(text, "/version").value_or("");
  info.notice = stringValue(text, "/Notice").value_or("");
  info.italicAngle = numberValue(text, "/ItalicAngle").value_or(0);
  info.isFixedPitch = stringValue(text, "/isFixedPitch").value_or("") == "true";
  info.fontBBox = boxValue(text, "/FontBBox");
  info.underlinePosition = numberValue(text, "/UnderlinePosition");
  info.underlineThickness = numberValue(text, "/UnderlineThickness");
  const size_t encodingAt = findKey(text, "/Encoding");
  if (encodingAt != std::string_view::npos && readToken(text, skipSpaces(text, encodingAt)) != "StandardEncoding") {
    info.standardEncoding = false;
    readEncoding(text, encodingAt, &info.encoding);
  }
  return info;
}

}  // namespace typeprint::rescue
