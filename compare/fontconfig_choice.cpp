#include "compare/fontconfig_choice.h"

#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>

namespace typeprint::compare {
namespace {

constexpr int kFaceIndexMask = 0xFFFF;  // the bits above give a variable font's named instance

bool sameText(const std::string& a, const std::string& b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

std::string patternText(const std::string& family, const std::string& style) {
  std::string text;
  for (char c : family) {
    if (c == '-' || c == ':' || c == ',' || c == '\\') text += '\\';
    text += c;
  }
  return style.empty() ? text : text + ":style=" + style;
}

std::string stringOf(FcPattern* pattern, const char* object) {
  FcChar8* value = nullptr;
  return FcPatternGetString(pattern, object, 0, &value) == FcResultMatch ? reinterpret_cast<const char*>(value) : "";
}

}  // namespace

struct FontconfigMatcher::Config {
  FcConfig* config = nullptr;
};

FontconfigMatcher::FontconfigMatcher() : config_(new Config{FcInitLoadConfigAndFonts()}) {}

FontconfigMatcher::~FontconfigMatcher() {
  if (config_->config) FcConfigDestroy(config_->config);
  delete config_;
}

std::optional<TFontconfigChoice> FontconfigMatcher::match(const std::string& family, const std::string& style) {
  if (!config_->config || family.empty()) return std::nullopt;
  TFontconfigChoice choice;
  choice.pattern = patternText(family, style);
  FcPattern* pattern = FcNameParse(reinterpret_cast<const FcChar8*>(choice.pattern.c_str()));
  if (!pattern) return std::nullopt;
  FcConfigSubstitute(config_->config, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* found = FcFontMatch(config_->config, pattern, &result);
  FcPatternDestroy(pattern);
  if (!found) return std::nullopt;
  choice.path = stringOf(found, FC_FILE);
  int index = 0;
  if (FcPatternGetInteger(found, FC_INDEX, 0, &index) == FcResultMatch) choice.face = uint32_t(index & kFaceIndexMask);
  choice.family = stringOf(found, FC_FAMILY);
  for (int i = 0; !choice.familyFound; ++i) {
    FcChar8* name = nullptr;
    if (FcPatternGetString(found, FC_FAMILY, i, &name) != FcResultMatch) break;
    choice.familyFound = sameText(reinterpret_cast<const char*>(name), family);
  }
  FcPatternDestroy(found);
  if (choice.path.empty()) return std::nullopt;
  return choice;
}

std::vector<std::optional<TFontconfigChoice>> markFontconfigChoices(std::vector<TDuplicateGroup>& groups,
                                                                    const std::vector<TFontCopy>& copies,
                                                                    FontconfigMatcher& matcher) {
  std::vector<std::optional<TFontconfigChoice>> choices;
  for (TDuplicateGroup& group : groups) {
    std::optional<TFontconfigChoice> choice = matcher.match(group.family, group.style);
    choices.push_back(choice);
    if (!choice) continue;
    auto samePath = [&](const TCopyVerdict& v) {
      return copies[v.copy].path == choice->path && copies[v.copy].face == choice->face;
    };
    auto it = std::find_if(group.copies.begin(), group.copies.end(), samePath);
    struct stat st;
    if (it == group.copies.end() && ::stat(choice->path.c_str(), &st) == 0) {
      it = std::find_if(group.copies.begin(), group.copies.end(), [&](const TCopyVerdict& v) {
        const TFontCopy& c = copies[v.copy];
        return c.device == uint64_t(st.st_dev) && c.inode == uint64_t(st.st_ino) && c.face == choice->face;
      });
    }
    if (it != group.copies.end()) it->fontconfig = true;
  }
  return choices;
}

}  // namespace typeprint::compare
