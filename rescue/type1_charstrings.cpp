#include "rescue/type1_charstrings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "formats/type1_font.h"
#include "rescue/glyph_names.h"

namespace typeprint::rescue {
namespace {

constexpr uint16_t kCharstringKey = 4330;
constexpr size_t kEexecSkip = 4;
constexpr int kDefaultLenIV = 4;
constexpr size_t kMaxStack = 48;
constexpr int kMaxCallDepth = 10;
constexpr int kMaxOperations = 200000;  // per glyph, subroutines included
constexpr size_t kMaxSubrs = 65536;

// The private dictionary's text, read token by token; binary strings are taken by length.
class PrivateText {
 public:
  explicit PrivateText(const std::vector<uint8_t>& bytes)
      : text_(reinterpret_cast<const char*>(bytes.data()), bytes.size()) {}

  bool seekAfter(std::string_view key) {
    size_t at = text_.find(key);
    if (at == std::string_view::npos) return false;
    pos_ = at + key.size();
    return true;
  }
  size_t position() const { return pos_; }
  void seek(size_t at) { pos_ = std::min(at, text_.size()); }
  bool atEnd() const { return pos_ >= text_.size(); }

  std::string_view token() {
    skipSpaces();
    const size_t start = pos_;
    if (pos_ < text_.size() && text_[pos_] == '/') ++pos_;
    while (pos_ < text_.size() && !isSpace(text_[pos_]) && text_[pos_] != '/') ++pos_;
    if (pos_ == start && pos_ < text_.size()) ++pos_;
    return text_.substr(start, pos_ - start);
  }
  bool integer(long* value) {
    const std::string word(token());
    char* end = nullptr;
    *value = std::strtol(word.c_str(), &end, 10);
    return !word.empty() && *end == 0;
  }
  // "LEN RD " and the LEN bytes after the single space that ends RD.
  bool binary(ByteSpan* bytes) {
    long length = 0;
    if (!integer(&length) || length < 0) return false;
    token();  // RD or -|
    ++pos_;
    if (pos_ > text_.size() || size_t(length) > text_.size() - pos_) return false;
    *bytes = ByteSpan(reinterpret_cast<const uint8_t*>(text_.data()) + pos_, size_t(length));
    pos_ += size_t(length);
    return true;
  }

 private:
  static bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
  void skipSpaces() {
    while (pos_ < text_.size() && isSpace(text_[pos_])) ++pos_;
  }
  std::string_view text_;
  size_t pos_ = 0;
};

struct Point {
  double x = 0, y = 0;
};

class Box {
 public:
  void add(Point p) {
    if (empty_) {
      lo_ = hi_ = p;
      empty_ = false;
      return;
    }
    lo_ = {std::min(lo_.x, p.x), std::min(lo_.y, p.y)};
    hi_ = {std::max(hi_.x, p.x), std::max(hi_.y, p.y)};
  }
  // The end points and the extremes in between of a cubic curve.
  void addCurve(Point p0, Point p1, Point p2, Point p3) {
    add(p0);
    add(p3);
    for (double t : extremes(p0.x, p1.x, p2.x, p3.x)) add(at(p0, p1, p2, p3, t));
    for (double t : extremes(p0.y, p1.y, p2.y, p3.y)) add(at(p0, p1, p2, p3, t));
  }
  bool empty() const { return empty_; }
  Point lo() const { return lo_; }
  Point hi() const { return hi_; }

