// The XML and property-list exchange forms, written and read through the C interface.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/font_specifier.h"
#include "typeprint.h"

namespace {

const char* const kXMLHead =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<TypeprintData xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n";

TP_FontSpecifier sampleFace() {
  TP_FontSpecifier s;
  s.kindName = "OpenType - PS";
  s.postScriptName = "NimbusSans-Regular";
  s.familyName = "Nimbus Sans";
  s.version = "Version 1.00";
  s.foundryName = "Nobody Known";  // written as the foundry getter answers it: "--"
  s.kerningChecksum = 0x00ABCDEF;
  s.typeprintChecksum = 0x1234ABCD;
  s.outlineFileSize = 4016;
  s.attributes = TP_ATTR_ALL;
  return s;
}

// Asks the writer for the size with a zero capacity, then writes into a buffer of that size.
std::string write(TP_Status (*writer)(TP_FontArray*, char*, uint32_t*), TP_FontArray* array,
                  TP_Status expected = TP_STATUS_OK) {
  uint32_t size = 0;
  char probe[1];
  writer(array, probe, &size);
  std::vector<char> buffer(size);
  EXPECT_EQ(writer(array, buffer.data(), &size), expected);
  return std::string(buffer.data());
}

// The writer answers through the getters (trimmed version, "--" for an unknown foundry) and
// truncates into a short buffer, reporting the full size. Reading back sets the nine bits of the
// written tags, and style and family ID read as 0, not -1.
TEST(XMLRepresentation, WritesTheDocumentCharacterForCharacterAndReadsItBack) {
  TP_FontArray *array = new TP_FontArray{{sampleFace()}}, *back = nullptr;
  const std::string xml = write(TP_GetXMLRepresentation, array);
  EXPECT_EQ(xml, std::string(kXMLHead) +
                     "\t<FontData>\n"
                     "\t\t<FontKind>OpenType - PS</FontKind>\n"
                     "\t\t<PostScriptName>NimbusSans-Regular</PostScriptName>\n"
                     "\t\t<Foundry>--</Foundry>\n"
                     "\t\t<Family>Nimbus Sans</Family>\n"
                     "\t\t<Version>1.00</Version>\n"
                     "\t\t<Checksum>1234ABCD</Checksum>\n"
                     "\t\t<KerningChecksum>00ABCDEF</KerningChecksum>\n"
                     "\t\t<OutlineFileSize>4016</OutlineFileSize>\n"
                     "\t\t<OutlineFileName></OutlineFileName>\n"
                     "\t</FontData>\n"
                     "</TypeprintData>\n");
  char buffer[16];
  uint32_t size = 10;
  EXPECT_EQ(TP_GetXMLRepresentation(array, buffer, &size), TP_STATUS_RANGE);
  EXPECT_EQ(std::string(buffer), xml.substr(0, 9));
  EXPECT_EQ(size, xml.size() + 1);
  EXPECT_EQ(TP_GetXMLRepresentation(nullptr, buffer, &size), TP_STATUS_FAILED);
  ASSERT_EQ(TP_CreateSpecifierFromXML(xml.c_str(), &back), TP_STATUS_OK);
  ASSERT_EQ(back->count(), 1u);
  EXPECT_EQ(back->at(0).attributes, 0x703Fu);
  EXPECT_EQ(std::string(back->at(0).foundryName), "--");
  EXPECT_EQ(back->at(0).style, 0);
  EXPECT_EQ(back->at(0).fondResID, 0);
  TP_SpecifierFree(array);
  TP_SpecifierFree(back);
  TP_FontArray* empty = new TP_FontArray;  // still gets the skeleton, with status 1
  EXPECT_EQ(write(TP_GetXMLRepresentation, empty, TP_STATUS_FAILED), std::string(kXMLHead) + "</TypeprintData>\n");
  TP_SpecifierFree(empty);
}

// The reader searches each tag from the block's start to the end of the document; checksums are
// read as signed 32-bit longs, saturating, with negatives wrapping. `probe`: the record checked.
TEST(XMLRepresentation, ReaderQuirks) {
  const struct { const char *what, *xml; TP_Status status; size_t count, probe; uint32_t bits, checksum; } rows[] = {
      {"no block", "<TypeprintData></TypeprintData>", TP_STATUS_RANGE, 0, 0, 0, 0},
      {"only block unclosed", "<FontData><Family>A</Family>", TP_STATUS_RANGE, 0, 0, 0, 0},
      {"empty FontKind still sets its bit", "<FontData><FontKind></FontKind></FontData>", TP_STATUS_OK, 1, 0, 0x2, 0},
      {"tag borrowed from a later block",
       "<FontData><PostScriptName>A</PostScriptName></FontData><FontData><PostScriptName>B</PostScriptName>"
       "</FontData><FontData><Family>F</Family></FontData>",
       TP_STATUS_OK, 3, 1, 0x1001, 0},
      {"Checksum is not found inside KerningChecksum", "<FontData><KerningChecksum>1</KerningChecksum></FontData>",
       TP_STATUS_OK, 1, 0, 0x10, 0},
      {"saturates", "<FontData><Checksum>80000000</Checksum></FontData>", TP_STATUS_OK, 1, 0, 0x4000, 0x7FFFFFFF},
      {"negative", "<FontData><Checksum>-1</Checksum></FontData>", TP_STATUS_OK, 1, 0, 0x4000, 0xFFFFFFFF},
      {"not a number", "<FontData><Checksum>zz</Checksum></FontData>", TP_STATUS_OK, 1, 0, 0x4000, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TP_FontArray* out = nullptr;
    EXPECT_EQ(TP_CreateSpecifierFromXML(row.xml, &out), row.status);
    if (row.status != TP_STATUS_OK) {
      EXPECT_EQ(out, nullptr);
      continue;
    }
    ASSERT_EQ(out->count(), row.count);
    EXPECT_EQ(out->at(row.probe).attributes, row.bits);
    EXPECT_EQ(out->at(row.probe).typeprintChecksum, row.checksum);
    TP_SpecifierFree(out);
  }
}

// A face without a checksum is written with its kerning checksum under "Checksum".
TEST(PropertyListRepresentation, RoundTripAndChecksumQuirk) {
  TP_FontSpecifier noChecksum = sampleFace();
  noChecksum.postScriptName = "Other";
  noChecksum.attributes &= ~TP_ATTR_CHECKSUM;
  TP_FontArray* array = new TP_FontArray{{sampleFace(), noChecksum}};
  const std::string text = write(TP_GetPropertyListRepresentation, array);
  EXPECT_NE(text.find("<key>Keywords</key>"), std::string::npos);
  TP_FontArray* back = nullptr;
  ASSERT_EQ(TP_CreateSpecifierFromPropertyList(text.c_str(), &back), TP_STATUS_OK);
  ASSERT_EQ(back->count(), 2u);
  EXPECT_EQ(back->at(0).attributes, 0x703Fu);
  EXPECT_EQ(back->at(0).typeprintChecksum, 0x1234ABCDu);
  EXPECT_EQ(back->at(1).typeprintChecksum, 0x00ABCDEFu);
  TP_SpecifierFree(array);
  TP_SpecifierFree(back);
}

TEST(PropertyListRepresentation, ReaderRejectsWhatIsNotAnArrayOfFaces) {
  const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";
  const std::string face = "<dict><key>PostScriptName</key><string>A</string></dict>";
  const struct { const char* what; std::string text; TP_Status status; } rows[] = {
      {"not a property list", "hello", TP_STATUS_FAILED},
      {"root is a dictionary", head + face + "</plist>", TP_STATUS_FAILED},
      {"empty array", head + "<array/></plist>", TP_STATUS_FAILED},
      {"names only, equal names collapse", head + "<array>" + face + face + "</array></plist>", TP_STATUS_OK},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TP_FontArray* out = nullptr;
    EXPECT_EQ(TP_CreateSpecifierFromPropertyList(row.text.c_str(), &out), row.status);
    if (row.status != TP_STATUS_OK) continue;
    ASSERT_EQ(out->count(), 1u);
    EXPECT_EQ(out->at(0).attributes, uint32_t(TP_ATTR_POSTSCRIPT_NAME));
    TP_SpecifierFree(out);
  }
}

}  // namespace
