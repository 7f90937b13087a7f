// Hostile documents and files given to the imports and to identification: each is refused or
// read with bounded work, never a crash, a hang or an allocation out of proportion to its size.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include <string>

#include "support/test_paths.h"
#include "typeprint.h"

namespace {

std::string repeated(const std::string& piece, size_t times) {
  std::string out;
  out.reserve(piece.size() * times);
  while (times--) out += piece;
  return out;
}

const char kPlistHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
const char kOneFace[] = "<array><dict><key>PostScriptName</key><string>A</string></dict></array>";

// One face whose unknown key holds `depth` arrays nested in each other.
std::string nestedInFace(size_t depth) {
  return "<array><dict><key>PostScriptName</key><string>A</string><key>X</key>" + repeated("<array>", depth) +
         repeated("</array>", depth) + "</dict></array>";
}

TP_Status importPlist(const std::string& text, uint32_t* count) {
  TP_FontArray* array = nullptr;
  const TP_Status status = TP_CreateSpecifierFromPropertyList(text.c_str(), &array);
  *count = 0;
  if (array) TP_GetFontCount(array, count);
  TP_SpecifierFree(array);
  return status;
}

TP_Status importXML(const std::string& text, uint32_t* count) {
  TP_FontArray* array = nullptr;
  const TP_Status status = TP_CreateSpecifierFromXML(text.c_str(), &array);
  *count = 0;
  if (array) TP_GetFontCount(array, count);
  TP_SpecifierFree(array);
  return status;
}

// Nesting is bounded before the parser builds anything; a nesting that only looks deep inside a
// comment is no nesting.
TEST(HostileImports, PropertyListsNestedTooDeeplyAreRefused) {
  const struct { const char* what; std::string text; TP_Status status; uint32_t faces; } rows[] = {
      {"200,000 unclosed arrays", kPlistHead + repeated("<array>", 200000), TP_STATUS_FAILED, 0},
      {"200,000 closed arrays", kPlistHead + repeated("<array>", 200000) + repeated("</array>", 200000) + "</plist>",
       TP_STATUS_FAILED, 0},
      {"arrays hidden in a comment", kPlistHead + ("<!--" + repeated("<array>", 200000) + "-->") + kOneFace + "</plist>",
       TP_STATUS_OK, 1},
      {"a face holding 63 nested arrays, the deepest accepted", kPlistHead + nestedInFace(63) + "</plist>", TP_STATUS_OK, 1},
      {"a face holding 64 nested arrays", kPlistHead + nestedInFace(64) + "</plist>", TP_STATUS_FAILED, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    uint32_t faces = 0;
    EXPECT_EQ(importPlist(row.text, &faces), row.status);
    EXPECT_EQ(faces, row.faces);
  }
}

// The XML import: many records are read in time linear in the text; values that run across many
// later blocks stop at a copy budget with a failure.
TEST(HostileImports, XMLImportWorkStaysBounded) {
  const std::string head = "<TypeprintData>\n", tail = "</TypeprintData>\n";
  std::string distinct;
  for (int i = 0; i < 100000; ++i) distinct += "<FontData><PostScriptName>F" + std::to_string(i) + "</PostScriptName></FontData>\n";
  const struct { const char* what; std::string text; TP_Status status; uint32_t faces; } rows[] = {
      {"20,000 empty records are one face", head + repeated("<FontData></FontData>\n", 20000) + tail, TP_STATUS_OK, 1},
      {"100,000 distinct names", head + distinct + tail, TP_STATUS_OK, 100000},
      {"20,000 family values that never close", head + repeated("<FontData><Family>x</FontData>\n", 20000) +
       "</Family>" + tail, TP_STATUS_FAILED, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    uint32_t faces = 0;
    EXPECT_EQ(importXML(row.text, &faces), row.status);
    EXPECT_EQ(faces, row.faces);
  }
}

// The XML form of everything identified in `path`; empty when nothing was.
std::string identify(const std::string& path) {
  TP_FontArray* array = nullptr;
  if (TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &array) != TP_STATUS_OK) return {};
  uint32_t size = 0;
  char probe[1];
  TP_GetXMLRepresentation(array, probe, &size);
  std::string xml(size, '\0');
  TP_GetXMLRepresentation(array, xml.data(), &size);
  TP_SpecifierFree(array);
  return xml;
}

// A suitcase whose printer file (found by the 5-3-3 rule) is a FIFO reads as one whose printer
// file is missing, without blocking.
TEST(HostileImports, APrinterFileThatIsAFIFOReadsAsMissing) {
  namespace fs = std::filesystem;
  typeprint::test::ScratchDir dir;
  const fs::path fixtures = typeprint::test::fontPath("mac/c-type1-family/macbinary");
  for (const char* name : {"NimbusSans", "NimbuSanReg", "NimbuSanBol"}) fs::copy_file(fixtures / name, dir.file(name));
  const std::string suitcase = dir.file("NimbusSans"), withPrinterFile = identify(suitcase);
  fs::remove(dir.file("NimbuSanReg"));
  const std::string missing = identify(suitcase);
  ASSERT_EQ(mkfifo(dir.file("NimbuSanReg").c_str(), 0644), 0);
  EXPECT_NE(missing, withPrinterFile) << "the printer file shows in the result";
  EXPECT_EQ(identify(suitcase), missing);
}

}  // namespace