 private:
  static Point at(Point p0, Point p1, Point p2, Point p3, double t) {
    const double u = 1 - t, a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
    return {a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y};
  }
  // Parameters in (0, 1) where the derivative of one coordinate is zero.
  static std::vector<double> extremes(double p0, double p1, double p2, double p3) {
    const double a = -p0 + 3 * p1 - 3 * p2 + p3, b = 2 * (p0 - 2 * p1 + p2), c = p1 - p0;
    std::vector<double> roots;
    if (std::fabs(a) < 1e-12) {
      if (std::fabs(b) > 1e-12) roots.push_back(-c / b);
    } else {
      const double disc = b * b - 4 * a * c;
      if (disc >= 0) {
        roots.push_back((-b + std::sqrt(disc)) / (2 * a));
        roots.push_back((-b - std::sqrt(disc)) / (2 * a));
      }
    }
    roots.erase(std::remove_if(roots.begin(), roots.end(), [](double t) { return !(t > 0 && t < 1); }), roots.end());
    return roots;
  }
  Point lo_, hi_;
  bool empty_ = true;
};

struct FontPrograms {
  std::vector<std::vector<uint8_t>> subrs;
  std::map<std::string, std::vector<uint8_t>> charstrings;  // decrypted
};

// Runs one glyph's charstring and its subroutines into a box.
class CharstringRunner {
 public:
  CharstringRunner(const FontPrograms& font, Box* box) : font_(font), box_(box) {}

  double width() const { return width_; }

  // Runs `program` with its origin at `origin`; false when it broke a rule.
  bool run(const std::vector<uint8_t>& program, Point origin, bool allowSeac) {
    origin_ = origin;
    allowSeac_ = allowSeac;
    return execute(program, 0) != Outcome::Failed;
  }

 private:
  enum class Outcome { Returned, Ended, Failed };

  Outcome execute(const std::vector<uint8_t>& program, int depth) {
    if (depth > kMaxCallDepth) return Outcome::Failed;
    for (size_t i = 0; i < program.size();) {
      if (++operations_ > kMaxOperations) return Outcome::Failed;
      const uint8_t v = program[i++];
      if (v >= 32) {
        double number = 0;
        if (v <= 246) {
          number = v - 139;
        } else if (v <= 254) {
          if (i >= program.size()) return Outcome::Failed;
          const int w = program[i++];
          number = v <= 250 ? (v - 247) * 256 + w + 108 : -(v - 251) * 256 - w - 108;
        } else {
          if (program.size() - i < 4) return Outcome::Failed;
          number = double(int32_t(uint32_t(program[i]) << 24 | uint32_t(program[i + 1]) << 16 |
                                  uint32_t(program[i + 2]) << 8 | program[i + 3]));
          i += 4;
        }
        if (stack_.size() >= kMaxStack) return Outcome::Failed;
        stack_.push_back(number);
        continue;
      }
      int op = v;
      if (op == 12) {
        if (i >= program.size()) return Outcome::Failed;
        op = 100 + program[i++];
      }
      Outcome outcome = operate(op, depth);
      if (outcome != Outcome::Returned) return outcome;
      if (op == 11) return Outcome::Returned;
    }
    return Outcome::Returned;
  }

  // Arguments from the bottom of the stack; false when fewer are there.
  bool args(size_t n) const { return stack_.size() >= n; }
  double arg(size_t i) const { return stack_[i]; }

  void moveBy(double dx, double dy) {
    current_ = {current_.x + dx, current_.y + dy};
    if (flexing_) flexPoints_.push_back(current_);
  }
  void lineBy(double dx, double dy) {
    Point start = current_;
    current_ = {current_.x + dx, current_.y + dy};
    box_->add(start);
    box_->add(current_);
  }
  void curveBy(double dx1, double dy1, double dx2, double dy2, double dx3, double dy3) {
    Point p0 = current_, p1{p0.x + dx1, p0.y + dy1}, p2{p1.x + dx2, p1.y + dy2}, p3{p2.x + dx3, p2.y + dy3};
    box_->addCurve(p0, p1, p2, p3);
    current_ = p3;
  }

