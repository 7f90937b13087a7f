#include "tools/documents.h"

#include <sstream>

#include "api/exchange_formats.h"
#include "api/font_specifier.h"
#include "platform/linux/plist_io.h"
#include "tools/utf8_text.h"

namespace typeprint::cli {
namespace {

// Every face of every file in one array, and the path of each face's file.
TP_FontArray combinedArray(const std::vector<FileReport>& reports, std::vector<std::string>& paths) {
  TP_FontArray all;
  for (const FileReport& r : reports) {
    if (!r.array) continue;
    for (const TP_FontSpecifier& face : r.array->specifiers) {
      all.append(face);
      paths.push_back(validUTF8(r.path));
    }
  }
  return all;
}

std::string escapedXML(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      default: out += c;
    }
  }
  return out;
}

}  // namespace

std::string combinedPropertyList(const std::vector<FileReport>& reports) {
  std::vector<std::string> paths;
  TP_FontArray all = combinedArray(reports, paths);
  bool hasFaces = false;
  const std::string library = validUTF8(propertyListRepresentation(&all, &hasFaces));
  std::optional<PlistValue> document =
      parsePropertyList(ByteSpan(reinterpret_cast<const uint8_t*>(library.data()), library.size()));
  if (!document || !document->is(PlistValue::Type::Array)) return library;
  PlistValue::Array& faces = document->asArray();
  for (size_t i = 0; i < faces.size() && i < paths.size(); ++i)
    if (faces[i].is(PlistValue::Type::Dictionary)) faces[i].asDictionary()["Path"] = PlistValue::string(paths[i]);
  return printXMLPropertyList(*document).value_or(library);
}

std::string combinedXML(const std::vector<FileReport>& reports) {
  std::vector<std::string> paths;
  TP_FontArray all = combinedArray(reports, paths);
  bool hasFaces = false;
  // The library writes one element per line, "\t\t<Tag>value</Tag>", values as they are: escape
  // them, and add the face's path as the last element of its block.
  std::istringstream library(validUTF8(xmlRepresentation(&all, &hasFaces)));
  std::string out;
  size_t face = 0;
  for (std::string line; std::getline(library, line);) {
    const size_t open = line.find('>'), close = line.rfind("</");
    if (line.rfind("\t\t<", 0) == 0 && open != std::string::npos && close != std::string::npos && close > open)
      line = line.substr(0, open + 1) + escapedXML(line.substr(open + 1, close - open - 1)) + line.substr(close);
    if (line == "\t</FontData>" && face < paths.size()) out += "\t\t<Path>" + escapedXML(paths[face++]) + "</Path>\n";
    out += line + "\n";
  }
  return out;
}

}  // namespace typeprint::cli
