#include "compare/duplicate_groups.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <set>

#include "compare/version_order.h"

namespace typeprint::compare {
namespace {

// Lower case, without spaces, hyphens and underscores: "DejaVu Sans" and "dejavu-sans" agree.
std::string normalized(const std::string& text) {
  std::string out;
  for (char c : text)
    if (c != ' ' && c != '-' && c != '_') out += char(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

// PostScript names that tell nothing about the font, so the family and style group it instead.
bool isGenericPostScriptName(const std::string& name) {
  static const std::set<std::string> kGeneric = {"", "untitled", "unknown", "regular", "normal", "roman", "none"};
  const std::string key = normalized(name);
  return kGeneric.count(key) > 0 ||
         std::none_of(key.begin(), key.end(), [](char c) { return std::isalpha(static_cast<unsigned char>(c)); });
}

std::string familyStyleKey(const std::string& family, const std::string& style) {
  return "family:" + normalized(family) + "/" + normalized(style);
}

std::string groupKey(const TFontCopy& copy) {
  return isGenericPostScriptName(copy.postScriptName) ? familyStyleKey(copy.family, copy.style)
                                                      : "name:" + copy.postScriptName;
}

std::string instanceKey(const TFontCopy& variableFont, const formats::TNamedInstance& instance) {
  return isGenericPostScriptName(instance.postScriptName)
             ? familyStyleKey(variableFont.family, instance.subfamilyName)
             : "name:" + instance.postScriptName;
}

std::string hex8(uint32_t value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", value);
  return text;
}

bool isSfntKind(const std::string& kind) {
  return kind == "TrueType" || kind == "OpenType - TT" || kind == "OpenType - PS" || kind == "TrueType Collection";
}

// How complete a form is: a plain OpenType or TrueType file, then a collection face, then web
// packaging, then a Type 1 program, then anything else (bitmap fonts).
int formRank(const TFontCopy& copy) {
  if (isSfntKind(copy.kind)) {
    if (copy.container.empty()) return 4;
    return copy.container == "collection" ? 3 : 2;
  }
  return copy.kind.rfind("PostScript", 0) == 0 ? 1 : 0;
}

std::string formName(const TFontCopy& copy) {
  if (copy.container.empty()) return copy.kind;
  if (copy.container == "collection")
    return copy.kind.find("Collection") != std::string::npos ? copy.kind : copy.kind + " in a collection";
  return copy.kind + " in " + copy.container;
}

// One member of a group: a copy, and whether it joined as the variable font of a named instance.
struct Member {
  size_t copy;
  bool variableSource = false;
};

// The reasons one copy is preferred to another, strongest first.
enum class Preference { None, VariableFont, Version, Form, Folder, NotALink, Path };

class GroupJudge {
 public:
  GroupJudge(const std::vector<TFontCopy>& copies, FileContent& content) : copies_(copies), content_(content) {}

  std::optional<TDuplicateGroup> judge(std::vector<Member> members) {
    std::sort(members.begin(), members.end(), [&](const Member& a, const Member& b) { return better(a, b); });
    TDuplicateGroup group;
    const std::string ownerFamily = ownerFamilyOf(members);
    const Member* reference = nullptr;
    std::vector<const Member*> runnersUp;
    std::map<std::pair<uint64_t, uint64_t>, const Member*> counted;
    std::vector<TCopyVerdict> verdicts;
    for (const Member& m : members) {
      const TFontCopy& c = copies_[m.copy];
      TCopyVerdict v;
      v.copy = m.copy;
      const Member* same = sameFileAs(m, counted);
      if (same) {
        v.verdict = Verdict::SameFile;
        v.evidence = sameFileEvidence(c, copies_[same->copy]);
      } else if (!m.variableSource && !ownerFamily.empty() && normalized(c.family) != ownerFamily) {
        v.verdict = Verdict::Conflict;
        group.hasConflict = true;
      } else if (!reference) {
        reference = &m;
        v.verdict = Verdict::Reference;
        v.keep = true;
      } else {
        runnersUp.push_back(&m);
        judgeAgainst(m, *reference, v);
      }
      verdicts.push_back(std::move(v));
    }
    if (!reference) return std::nullopt;
    const TFontCopy& ref = copies_[reference->copy];
    for (TCopyVerdict& v : verdicts)
      if (v.verdict == Verdict::Conflict) v.evidence = conflictEvidence(copies_[v.copy], ref);
    // The group is about the face its name gives: in an instance's group, the static face's.
    const TFontCopy& named = reference->variableSource ? copies_[firstStatic(members)] : ref;
    group.postScriptName = named.postScriptName;
    group.family = named.family;
    group.style = named.style;
    group.keepReason = keepReason(*reference, runnersUp.empty() ? nullptr : runnersUp.front());
    std::stable_partition(verdicts.begin(), verdicts.end(),
                          [](const TCopyVerdict& v) { return v.verdict == Verdict::Reference; });
    group.copies = std::move(verdicts);
    return group;
  }

 private:
  // The first reason `a` is preferred to `b`, or None when neither is.
  Preference preference(const Member& a, const Member& b, bool* aFirst) const {
    const TFontCopy &x = copies_[a.copy], &y = copies_[b.copy];
    auto decide = [aFirst](bool differs, bool first, Preference why) {
      if (differs) *aFirst = first;
      return differs ? why : Preference::None;
    };
    if (a.variableSource != b.variableSource) return decide(true, a.variableSource, Preference::VariableFont);
    if (int order = compareVersions(x.version, y.version)) return decide(true, order > 0, Preference::Version);
    if (formRank(x) != formRank(y)) return decide(true, formRank(x) > formRank(y), Preference::Form);
    if (x.folder != y.folder) return decide(true, x.folder < y.folder, Preference::Folder);
    if (x.symbolicLink != y.symbolicLink) return decide(true, !x.symbolicLink, Preference::NotALink);
    if (x.path != y.path || x.face != y.face)
      return decide(true, x.path != y.path ? x.path < y.path : x.face < y.face, Preference::Path);
    return Preference::None;
  }

  bool better(const Member& a, const Member& b) const {
    bool aFirst = false;
    return preference(a, b, &aFirst) != Preference::None && aFirst;
  }

  size_t firstStatic(const std::vector<Member>& members) const {
    for (const Member& m : members)
      if (!m.variableSource) return m.copy;
    return members.front().copy;
  }

  // The family the group's PostScript name belongs to: the one the name starts with, else the
  // one most copies carry, else the best copy's. Empty in a group of a variable font's instance,
  // whose static faces often carry the instance in their family name.
  std::string ownerFamilyOf(const std::vector<Member>& members) const {
    std::map<std::string, size_t> counts;
    for (const Member& m : members) {
      if (m.variableSource) return "";
      ++counts[normalized(copies_[m.copy].family)];
    }
    const std::string name = normalized(copies_[members.front().copy].postScriptName);
    std::string best;
    for (const auto& [family, n] : counts)
      if (!family.empty() && name.rfind(family, 0) == 0 && family.size() > best.size()) best = family;
    if (!best.empty()) return best;
    best = normalized(copies_[members.front().copy].family);
    for (const auto& [family, n] : counts)
      if (n > counts[best]) best = family;
    return best;
  }

  // The member already counted that is the same file as `m`, or null (then `m` is counted).
  const Member* sameFileAs(const Member& m, std::map<std::pair<uint64_t, uint64_t>, const Member*>& counted) const {
    const TFontCopy& c = copies_[m.copy];
    if (c.inode == 0) return nullptr;
    auto [it, inserted] = counted.emplace(std::make_pair(c.device, c.inode), &m);
    return inserted ? nullptr : it->second;
  }

  TEvidence sameFileEvidence(const TFontCopy& c, const TFontCopy& counted) const {
    TEvidence e;
    e.text = std::string(c.symbolicLink ? "symbolic link to " : "hard link to ") + counted.path;
    e.facts = {{"link", c.symbolicLink ? "symbolic" : "hard"}, {"sameAs", counted.path}};
    return e;
  }

  TEvidence conflictEvidence(const TFontCopy& c, const TFontCopy& ref) const {
    TEvidence e;
    e.text = "same PostScript name, another family: " + c.family + " (reference " + ref.family + ")";
    e.facts = {{"family", c.family}, {"referenceFamily", ref.family}};
    e.differing = {"family"};
    return e;
  }

  // Decides the verdict of an owner copy that is another file than the reference, in the order
  // the verdicts' evidence gets weaker.
  void judgeAgainst(const Member& m, const Member& refMember, TCopyVerdict& v) {
    const TFontCopy &c = copies_[m.copy], &ref = copies_[refMember.copy];
    TEvidence& e = v.evidence;
    if (c.size == ref.size && c.face == ref.face && content_.sameBytes(c.path, ref.path)) {
      v.verdict = Verdict::Identical;
      e.text = "same bytes as the reference (" + std::to_string(c.size) + " bytes)";
      e.facts = {{"size", std::to_string(c.size)}};
      return;
    }
    if (c.checksum && ref.checksum && *c.checksum == *ref.checksum) {
      v.verdict = Verdict::SameFace;
      e.text = "same face checksum " + hex8(*c.checksum) + ", " + formName(c) + " face " + std::to_string(c.face);
      e.facts = {{"checksum", hex8(*c.checksum)}, {"form", formName(c)}};
      return;
    }
    if (refMember.variableSource && !c.variable) {
      v.verdict = Verdict::Instance;
      e.text = "static face matching the named instance " + c.style + " of the variable font";
      e.facts = {{"instance", c.style}, {"variableFont", ref.path}};
      return;
    }
    if (c.programChecksum && c.programChecksum == ref.programChecksum) {
      v.verdict = Verdict::OtherFormat;
      e.text = "same Type 1 program (content checksum " + hex8(c.programChecksum) + ") in another file";
      e.facts = {{"programChecksum", hex8(c.programChecksum)}, {"form", formName(c)}};
      return;
    }
    if (compareVersions(c.version, ref.version) != 0) {
      v.verdict = Verdict::OtherVersion;
      const bool older = compareVersions(c.version, ref.version) < 0;
      e.text = "version " + c.version + (older ? " is older than " : " is newer than ") + ref.version;
      e.facts = {{"version", c.version}, {"referenceVersion", ref.version}};
      e.differing = {"version"};
      return;
    }
    const bool layoutOnly = isSfntKind(c.kind) && isSfntKind(ref.kind) && formRank(c) >= 3 && formRank(ref) >= 3;
    const FileContent::TableSums* tables = layoutOnly ? tableSums(c) : nullptr;
    const FileContent::TableSums* refTables = layoutOnly ? tableSums(ref) : nullptr;
    if (tables && refTables && tables->digest == refTables->digest) {
      v.verdict = Verdict::SameFace;
      e.text = "same tables (digest " + hex8(tables->digest) + "), " + formName(c) + " face " + std::to_string(c.face);
      e.facts = {{"tableDigest", hex8(tables->digest)}, {"form", formName(c)}};
      return;
    }
    if (formName(c) != formName(ref)) {
      v.verdict = Verdict::OtherFormat;
      e.text = "same names and version " + c.version + ", " + formName(c) + " (reference " + formName(ref) + ")";
      e.facts = {{"form", formName(c)}, {"referenceForm", formName(ref)}, {"version", c.version}};
      e.differing = {"form"};
      return;
    }
    v.verdict = Verdict::Modified;
    modifiedEvidence(c, ref, e);
    if (tables && refTables) tableEvidence(*tables, *refTables, e);
  }

  const FileContent::TableSums* tableSums(const TFontCopy& c) {
    const std::optional<FileContent::TableSums>& sums = content_.tableSums(c.path, c.face);
    return sums ? &*sums : nullptr;
  }

  // Which tables differ, and what they hold: kerning (kern, kerx, GPOS) or outlines (glyf,
  // CFF, CFF2, gvar).
  static void tableEvidence(const FileContent::TableSums& a, const FileContent::TableSums& b, TEvidence& e) {
    static const std::map<std::string, std::string> kMeaning = {
        {"kern", "kerning"}, {"kerx", "kerning"}, {"GPOS", "kerning"},
        {"glyf", "outlines"}, {"CFF ", "outlines"}, {"CFF2", "outlines"}, {"gvar", "outlines"}};
    std::set<std::string> tags;
    for (const auto& [tag, crc] : a.tables)
      if (!b.tables.count(tag) || b.tables.at(tag) != crc) tags.insert(tag);
    for (const auto& [tag, crc] : b.tables)
      if (!a.tables.count(tag)) tags.insert(tag);
    std::string list;
    for (const std::string& tag : tags) {
      list += (list.empty() ? "" : " ") + tag;
      auto meaning = kMeaning.find(tag);
      if (meaning != kMeaning.end() &&
          std::find(e.differing.begin(), e.differing.end(), meaning->second) == e.differing.end())
        e.differing.push_back(meaning->second);
    }
    if (list.empty()) return;
    e.facts.push_back({"tables", list});
    e.text += "; tables that differ: " + list;
  }

  void modifiedEvidence(const TFontCopy& c, const TFontCopy& ref, TEvidence& e) const {
    const std::pair<const char*, std::optional<uint32_t> TFontCopy::*> sums[] = {
        {"checksum", &TFontCopy::checksum},
        {"legacyChecksum", &TFontCopy::legacyChecksum},
        {"kerningChecksum", &TFontCopy::kerningChecksum}};
    std::string words;
    for (const auto& [name, field] : sums) {
      const std::optional<uint32_t> &a = c.*field, &b = ref.*field;
      if (!a || !b || *a == *b) continue;
      e.differing.push_back(name);
      e.facts.push_back({name, hex8(*a) + " vs " + hex8(*b)});
      words += (words.empty() ? "" : ", ") + std::string(name);
    }
    std::string attributes;
    if (c.array && ref.array) {
      uint32_t matching = 0, differing = 0;
      if (TP_Match(c.array.get(), c.face, ref.array.get(), ref.face, &matching, &differing) == TP_STATUS_OK) {
        for (const std::string& name : attributeNames(differing)) {
          attributes += (attributes.empty() ? "" : ", ") + name;
          if (std::find(e.differing.begin(), e.differing.end(), name) == e.differing.end()) e.differing.push_back(name);
        }
        e.facts.push_back({"matchDiffering", "0x" + hex8(differing)});
      }
    }
    e.text = "same version " + c.version + ", but " + (words.empty() ? "the outlines" : words) + " differ";
    if (!attributes.empty()) e.text += "; attributes that differ: " + attributes;
  }

  std::string keepReason(const Member& keeper, const Member* runnerUp) const {
    if (!runnerUp) return "the only file of this font; the other copies are links to it or other fonts";
    bool first = false;
    const TFontCopy& k = copies_[keeper.copy];
    switch (preference(keeper, *runnerUp, &first)) {
      case Preference::VariableFont: return "the variable font holds this instance";
      case Preference::Version: return "newest version (" + k.version + ")";
      case Preference::Form: return "most complete form (" + formName(k) + ")";
      case Preference::Folder: return std::string("in the ") + folderClassName(k.folder) + " font folders";
      case Preference::NotALink: return "the file itself, not a link";
      case Preference::Path:
      case Preference::None: break;
    }
    return "equal copies: the first by path";
  }

  const std::vector<TFontCopy>& copies_;
  FileContent& content_;
};

}  // namespace

const char* verdictName(Verdict verdict) {
  switch (verdict) {
    case Verdict::Reference: return "reference";
    case Verdict::SameFile: return "same-file";
    case Verdict::Identical: return "identical";
    case Verdict::SameFace: return "same-face";
    case Verdict::OtherFormat: return "other-format";
    case Verdict::OtherVersion: return "other-version";
    case Verdict::Modified: return "modified";
    case Verdict::Instance: return "instance";
    case Verdict::Conflict: return "conflict";
  }
  return "";
}

std::vector<std::string> attributeNames(uint32_t mask) {
  static const std::pair<uint32_t, const char*> kNames[] = {
      {TP_ATTR_POSTSCRIPT_NAME, "postScriptName"},   {TP_ATTR_KIND_NAME, "kind"},
      {TP_ATTR_FOUNDRY_NAME, "foundry"},             {TP_ATTR_VERSION, "version"},
      {TP_ATTR_KERNING_CHECKSUM, "kerningChecksum"}, {TP_ATTR_OUTLINE_FILE_SIZE, "outlineFileSize"},
      {TP_ATTR_FAMILY_NAME, "family"},               {TP_ATTR_OUTLINE_FILE_NAME, "outlineFileName"},
      {TP_ATTR_CHECKSUM, "checksum"},                {TP_ATTR_DISPLAY_NAME, "displayName"},
      {TP_ATTR_FULL_NAME, "fullName"},               {TP_ATTR_LEGACY_CHECKSUM, "legacyChecksum"},
      {TP_ATTR_PLATFORM, "platform"},                {TP_ATTR_WINDOWS_MM_FILE, "windowsMMFile"},
      {TP_ATTR_WINDOWS_FULL_NAME, "windowsFullName"}};
  std::vector<std::string> names;
  for (const auto& [bit, name] : kNames)
    if (mask & bit) names.push_back(name);
  return names;
}

std::vector<TDuplicateGroup> findDuplicateGroups(const std::vector<TFontCopy>& copies, FileContent& content) {
  std::map<std::string, std::vector<Member>> byKey;
  std::map<std::string, std::vector<size_t>> variableFontsByInstance;
  for (size_t i = 0; i < copies.size(); ++i) {
    byKey[groupKey(copies[i])].push_back({i});
    for (const formats::TNamedInstance& instance : copies[i].instances)
      variableFontsByInstance[instanceKey(copies[i], instance)].push_back(i);
  }
  GroupJudge judge(copies, content);
  std::vector<TDuplicateGroup> groups;
  for (auto& [key, members] : byKey) {
    std::set<size_t> sources;
    for (const Member& m : members) {
      for (const std::string& k : {key, familyStyleKey(copies[m.copy].family, copies[m.copy].style)}) {
        auto found = variableFontsByInstance.find(k);
        if (found != variableFontsByInstance.end()) sources.insert(found->second.begin(), found->second.end());
      }
    }
    for (Member& m : members) m.variableSource = sources.erase(m.copy) > 0 && copies[m.copy].variable;
    for (size_t source : sources) members.push_back({source, true});
    if (members.size() < 2) continue;
    if (std::optional<TDuplicateGroup> group = judge.judge(members)) groups.push_back(std::move(*group));
  }
  std::sort(groups.begin(), groups.end(), [](const TDuplicateGroup& a, const TDuplicateGroup& b) {
    const std::string fa = normalized(a.family), fb = normalized(b.family);
    return fa != fb ? fa < fb : a.postScriptName < b.postScriptName;
  });
  return groups;
}

}  // namespace typeprint::compare
