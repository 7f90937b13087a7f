// The XML and property-list exchange forms, written and read through the C interface.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/font_specifier.h"
#include "typeprint.h"

namespace {

TP_FontSpecifier sampleFace() {
  TP_FontSpecifier s;
  s.kindName = "OpenType - PS";
  s.postScriptName = "NimbusSans-Regular";
  s.familyName = "Nimbus Sans";
  s.version = "Version 1.00";
  s.platform = "crossplatform";
  s.outlineFilePath = "";
  s.kerningChecksum = 0x00ABCDEF;
  s.typeprintChecksum = 0x1234ABCD;
  s.outlineFileSize = 4016;
  s.attributes = TP_ATTR_ALL & ~TP_ATTR_FOUNDRY_NAME;
  return s;
}

TP_FontArray* arrayOf(std::vector<TP_FontSpecifier> faces) {
  auto* array = new TP_FontArray;
  for (const auto& f : faces) array->append(f);
  return array;
}

std::string write(TP_Status (*writer)(TP_FontArray*, char*, uint32_t*), TP_FontArray* array, TP_Status* status) {
  uint32_t size = 0;
  char probe[1];
  writer(array, probe, &size);
  std::vector<char> buffer(size);
  uint32_t capacity = size;
  *status = writer(array, buffer.data(), &capacity);
  EXPECT_EQ(capacity, size);
  return std::string(buffer.data());
}

TEST(XMLRepresentation, WritesTheDocumentCharacterForCharacter) {
  TP_FontArray* array = arrayOf({sampleFace()});
  TP_Status status = 99;
  const std::string xml = write(TP_GetXMLRepresentation, array, &status);
  EXPECT_EQ(status, TP_STATUS_OK);
  EXPECT_EQ(xml,
            "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
            "<TypeprintData xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n"
            "\t<FontData>\n"
            "\t\t<FontKind>OpenType - PS</FontKind>\n"
            "\t\t<PostScriptName>NimbusSans-Regular</PostScriptName>\n"
            "\t\t<Foundry></Foundry>\n"
            "\t\t<Family>Nimbus Sans</Family>\n"
            "\t\t<Version>1.00</Version>\n"
            "\t\t<Checksum>1234ABCD</Checksum>\n"
            "\t\t<KerningChecksum>00ABCDEF</KerningChecksum>\n"
            "\t\t<OutlineFileSize>4016</OutlineFileSize>\n"
            "\t\t<OutlineFileName></OutlineFileName>\n"
            "\t</FontData>\n"
            "</TypeprintData>\n");
  TP_SpecifierFree(array);
}

TEST(XMLRepresentation, EmptyArrayAndShortBuffers) {
  TP_FontArray* empty = arrayOf({});
  char buffer[512];
  uint32_t size = sizeof buffer;
  EXPECT_EQ(TP_GetXMLRepresentation(empty, buffer, &size), TP_STATUS_FAILED);
  const std::string skeleton = std::string("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n") +
                               "<TypeprintData xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n" +
                               "</TypeprintData>\n";
  EXPECT_EQ(std::string(buffer), skeleton);
  EXPECT_EQ(size, skeleton.size() + 1);

  size = 10;
  EXPECT_EQ(TP_GetXMLRepresentation(empty, buffer, &size), TP_STATUS_RANGE);
  EXPECT_EQ(std::string(buffer), skeleton.substr(0, 9));
  EXPECT_EQ(size, skeleton.size() + 1);
  size = uint32_t(skeleton.size());  // one short of the terminator
  EXPECT_EQ(TP_GetPropertyListRepresentation(empty, buffer, &size), TP_STATUS_RANGE);
  EXPECT_EQ(TP_GetXMLRepresentation(nullptr, buffer, &size), TP_STATUS_FAILED);
  TP_SpecifierFree(empty);
}

TEST(XMLRepresentation, RoundTripSetsTheNineBits) {
  TP_FontSpecifier face = sampleFace();
  face.attributes = TP_ATTR_ALL;
  face.foundryName = "Nobody Known";  // written as the foundry getter answers it: "--"
  TP_FontArray* array = arrayOf({face});
  TP_Status status = 0;
  const std::string xml = write(TP_GetXMLRepresentation, array, &status);
  TP_FontArray* back = nullptr;
  ASSERT_EQ(TP_CreateSpecifierFromXML(xml.c_str(), &back), TP_STATUS_OK);
  ASSERT_EQ(back->count(), 1u);
  const TP_FontSpecifier readBack = back->at(0);
  EXPECT_EQ(readBack.attributes, 0x703Fu);
  EXPECT_EQ(std::string(readBack.version), "1.00");
  EXPECT_EQ(std::string(readBack.foundryName), "--");
  EXPECT_EQ(readBack.typeprintChecksum, 0x1234ABCDu);
  EXPECT_EQ(readBack.outlineFileSize, 4016u);
  EXPECT_EQ(readBack.style, 0);
  EXPECT_EQ(readBack.fondResID, 0);
  EXPECT_EQ(write(TP_GetXMLRepresentation, back, &status), xml);
  TP_SpecifierFree(array);
  TP_SpecifierFree(back);
}

TEST(XMLRepresentation, ReaderQuirks) {
  const struct {
    const char* what;
    const char* xml;
    TP_Status status;
    size_t count;
    size_t probe;  // the record whose attributes are checked
    uint32_t attributes;
  } rows[] = {
      {"no block", "<TypeprintData></TypeprintData>", TP_STATUS_RANGE, 0, 0, 0},
      {"only block unclosed", "<FontData><Family>A</Family>", TP_STATUS_RANGE, 0, 0, 0},
      {"empty FontKind still sets its bit", "<FontData><FontKind></FontKind></FontData>", TP_STATUS_OK, 1, 0, 0x2},
      {"tag borrowed from a later block",
       "<FontData><PostScriptName>A</PostScriptName></FontData>"
       "<FontData><PostScriptName>B</PostScriptName></FontData>"
       "<FontData><Family>F</Family></FontData>",
       TP_STATUS_OK, 3, 1, 0x1001},
      {"Checksum is not found inside KerningChecksum",
       "<FontData><KerningChecksum>1</KerningChecksum></FontData>", TP_STATUS_OK, 1, 0, 0x10},
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
    EXPECT_EQ(out->at(row.probe).attributes, row.attributes);
    TP_SpecifierFree(out);
  }
}

TEST(XMLRepresentation, NumbersSaturateAsSigned32BitLongs) {
  const struct { const char* text; uint32_t value; } rows[] = {
      {"7FFFFFFF", 0x7FFFFFFF}, {"80000000", 0x7FFFFFFF}, {"FFFFFFFF", 0x7FFFFFFF},
      {"", 0}, {"zz", 0}, {"-1", 0xFFFFFFFF}, {"00000010", 16},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    std::string xml = std::string("<FontData><Checksum>") + row.text + "</Checksum></FontData>";
    TP_FontArray* out = nullptr;
    ASSERT_EQ(TP_CreateSpecifierFromXML(xml.c_str(), &out), TP_STATUS_OK);
    EXPECT_EQ(out->at(0).typeprintChecksum, row.value);
    EXPECT_EQ(out->at(0).attributes, uint32_t(TP_ATTR_CHECKSUM));
    TP_SpecifierFree(out);
  }
}

TEST(PropertyListRepresentation, RoundTripAndChecksumQuirk) {
  TP_FontSpecifier noChecksum = sampleFace();
  noChecksum.postScriptName = "Other";
  noChecksum.attributes &= ~TP_ATTR_CHECKSUM;
  TP_FontArray* array = arrayOf({sampleFace(), noChecksum});
  TP_Status status = 99;
  const std::string text = write(TP_GetPropertyListRepresentation, array, &status);
  EXPECT_EQ(status, TP_STATUS_OK);
  EXPECT_NE(text.find("<key>Keywords</key>"), std::string::npos);
  TP_FontArray* back = nullptr;
  ASSERT_EQ(TP_CreateSpecifierFromPropertyList(text.c_str(), &back), TP_STATUS_OK);
  ASSERT_EQ(back->count(), 2u);
  EXPECT_EQ(back->at(0).attributes, 0x703Fu);
  EXPECT_EQ(back->at(0).typeprintChecksum, 0x1234ABCDu);
  EXPECT_EQ(back->at(1).typeprintChecksum, 0x00ABCDEFu);  // repeats the kerning checksum
  const std::string rewritten = write(TP_GetPropertyListRepresentation, back, &status);
  TP_FontArray* again = nullptr;
  ASSERT_EQ(TP_CreateSpecifierFromPropertyList(rewritten.c_str(), &again), TP_STATUS_OK);
  EXPECT_EQ(write(TP_GetPropertyListRepresentation, again, &status), rewritten);
  TP_SpecifierFree(array);
  TP_SpecifierFree(back);
  TP_SpecifierFree(again);
}

TEST(PropertyListRepresentation, ReaderRejectsWhatIsNotAnArrayOfFaces) {
  const char* header = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";
  const struct { const char* what; std::string text; TP_Status status; size_t count; } rows[] = {
      {"not a property list", "hello", TP_STATUS_FAILED, 0},
      {"empty text", "", TP_STATUS_FAILED, 0},
      {"root is a dictionary", std::string(header) + "<dict><key>a</key><string>b</string></dict></plist>",
       TP_STATUS_FAILED, 0},
      {"empty array", std::string(header) + "<array/></plist>", TP_STATUS_FAILED, 0},
      {"names only, equal names collapse",
       std::string(header) + "<array><dict><key>PostScriptName</key><string>A</string></dict>"
                             "<dict><key>PostScriptName</key><string>A</string></dict></array></plist>",
       TP_STATUS_OK, 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    TP_FontArray* out = nullptr;
    EXPECT_EQ(TP_CreateSpecifierFromPropertyList(row.text.c_str(), &out), row.status);
    if (row.status != TP_STATUS_OK) continue;
    ASSERT_EQ(out->count(), row.count);
    EXPECT_EQ(out->at(0).attributes, uint32_t(TP_ATTR_POSTSCRIPT_NAME));
    TP_SpecifierFree(out);
  }
}

}  // namespace