  Outcome operate(int op, int depth) {
    switch (op) {
      case 13:  // hsbw: sbx wx
        if (!args(2)) return Outcome::Failed;
        current_ = {origin_.x + arg(0), origin_.y};
        width_ = arg(1);
        break;
      case 107:  // sbw: sbx sby wx wy
        if (!args(4)) return Outcome::Failed;
        current_ = {origin_.x + arg(0), origin_.y + arg(1)};
        width_ = arg(2);
        break;
      case 21:  // rmoveto
        if (!args(2)) return Outcome::Failed;
        moveBy(arg(0), arg(1));
        break;
      case 22:  // hmoveto
        if (!args(1)) return Outcome::Failed;
        moveBy(arg(0), 0);
        break;
      case 4:  // vmoveto
        if (!args(1)) return Outcome::Failed;
        moveBy(0, arg(0));
        break;
      case 5:  // rlineto
        if (!args(2)) return Outcome::Failed;
        lineBy(arg(0), arg(1));
        break;
      case 6:  // hlineto
        if (!args(1)) return Outcome::Failed;
        lineBy(arg(0), 0);
        break;
      case 7:  // vlineto
        if (!args(1)) return Outcome::Failed;
        lineBy(0, arg(0));
        break;
      case 8:  // rrcurveto
        if (!args(6)) return Outcome::Failed;
        curveBy(arg(0), arg(1), arg(2), arg(3), arg(4), arg(5));
        break;
      case 30:  // vhcurveto: dy1 dx2 dy2 dx3
        if (!args(4)) return Outcome::Failed;
        curveBy(0, arg(0), arg(1), arg(2), arg(3), 0);
        break;
      case 31:  // hvcurveto: dx1 dx2 dy2 dy3
        if (!args(4)) return Outcome::Failed;
        curveBy(arg(0), 0, arg(1), arg(2), 0, arg(3));
        break;
      case 10:  // callsubr
        return callSubr(depth);
      case 11:  // return
        return Outcome::Returned;
      case 14:  // endchar
        return Outcome::Ended;
      case 112:  // div
        if (!args(2) || stack_.back() == 0) return Outcome::Failed;
        stack_[stack_.size() - 2] /= stack_.back();
        stack_.pop_back();
        return Outcome::Returned;
      case 116:  // callothersubr
        return callOtherSubr();
      case 117:  // pop
        if (psStack_.empty()) return Outcome::Failed;
        if (stack_.size() >= kMaxStack) return Outcome::Failed;
        stack_.push_back(psStack_.back());
        psStack_.pop_back();
        return Outcome::Returned;
      case 133:  // setcurrentpoint
        if (!args(2)) return Outcome::Failed;
        current_ = {origin_.x + arg(0), origin_.y + arg(1)};
        break;
      case 106:  // seac: asb adx ady bchar achar
        return seac();
      default:  // hints, closepath, dotsection: nothing to draw
        break;
    }
    stack_.clear();
    return Outcome::Returned;
  }

  Outcome callSubr(int depth) {
    if (!args(1)) return Outcome::Failed;
    const double index = stack_.back();
    stack_.pop_back();
    if (index < 0 || index >= double(font_.subrs.size())) return Outcome::Failed;
    return execute(font_.subrs[size_t(index)], depth + 1);
  }

  // Flex (othersubrs 0, 1, 2) collects its points from the moves between its start and its
  // end and draws them as two curves; hint replacement (3) hands back subroutine 3.
  Outcome callOtherSubr() {
    if (!args(2)) return Outcome::Failed;
    const int which = int(stack_.back());
    const double count = stack_[stack_.size() - 2];
    stack_.resize(stack_.size() - 2);
    if (count < 0 || count > double(stack_.size())) return Outcome::Failed;
    std::vector<double> given(stack_.end() - size_t(count), stack_.end());
    stack_.resize(stack_.size() - size_t(count));
    psStack_.assign(given.rbegin(), given.rend());
    if (which == 1) {
      flexing_ = true;
      flexStart_ = current_;
      flexPoints_.clear();
    } else if (which == 0) {
      if (given.size() != 3) return Outcome::Failed;
      flexing_ = false;
      if (flexPoints_.size() == 7) {
        box_->addCurve(flexStart_, flexPoints_[1], flexPoints_[2], flexPoints_[3]);
        box_->addCurve(flexPoints_[3], flexPoints_[4], flexPoints_[5], flexPoints_[6]);
      }
      psStack_ = {given[2], given[1]};
    } else if (which == 3) {
      psStack_ = {3};
    }
    return Outcome::Returned;
  }

