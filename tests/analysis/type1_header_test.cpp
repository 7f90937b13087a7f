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
  const struct {
    const char* what;
    std::string text, token, value;  // value "untouched": the token is absent
  } rows[] = {
      {"nested parentheses", "/FullName (Sample (Bold) Italic) readonly def", "/fullname", "Sample (Bold) Italic"},
      {"name literal", "/FontName /Sample-Bold def", "/fontname", "Sample-Bold"},
      {"key in any case, no space after it", "/FAMILYNAME(Sample)", "/familyname", "Sample"},
      {"bracketed", "/WeightVector [0.5 0.5] def", "/weightvector", "0.5 0.5"},
      {"braced", "/FontBBox {0 -200 1000 900} def", "/fontbbox", "0 -200 1000 900"},
      {"bare value", "/version 001.000 def", "/version", "001.000"},
      {"line feeds skipped before the value", "/FontName\n\n /Sample def", "/fontname", "Sample"},
      {"a tab is not skipped", "/FontName\t/Sample def", "/fontname", "\t/Sample"},
      {"bare value runs over a line end", "/FontName /Sample\n/Next def", "/fontname", "Sample\n/Next"},
      {"unclosed runs to the end", "/FullName (Sample", "/fullname", "Sample"},
      {"zero byte becomes underscore", std::string("/FullName (A\0B)", 15), "/fullname", "A_B"},
      {"values stop at 3,999 characters", "/FullName (" + std::string(5000, 'x') + ")", "/fullname",
       std::string(3999, 'x')},
      {"absent", "/FontName /Sample def", "/familyname", "untouched"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TType1HeaderText h = header(row.text);
    UxString value = "untouched";
    EXPECT_EQ(findBlobForToken(h.lower, h.text, row.token.c_str(), &value), row.value != "untouched");
    EXPECT_EQ(value, row.value);
  }
  const char* const lineRows[][4] = {  // what, header, delimiters, value
      {"family ends at the hyphen", "%!PS-AdobeFont-1.0: Sample-Bold 001.000", ":- \r\n%", "Sample"},
      {"PostScript name keeps it", "%!PS-AdobeFont-1.0: Sample-Bold 001.000", ": \r\n%", "Sample-Bold"},
      {"carriage return ends it", "%!PS-AdobeFont-1.0: Sample\r%%Title", ": \r\n%", "Sample"},
      {"nothing after the key", "%!PS-AdobeFont-", ": \r\n%", ""},
  };
  for (const auto& row : lineRows) {
    UxString value;
    EXPECT_TRUE(GetDelimitedKeyValue(row[1], "%!PS-AdobeFont-", row[2], &value)) << row[0];
    EXPECT_EQ(value, row[3]) << row[0];
  }
  UxString value = "untouched";
  EXPECT_FALSE(GetDelimitedKeyValue("%!FontType1-1.0: Sample", "%!PS-AdobeFont-", ": ", &value));
  EXPECT_EQ(value, "untouched");
}

struct PsNames {
  UxString kind, foundry, family, version, postScript, styled, full;
};

PsNames gather(const std::string& text, PsNames n = {}) {
  TType1HeaderText h = header(text);
  GatherPostScriptMetaDataFromData(h.lower, h.text, &n.kind, &n.foundry, &n.family, &n.version, &n.postScript,
                                   &n.styled, &n.full);
  return n;
}

void expectNames(const PsNames& got, const PsNames& want) {
  EXPECT_EQ(got.kind, want.kind);
  EXPECT_EQ(got.foundry, want.foundry);
  EXPECT_EQ(got.family, want.family);
  EXPECT_EQ(got.version, want.version);
  EXPECT_EQ(got.postScript, want.postScript);
  EXPECT_EQ(got.styled, want.styled);
  EXPECT_EQ(got.full, want.full);
}

// Two leading bytes stand for a segment header, as in a PFB or a POST resource.
const std::string kLine = "..%!PS-AdobeFont-1.0: Line-Name 001.000\n";

