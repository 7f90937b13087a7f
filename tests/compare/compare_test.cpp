#include <gtest/gtest.h>

#include <map>

#include "compare/duplicate_groups.h"
#include "compare/version_order.h"

namespace typeprint::compare {
namespace {

TEST(VersionOrder, ComparesByNumbers) {
  const struct { const char *a, *b; int sign; } rows[] = {
      {"Version 1.10", "Version 1.9", 1},
      {"001.005", "Version 1.5", 0},
      {"Version 2.37", "Version 2.38", -1},
      {"Version 1.000;PS 001.000;hotconv 1.0.88", "1", 0},
      {"Version 2.37; ttfautohint (v1.8)", "2.37", 0},
      {"1.0.1", "1.0", 1},
      {"", "1.0", -1},
      {"Version 20190801.1", "Version 3", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.a) + " vs " + row.b);
    const int order = compareVersions(row.a, row.b);
    EXPECT_EQ((order > 0) - (order < 0), row.sign);
    EXPECT_EQ(compareVersions(row.b, row.a), -order);
  }
}

// A copy as identification would describe it; each gets its own inode and size unless a row
// says otherwise, so no two files have the same bytes.
TFontCopy copy(const std::string& path, const std::string& postScriptName, const std::string& family,
               const std::string& version, uint32_t checksum) {
  static uint64_t inode = 100;
  TFontCopy c;
  c.path = path;
  c.kind = "TrueType";
  c.postScriptName = postScriptName;
  c.family = family;
  c.style = "Regular";
  c.version = version;
  c.checksum = checksum;
  c.inode = ++inode;
  c.size = 1000 + inode;
  return c;
}

TFontCopy with(TFontCopy c, void (*change)(TFontCopy&)) {
  change(c);
  return c;
}

TEST(DuplicateGroups, JudgesEveryCopyAgainstTheKeeper) {
  const struct {
    const char* what;
    std::vector<TFontCopy> copies;
    std::map<std::string, Verdict> verdicts;  // by path; the reference is the keeper
    const char* reason;                        // the start of the keep reason
  } rows[] = {
      {"the newest version wins by its numbers",
       {copy("a.ttf", "Foo-Regular", "Foo", "Version 1.9", 1), copy("b.ttf", "Foo-Regular", "Foo", "Version 1.10", 2)},
       {{"a.ttf", Verdict::OtherVersion}, {"b.ttf", Verdict::Reference}},
       "newest version"},
      {"an equal face checksum in another file is the same face",
       {copy("a.ttc", "Foo-Regular", "Foo", "1.0", 7),
        with(copy("b.ttc", "Foo-Regular", "Foo", "1.0", 7), [](TFontCopy& c) { c.container = "collection"; })},
       {{"a.ttc", Verdict::Reference}, {"b.ttc", Verdict::SameFace}},
       "most complete form"},
      {"a Type 1 program beside its OpenType sibling is another format",
       {with(copy("a.t1", "Foo-Regular", "Foo", "1.00", 1), [](TFontCopy& c) { c.kind = "PostScript"; }),
        with(copy("a.otf", "Foo-Regular", "Foo", "Version 1.0", 2), [](TFontCopy& c) { c.kind = "OpenType - PS"; })},
       {{"a.t1", Verdict::OtherFormat}, {"a.otf", Verdict::Reference}},
       "most complete form"},
      {"one Type 1 program in two files",
       {with(copy("a.t1", "Foo-Regular", "Foo", "1.00", 1), [](TFontCopy& c) { c.kind = "PostScript"; c.programChecksum = 9; }),
        with(copy("a.pfb", "Foo-Regular", "Foo", "1.00", 2), [](TFontCopy& c) { c.kind = "PostScript"; c.programChecksum = 9; })},
       {{"a.pfb", Verdict::Reference}, {"a.t1", Verdict::OtherFormat}},
       "equal copies"},
      {"same version and form, other checksums: modified; the system's copy is kept",
       {copy("user/a.ttf", "Foo-Regular", "Foo", "1.0", 1),
        with(copy("sys/a.ttf", "Foo-Regular", "Foo", "1.0", 2), [](TFontCopy& c) { c.folder = FolderClass::System; })},
       {{"user/a.ttf", Verdict::Modified}, {"sys/a.ttf", Verdict::Reference}},
       "in the system font folders"},
      {"another family under the same PostScript name is a conflict, whatever its version",
       {copy("a.ttf", "Foo-Regular", "Foo", "1.0", 1), copy("b.ttf", "Foo-Regular", "Bar Sans", "9.0", 2)},
       {{"a.ttf", Verdict::Reference}, {"b.ttf", Verdict::Conflict}},
       "the only file"},
      {"links are the same file, never the reference",
       {with(copy("a.ttf", "Foo-Regular", "Foo", "1.0", 1), [](TFontCopy& c) { c.inode = 5; c.symbolicLink = true; }),
        with(copy("b.ttf", "Foo-Regular", "Foo", "1.0", 1), [](TFontCopy& c) { c.inode = 5; }),
        with(copy("c.ttf", "Foo-Regular", "Foo", "1.0", 1), [](TFontCopy& c) { c.inode = 5; })},
       {{"a.ttf", Verdict::SameFile}, {"b.ttf", Verdict::Reference}, {"c.ttf", Verdict::SameFile}},
       "the only file"},
      {"generic PostScript names group by family and style",
       {copy("a.ttf", "Untitled", "Foo", "1.0", 1), copy("b.ttf", "Regular", "Foo", "2.0", 2),
        copy("c.ttf", "Untitled", "Bar", "1.0", 3)},
       {{"a.ttf", Verdict::OtherVersion}, {"b.ttf", Verdict::Reference}},
       "newest version"},
      {"a static face of a named instance joins the variable font",
       {with(copy("var.ttf", "FooVar-Regular", "Foo Var", "1.0", 1),
             [](TFontCopy& c) {
               c.variable = true;
               c.instances = {{"Regular", "FooVar-Regular", {400}}, {"Thin", "FooVar-Thin", {100}}};
             }),
        copy("thin.ttf", "FooVar-Thin", "Foo Var Thin", "2.0", 2)},
       {{"var.ttf", Verdict::Reference}, {"thin.ttf", Verdict::Instance}},
       "the variable font"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    FileContent content;
    const std::vector<TDuplicateGroup> groups = findDuplicateGroups(row.copies, content);
    ASSERT_EQ(groups.size(), 1u);
    const TDuplicateGroup& group = groups[0];
    ASSERT_EQ(group.copies.size(), row.verdicts.size());
    EXPECT_EQ(group.copies[0].verdict, Verdict::Reference);
    for (const TCopyVerdict& v : group.copies) {
      const std::string& path = row.copies[v.copy].path;
      SCOPED_TRACE(path);
      EXPECT_EQ(verdictName(v.verdict), verdictName(row.verdicts.at(path)));
      EXPECT_EQ(v.keep, v.verdict == Verdict::Reference);
      EXPECT_EQ(v.evidence.text.empty(), v.verdict == Verdict::Reference);
    }
    EXPECT_EQ(group.keepReason.rfind(row.reason, 0), 0u) << group.keepReason;
    EXPECT_EQ(group.hasConflict, row.verdicts.count("b.ttf") && row.verdicts.at("b.ttf") == Verdict::Conflict);
  }
}

}  // namespace
}  // namespace typeprint::compare