  // The base character at the origin, the accent moved by (adx - asb, ady); both are found by
  // their Standard Encoding names. The composite keeps its own width.
  Outcome seac() {
    if (!allowSeac_ || !args(5)) return Outcome::Failed;
    const double asb = arg(0), adx = arg(1), ady = arg(2), bchar = arg(3), achar = arg(4);
    if (bchar < 0 || bchar > 255 || achar < 0 || achar > 255) return Outcome::Failed;
    for (auto [code, origin] : {std::pair{bchar, origin_}, std::pair{achar, Point{origin_.x + adx - asb, origin_.y + ady}}}) {
      auto glyph = font_.charstrings.find(std::string(standardEncodingGlyphName(uint8_t(code))));
      if (glyph == font_.charstrings.end()) return Outcome::Failed;
      CharstringRunner part(font_, box_);
      if (!part.run(glyph->second, origin, false)) return Outcome::Failed;
    }
    return Outcome::Ended;
  }

  const FontPrograms& font_;
  Box* box_;
  Point origin_, current_, flexStart_;
  std::vector<double> stack_, psStack_;
  std::vector<Point> flexPoints_;
  bool flexing_ = false;
  bool allowSeac_ = true;
  double width_ = 0;
  int operations_ = 0;
};

int lenIVOf(PrivateText text) {
  long lenIV = kDefaultLenIV;
  if (text.seekAfter("/lenIV") && !text.integer(&lenIV)) lenIV = kDefaultLenIV;
  return int(std::clamp(lenIV, -1L, 64L));
}

std::vector<uint8_t> decryptCharstring(ByteSpan bytes, int lenIV) {
  if (lenIV < 0) return std::vector<uint8_t>(bytes.begin(), bytes.end());
  return formats::decryptType1(bytes, kCharstringKey, size_t(lenIV));
}

void readSubrs(PrivateText text, int lenIV, FontPrograms* font) {
  long count = 0;
  if (!text.seekAfter("/Subrs") || !text.integer(&count) || count <= 0) return;
  font->subrs.resize(size_t(std::min<long>(count, kMaxSubrs)));
  text.token();  // array
  for (;;) {
    const size_t before = text.position();
    if (text.token() != "dup") {
      text.seek(before);
      return;
    }
    long index = 0;
    ByteSpan bytes;
    if (!text.integer(&index) || !text.binary(&bytes)) return;
    if (index >= 0 && size_t(index) < font->subrs.size()) font->subrs[size_t(index)] = decryptCharstring(bytes, lenIV);
    text.token();  // NP or |
    if (text.atEnd()) return;
  }
}

void readCharStrings(PrivateText text, int lenIV, FontPrograms* font) {
  if (!text.seekAfter("/CharStrings")) return;
  while (!text.atEnd()) {
    std::string_view word = text.token();
    if (word == "end") return;
    if (word.size() < 2 || word[0] != '/') continue;
    ByteSpan bytes;
    if (!text.binary(&bytes)) return;
    font->charstrings[std::string(word.substr(1))] = decryptCharstring(bytes, lenIV);
    text.token();  // ND or |-
  }
}

int roundDown(double v) { return int(std::floor(v + 1e-6)); }
int roundUp(double v) { return int(std::ceil(v - 1e-6)); }

}  // namespace

std::map<std::string, GlyphMetrics> readGlyphMetrics(ByteSpan encryptedPart) {
  const std::vector<uint8_t> plain = formats::decryptType1(encryptedPart, formats::kType1EexecKey, kEexecSkip);
  PrivateText text(plain);
  FontPrograms font;
  const int lenIV = lenIVOf(text);
  readSubrs(text, lenIV, &font);
  readCharStrings(text, lenIV, &font);

  std::map<std::string, GlyphMetrics> glyphs;
  for (const auto& [name, program] : font.charstrings) {
    Box box;
    CharstringRunner runner(font, &box);
    runner.run(program, Point{}, true);
    GlyphMetrics& metrics = glyphs[name];
    metrics.width = runner.width();
    metrics.hasOutline = !box.empty();
    if (metrics.hasOutline) {
      metrics.llx = roundDown(box.lo().x);
      metrics.lly = roundDown(box.lo().y);
      metrics.urx = roundUp(box.hi().x);
      metrics.ury = roundUp(box.hi().y);
    }
  }
  return glyphs;
}

}  // namespace typeprint::rescue