TEST(Type1Header, GathersNames) {
  const PsNames old{"OCF", "Old Foundry", "Old Family", "9.9", "Old-Name", "", ""};
  const struct {
    const char* what;
    std::string text;
    PsNames before, expected;
  } rows[] = {
      {"dictionary keys", kLine + "/FamilyName (Sample) /FullName (Sample Bold) /FontName /Sample-Bold /version (1.0)",
       {}, {"PostScript", "", "Sample", "1.0", "Sample-Bold", "Sample-Bold", "Sample-Bold"}},
      {"multiple master", "/WeightVector [1 0] /FontName /MM", {}, {"PostScript - MM", "", "", "", "MM", "MM", "MM"}},
      {"CID keys win", "/CIDFontName /Sample-Light /FontName /Other /CIDFontVersion 2.0 /version (1.0)",
       {}, {"PostScript", "", "", "2.0", "Sample-Light", "Sample-Light", "Sample-Light"}},
      {"family from the header line", kLine + "/FullName (Full)", {}, {"PostScript", "", "Line", "", "Full", "Full", "Full"}},
      {"family from the full name", "/FullName (Full)", {}, {"PostScript", "", "Full", "", "Full", "Full", "Full"}},
      {"PostScript name from the header line last", kLine,
       {}, {"PostScript", "", "Line", "", "Line-Name", "Line-Name", "Line-Name"}},
      {"header line at the very start is not seen", "%!PS-AdobeFont-1.0: Line-Name 001.000\n",
       {}, {"PostScript", "", "", "", "", "", ""}},
      {"absent keys replace nothing", "/Weight (Bold)", old,
       {"OCF", "Old Foundry", "Old Family", "9.9", "Old-Name", "Old-Name", "Old-Name"}},
      {"a version holding text is kept", "/version (1.0)", old,
       {"OCF", "Old Foundry", "Old Family", "9.9", "Old-Name", "Old-Name", "Old-Name"}},
      {"no bytes: only the default kind", "", {}, {"PostScript", "", "", "", "", "", ""}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    expectNames(gather(row.text, row.before), row.expected);
  }
}

TEST(Type1Header, FoundryIsTheNoticeWhenTheHeaderNamesAKnownFoundry) {
  const struct {
    const char* what;
    std::string text;
    const char* foundry;
  } rows[] = {
      {"copyright names it", "/Copyright (Maker Inc)", "Maker Inc"},
      {"elsewhere in the header", "/Notice (Copyright Nobody) /Comment (by Maker)", "Copyright Nobody"},
      {"nowhere", "/Notice (Copyright Nobody)", ""},
      {"no notice at all", "/Comment (Maker)", ""},
  };
  setFoundryNameTest([](const UxString& text) { return text.find("maker") != std::string::npos; });
  for (const auto& row : rows) EXPECT_EQ(gather(row.text).foundry, row.foundry) << row.what;
  setFoundryNameTest(nullptr);
  EXPECT_EQ(gather("/Notice (Copyright Maker Inc)").foundry, "");
}

// Values read by eye from the clear text of each file.
TEST(Type1Header, ReadsRealFiles) {
  const PsNames roman{"PostScript", "Copyright \\050URW\\051++,Copyright 2014 by \\050URW\\051++ Design & Development",
                      "Nimbus Roman", "1.00", "NimbusRoman-Regular", "NimbusRoman-Regular", "NimbusRoman-Regular"};
  const struct {
    std::string path;
    PsNames expected;
  } rows[] = {
      {test::fontPath("type1/NimbusRoman-Regular.pfb"), roman},
      {test::fontPath("type1/NimbusRoman-Regular.pfa"), roman},
      {"/usr/share/fonts/type1/urw-base35/NimbusSans-Bold.t1",  // a notice with nested parentheses
       {"PostScript", "(URW)++,Copyright 2014 by (URW)++ Design & Development", "Nimbus Sans", "1.00",
        "NimbusSans-Bold", "NimbusSans-Bold", "NimbusSans-Bold"}},
  };
  setFoundryNameTest([](const UxString& text) { return text.find("(urw)++") != std::string::npos; });
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    const std::string bytes = test::readFile(row.path);
    if (!bytes.empty()) expectNames(gather(bytes.substr(0, 6000)), row.expected);  // else: not installed
  }
  setFoundryNameTest(nullptr);
}

TEST(Type1Header, CompanionFileNames) {
  const struct {
    const char* name;
    const char* mmm;      // from a printer-font name
    const char* printer;  // from a metrics or MM name
  } rows[] = {
      {"SAMPLE.PFB", "SAMPLE.mmm", nullptr}, {"ab.pfb", "ab.mmm", nullptr},   {"/dir/x.pfb", "/dir/x.mmm", nullptr},
      {"sample.pfm", nullptr, "sample.pfb"}, {"SAMPLE.MMM", nullptr, "SAMPLE.pfb"}, {"a.pfb", nullptr, nullptr},
      {"samplepfb", nullptr, nullptr},       {"sample.ttf", nullptr, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    UxString mmm = "untouched", printer = "untouched";
    EXPECT_EQ(GetWindowsMMMFontNameFromPrinterFontName(row.name, &mmm), row.mmm != nullptr);
    EXPECT_EQ(mmm, row.mmm ? row.mmm : "untouched");
    EXPECT_EQ(GetWindowsPSPrinterFontNameFromFontName(row.name, &printer), row.printer != nullptr);
    EXPECT_EQ(printer, row.printer ? row.printer : "untouched");
  }
  EXPECT_FALSE(GetWindowsMMMFontNameFromPrinterFontName("sample.pfb", nullptr));
}

}  // namespace
}  // namespace typeprint
