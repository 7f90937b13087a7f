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
  const struct { const char* what; std::string text, token, value; } rows[] = {  // value "-": absent
      {"nested parentheses", "/FullName (Sample (Bold) Italic) readonly def", "/fullname", "Sample (Bold) Italic"},
      {"name literal", "/FontName /Sample-Bold def", "/fontname", "Sample-Bold"},
      {"key in any case, no space after it", "/FAMILYNAME(Sample)", "/familyname", "Sample"},
      {"bracketed", "/WeightVector [0.5 0.5] def", "/weightvector", "0.5 0.5"},
      {"line feeds skipped before the value", "/FontName\n\n /Sample def", "/fontname", "Sample"},
      {"a tab is not skipped", "/FontName\t/Sample def", "/fontname", "\t/Sample"},
      {"bare value runs over a line end", "/FontName /Sample\n/Next def", "/fontname", "Sample\n/Next"},
      {"unclosed runs to the end", "/FullName (Sample", "/fullname", "Sample"},
      {"zero byte becomes underscore", std::string("/FullName (A\0B)", 15), "/fullname", "A_B"},
      {"stops at 3,999 characters", "/FullName (" + std::string(5000, 'x') + ")", "/fullname", std::string(3999, 'x')},
      {"absent", "/FontName /Sample def", "/familyname", "-"},
  };
  for (const auto& row : rows) {
    TType1HeaderText h = header(row.text);
    UxString value = "-";
    EXPECT_EQ(findBlobForToken(h.lower, h.text, row.token.c_str(), &value), row.value != "-") << row.what;
    EXPECT_EQ(value, row.value) << row.what;
  }
  UxString value = "-";
  EXPECT_FALSE(GetDelimitedKeyValue("%!FontType1-1.0: Sample", "%!PS-AdobeFont-", ": ", &value));
  EXPECT_EQ(value, "-");
  EXPECT_TRUE(GetDelimitedKeyValue("%!PS-AdobeFont-1.0: Sample-Bold 001", "%!PS-AdobeFont-", ":- \r\n%", &value));
  EXPECT_EQ(value, "Sample");
  EXPECT_TRUE(GetDelimitedKeyValue("%!PS-AdobeFont-1.0: Sample\r%%Title", "%!PS-AdobeFont-", ": \r\n%", &value));
  EXPECT_EQ(value, "Sample");
}

// "kind|foundry|family|version|PostScript|styled|full" after gathering over what `before` holds.
std::string gather(const std::string& text, std::vector<UxString> n = std::vector<UxString>(7)) {
  TType1HeaderText h = header(text);
  GatherPostScriptMetaDataFromData(h.lower, h.text, &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6]);
  return n[0] + "|" + n[1] + "|" + n[2] + "|" + n[3] + "|" + n[4] + "|" + n[5] + "|" + n[6];
}

TEST(Type1Header, GathersNames) {
  const std::string line = "..%!PS-AdobeFont-1.0: Line-Name 001.000\n";  // ".." stands for a segment header
  const std::vector<UxString> old{"OCF", "Old Foundry", "Old Family", "9.9", "Old-Name", "", ""};
  const struct { const char* what; std::string text; std::vector<UxString> before; const char* names; } rows[] = {
      {"dictionary keys", line + "/FamilyName (Sample) /FullName (Sample Bold) /FontName /Sample-Bold /version (1.0)",
       {}, "PostScript||Sample|1.0|Sample-Bold|Sample-Bold|Sample-Bold"},
      {"multiple master", "/WeightVector [1 0] /FontName /MM", {}, "PostScript - MM||||MM|MM|MM"},
      {"CID keys win", "/CIDFontName /Light /FontName /Other /CIDFontVersion 2.0 /version (1.0)", {},
       "PostScript|||2.0|Light|Light|Light"},
      {"family from the header line", line + "/FullName (Full)", {}, "PostScript||Line||Full|Full|Full"},
      {"family from the full name", "/FullName (Full)", {}, "PostScript||Full||Full|Full|Full"},
      {"PostScript name from the header line last", line, {}, "PostScript||Line||Line-Name|Line-Name|Line-Name"},
      {"a header line at the very start is not seen", line.substr(2), {}, "PostScript||||||"},
      {"absent keys replace nothing", "/Weight (Bold)", old, "OCF|Old Foundry|Old Family|9.9|Old-Name|Old-Name|Old-Name"},
      {"a version holding text is kept", "/version (1.0)", old, "OCF|Old Foundry|Old Family|9.9|Old-Name|Old-Name|Old-Name"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.before.empty() ? gather(row.text) : gather(row.text, row.before), row.names) << row.what;
  // The foundry is the notice, but only when the header names a known foundry.
  setFoundryNameTest([](const UxString& text) { return text.find("maker") != std::string::npos; });
  EXPECT_EQ(gather("/Copyright (Maker Inc)"), "PostScript|Maker Inc|||||");
  EXPECT_EQ(gather("/Notice (Copyright Nobody) /Comment (by Maker)"), "PostScript|Copyright Nobody|||||");
  EXPECT_EQ(gather("/Notice (Copyright Nobody)"), "PostScript||||||");
  setFoundryNameTest(nullptr);
  EXPECT_EQ(gather("/Notice (Copyright Maker Inc)"), "PostScript||||||");
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
    if (!bytes.empty()) EXPECT_EQ(gather(bytes.substr(0, 6000)), row.names) << row.path;  // else: not installed
  }
  setFoundryNameTest(nullptr);
}

TEST(Type1Header, CompanionFileNames) {
  const struct { const char* name; const char* mmm; const char* printer; } rows[] = {  // "-": none
      {"SAMPLE.PFB", "SAMPLE.mmm", "-"}, {"/d/ab.pfb", "/d/ab.mmm", "-"}, {"a.pfb", "-", "-"}, {"samplepfb", "-", "-"},
      {"ab.pfm", "-", "ab.pfb"},         {"AB.MMM", "-", "AB.pfb"},       {"x.ttf", "-", "-"},
  };
  for (const auto& row : rows) {
    UxString mmm = "-", printer = "-";
    EXPECT_EQ(GetWindowsMMMFontNameFromPrinterFontName(row.name, &mmm), *row.mmm != '-') << row.name;
    EXPECT_EQ(mmm, row.mmm) << row.name;
    EXPECT_EQ(GetWindowsPSPrinterFontNameFromFontName(row.name, &printer), *row.printer != '-') << row.name;
    EXPECT_EQ(printer, row.printer) << row.name;
  }
}

}  // namespace
}  // namespace typeprint
