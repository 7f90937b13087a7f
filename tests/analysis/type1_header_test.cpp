#include "analysis/type1_header.h"

#include <gtest/gtest.h>

#include "analysis/foundry_lookup.h"
#include "builders/type1_builder.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

TType1HeaderText header(const std::string& text) {
  return TType1HeaderText(ByteSpan(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

TEST(Type1Header, TokenValues) {
  const struct {
    const char* what;
    std::string text;
    const char* token;
    const char* value;  // nullptr: token absent
  } rows[] = {
      {"parenthesised", "/FullName (Sample Bold) readonly def", "/fullname", "Sample Bold"},
      {"nested parentheses", "/FullName (Sample (Bold) Italic) readonly def", "/fullname", "Sample (Bold) Italic"},
      {"name literal", "/FontName /Sample-Bold def", "/fontname", "Sample-Bold"},
      {"no space after the key", "/FamilyName(Sample)", "/familyname", "Sample"},
      {"key in any case", "/FAMILYNAME (Sample)", "/familyname", "Sample"},
      {"bracketed", "/WeightVector [0.5 0.5] def", "/weightvector", "0.5 0.5"},
      {"braced", "/FontBBox {0 -200 1000 900} def", "/fontbbox", "0 -200 1000 900"},
      {"bare value", "/version 001.000 def", "/version", "001.000"},
      {"line feeds skipped before the value", "/FontName\n\n /Sample def", "/fontname", "Sample"},
      {"a tab is not skipped", "/FontName\t/Sample def", "/fontname", "\t/Sample"},
      {"bare value runs over a line end", "/FontName /Sample\n/Next def", "/fontname", "Sample\n/Next"},
      {"unclosed runs to the end", "/FullName (Sample", "/fullname", "Sample"},
      {"zero byte becomes underscore", std::string("/FullName (A\0B)", 15), "/fullname", "A_B"},
      {"absent", "/FontName /Sample def", "/familyname", nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TType1HeaderText h = header(row.text);
    UxString value = "untouched";
    EXPECT_EQ(findBlobForToken(h.lower, h.text, row.token, &value), row.value != nullptr);
    EXPECT_EQ(value, row.value ? row.value : "untouched");
  }
}

TEST(Type1Header, ValuesStopAt3999Characters) {
  TType1HeaderText h = header("/FullName (" + std::string(5000, 'x') + ")");
  UxString value;
  EXPECT_TRUE(findBlobForToken(h.lower, h.text, "/fullname", &value));
  EXPECT_EQ(value.size(), 3999u);
}

TEST(Type1Header, HeaderLineValues) {
  const struct {
    const char* what;
    std::string text;
    const char* delimiters;
    const char* value;
  } rows[] = {
      {"family ends at the hyphen", "%!PS-AdobeFont-1.0: Sample-Bold 001.000", ":- \r\n%", "Sample"},
      {"PostScript name keeps it", "%!PS-AdobeFont-1.0: Sample-Bold 001.000", ": \r\n%", "Sample-Bold"},
      {"carriage return ends it", "%!PS-AdobeFont-1.0: Sample\r%%Title", ": \r\n%", "Sample"},
      {"nothing after the key", "%!PS-AdobeFont-", ": \r\n%", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    UxString value = "untouched";
    EXPECT_TRUE(GetDelimitedKeyValue(row.text, "%!PS-AdobeFont-", row.delimiters, &value));
    EXPECT_EQ(value, row.value);
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

// Two leading bytes stand for a segment header, as in a PFB or a POST resource.
const std::string kLine = "..%!PS-AdobeFont-1.0: Line-Name 001.000\n";

TEST(Type1Header, GathersNames) {
  const struct {
    const char* what;
    std::string text;
    PsNames expected;
  } rows[] = {
      {"dictionary keys", kLine + "/FamilyName (Sample) /FullName (Sample Bold) /FontName /Sample-Bold /version (1.0)",
       {"PostScript", "", "Sample", "1.0", "Sample-Bold", "Sample-Bold", "Sample-Bold"}},
      {"multiple master", "/WeightVector [1 0] /FontName /MM", {"PostScript - MM", "", "", "", "MM", "MM", "MM"}},
      {"CID keys win", "/CIDFontName /Sample-Light /FontName /Other /CIDFontVersion 2.0 /version (1.0)",
       {"PostScript", "", "", "2.0", "Sample-Light", "Sample-Light", "Sample-Light"}},
      {"family from the header line", kLine + "/FullName (Full)",
       {"PostScript", "", "Line", "", "Full", "Full", "Full"}},
      {"family from the full name without a header line", "/FullName (Full)",
       {"PostScript", "", "Full", "", "Full", "Full", "Full"}},
      {"PostScript name from the header line last", kLine,
       {"PostScript", "", "Line", "", "Line-Name", "Line-Name", "Line-Name"}},
      {"header line at the very start is not seen", "%!PS-AdobeFont-1.0: Line-Name 001.000\n",
       {"PostScript", "", "", "", "", "", ""}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    PsNames n = gather(row.text);
    EXPECT_EQ(n.kind, row.expected.kind);
    EXPECT_EQ(n.family, row.expected.family);
    EXPECT_EQ(n.version, row.expected.version);
    EXPECT_EQ(n.postScript, row.expected.postScript);
    EXPECT_EQ(n.styled, row.expected.styled);
    EXPECT_EQ(n.full, row.expected.full);
    EXPECT_EQ(n.foundry, row.expected.foundry);
  }
}

TEST(Type1Header, KeepsWhatAnAbsentKeyDoesNotReplace) {
  PsNames before{"OCF", "Old Foundry", "Old Family", "9.9", "Old-Name", "", ""};
  PsNames n = gather("/Weight (Bold)", before);
  EXPECT_EQ(n.kind, "OCF");
  EXPECT_EQ(n.foundry, "Old Foundry");
  EXPECT_EQ(n.family, "Old Family");
  EXPECT_EQ(n.version, "9.9");
  EXPECT_EQ(n.postScript, "Old-Name");
  EXPECT_EQ(n.styled, "Old-Name");
  // A /version is not read into a version that already holds text.
  EXPECT_EQ(gather("/version (1.0)", before).version, "9.9");
  // Nothing happens without bytes, except the default kind.
  PsNames empty;
  GatherPostScriptMetaDataFromData({}, {}, &empty.kind, &empty.foundry, &empty.family, nullptr, nullptr, nullptr,
                                   nullptr);
  EXPECT_EQ(empty.kind, "PostScript");
}

bool knowsMaker(const UxString& text) { return text.find("maker") != std::string::npos; }

TEST(Type1Header, FoundryIsTheNoticeWhenTheHeaderNamesAKnownFoundry) {
  const struct {
    const char* what;
    std::string text;
    const char* foundry;
  } rows[] = {
      {"notice names it", "/Notice (Copyright Maker Inc)", "Copyright Maker Inc"},
      {"copyright names it", "/Copyright (Maker Inc)", "Maker Inc"},
      {"elsewhere in the header", "/Notice (Copyright Nobody) /Comment (by Maker)", "Copyright Nobody"},
      {"nowhere", "/Notice (Copyright Nobody)", ""},
      {"no notice at all", "/Comment (Maker)", ""},
  };
  setFoundryNameTest(knowsMaker);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(gather(row.text).foundry, row.foundry);
  }
  setFoundryNameTest(nullptr);
  EXPECT_EQ(gather("/Notice (Copyright Maker Inc)").foundry, "");
}

// Values read by eye from the clear text of each file.
TEST(Type1Header, ReadsRealFiles) {
  const struct {
    std::string path;
    PsNames expected;
  } rows[] = {
      {test::fontPath("type1/NimbusRoman-Regular.pfb"),
       {"PostScript", "", "Nimbus Roman", "1.00", "NimbusRoman-Regular", "NimbusRoman-Regular", "NimbusRoman-Regular"}},
      {test::fontPath("type1/NimbusRoman-Regular.pfa"),
       {"PostScript", "", "Nimbus Roman", "1.00", "NimbusRoman-Regular", "NimbusRoman-Regular", "NimbusRoman-Regular"}},
      {"/usr/share/fonts/type1/urw-base35/NimbusSans-Bold.t1",
       {"PostScript", "", "Nimbus Sans", "1.00", "NimbusSans-Bold", "NimbusSans-Bold", "NimbusSans-Bold"}},
  };
  setFoundryNameTest([](const UxString& text) { return text.find("(urw)++") != std::string::npos; });
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    std::string bytes = test::readFile(row.path);
    if (bytes.empty()) {
      std::cerr << "skipped, not installed: " << row.path << "\n";
      continue;
    }
    PsNames n = gather(bytes.substr(0, 6000));
    EXPECT_EQ(n.kind, row.expected.kind);
    EXPECT_EQ(n.family, row.expected.family);
    EXPECT_EQ(n.version, row.expected.version);
    EXPECT_EQ(n.postScript, row.expected.postScript);
    EXPECT_EQ(n.full, row.expected.full);
  }
  // The notice of the URW files holds nested parentheses; the header names the foundry.
  std::string t1 = test::readFile("/usr/share/fonts/type1/urw-base35/NimbusSans-Bold.t1");
  if (!t1.empty())
    EXPECT_EQ(gather(t1.substr(0, 6000)).foundry, "(URW)++,Copyright 2014 by (URW)++ Design & Development");
  std::string pfb = test::readFile(test::fontPath("type1/NimbusRoman-Regular.pfb"));
  EXPECT_EQ(gather(pfb.substr(0, 6000)).foundry,
            "Copyright \\050URW\\051++,Copyright 2014 by \\050URW\\051++ Design & Development");
  setFoundryNameTest(nullptr);
}

TEST(Type1Header, CompanionFileNames) {
  const struct {
    const char* name;
    const char* mmm;        // from a printer-font name
    const char* printer;    // from a metrics or MM name
  } rows[] = {
      {"SAMPLE.PFB", "SAMPLE.mmm", nullptr},
      {"sample.pfb", "sample.mmm", nullptr},
      {"sample.pfm", nullptr, "sample.pfb"},
      {"sample.mmm", nullptr, "sample.pfb"},
      {"SAMPLE.MMM", nullptr, "SAMPLE.pfb"},
      {"a.pfb", nullptr, nullptr},
      {"ab.pfb", "ab.mmm", nullptr},
      {"samplepfb", nullptr, nullptr},
      {"/dir/x.pfb", "/dir/x.mmm", nullptr},
      {"sample.ttf", nullptr, nullptr},
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
