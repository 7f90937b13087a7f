#include "analysis/type1_header.h"

#include <gtest/gtest.h>

#include "analysis/foundry_lookup.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

TType1HeaderText header(const std::string& text) {
  return TType1HeaderText(ByteSpan(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

TEST(Type1Header, TokenValues) {
  const struct { std::string text, token, value; } rows[] = {  // value "-": the token is absent
      {"/FullName (Sample (Bold) Italic) readonly def", "/fullname", "Sample (Bold) Italic"},
      {"/FAMILYNAME/Sample-Bold def", "/familyname", "Sample-Bold"},
      {"/FontName\n\n /Sample\n/Next def", "/fontname", "Sample\n/Next"},  // line feeds skipped, not a value's end
      {"/FontName\t/Sample def", "/fontname", "\t/Sample"},
      {std::string("/FullName (A\0B", 14), "/fullname", "A_B"},  // unclosed; zero byte becomes underscore
      {"/FullName (" + std::string(5000, 'x') + ")", "/fullname", std::string(3999, 'x')},
      {"/FontName /Sample def", "/familyname", "-"},
  };
  for (const auto& row : rows) {
    TType1HeaderText h = header(row.text);
    UxString value = "-";
    EXPECT_EQ(findBlobForToken(h.lower, h.text, row.token.c_str(), &value), row.value != "-") << row.text;
    EXPECT_EQ(value, row.value);
  }
}

// "kind|foundry|family|version|PostScript|styled|full" after gathering over what `n` holds.
std::string gather(const std::string& text, std::vector<UxString> n = std::vector<UxString>(7)) {
  TType1HeaderText h = header(text);
  GatherPostScriptMetaDataFromData(h.lower, h.text, &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6]);
  return n[0] + "|" + n[1] + "|" + n[2] + "|" + n[3] + "|" + n[4] + "|" + n[5] + "|" + n[6];
}

TEST(Type1Header, GathersNames) {
  const std::string line = "..%!PS-AdobeFont-1.0: Line-Name 001.000\n";  // ".." stands for a segment header
  const struct { std::string text, names; } rows[] = {
      {line + "/FamilyName (Sample) /FullName (Sample Bold) /FontName /Sample-Bold /version (1.0)",
       "PostScript||Sample|1.0|Sample-Bold|Sample-Bold|Sample-Bold"},
      {"/WeightVector [1 0] /FontName /MM", "PostScript - MM||||MM|MM|MM"},
      {"/CIDFontName /Light /FontName /Other /CIDFontVersion 2.0 /version (1.0)", "PostScript|||2.0|Light|Light|Light"},
      {line + "/FullName (Full)", "PostScript||Line||Full|Full|Full"},
      {"/FullName (Full)", "PostScript||Full||Full|Full|Full"},
      {line, "PostScript||Line||Line-Name|Line-Name|Line-Name"},
      {line.substr(2), "PostScript||||||"},  // a header line at the very start is not seen
  };
  for (const auto& row : rows) EXPECT_EQ(gather(row.text), row.names) << row.text;
  // Absent keys replace nothing, and a version holding text is kept.
  EXPECT_EQ(gather("/version (1.0)", {"OCF", "Maker", "Family", "9.9", "Name", "", ""}), "OCF|Maker|Family|9.9|Name|Name|Name");
  // The foundry is the notice, but only when the header names a known foundry (as in ReadsRealFiles).
  EXPECT_EQ(gather("/Notice (Copyright Nobody)"), "PostScript||||||");
}

// Values read by eye from the clear text of each file.
TEST(Type1Header, ReadsRealFiles) {
  const std::string roman = "PostScript|Copyright \\050URW\\051++,Copyright 2014 by \\050URW\\051++ Design & "
                            "Development|Nimbus Roman|1.00|NimbusRoman-Regular|NimbusRoman-Regular|NimbusRoman-Regular";
  const struct { std::string path, names; } rows[] = {
      {test::fontPath("type1/NimbusRoman-Regular.pfb"), roman},
      {test::fontPath("type1/NimbusRoman-Regular.pfa"), roman},
      {"/usr/share/fonts/type1/urw-base35/NimbusSans-Bold.t1",  // a notice with nested parentheses
       "PostScript|(URW)++,Copyright 2014 by (URW)++ Design & Development|Nimbus Sans|1.00|NimbusSans-Bold|"
       "NimbusSans-Bold|NimbusSans-Bold"},
  };
  setFoundryNameTest([](const UxString& text) { return text.find("(urw)++") != std::string::npos; });
  for (const auto& row : rows) {
    const std::string bytes = test::readFile(row.path);
    if (!bytes.empty()) {  // else: not installed
      EXPECT_EQ(gather(bytes.substr(0, 6000)), row.names) << row.path;
    }
  }
  setFoundryNameTest(nullptr);
}

TEST(Type1Header, WindowsCompanionFileNames) {
  UxString name = "-";
  EXPECT_FALSE(GetWindowsMMMFontNameFromPrinterFontName("a.pfb", &name));  // too short a stem
  EXPECT_TRUE(GetWindowsMMMFontNameFromPrinterFontName("/d/AB.PFB", &name) && name == "/d/AB.mmm");
  EXPECT_FALSE(GetWindowsPSPrinterFontNameFromFontName("abpfm", &name));
  EXPECT_TRUE(GetWindowsPSPrinterFontNameFromFontName("AB.MMM", &name) && name == "AB.pfb");
}

}  // namespace
}  // namespace typeprint
