#include "formats/format_reader.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "analysis/sfnt_directory.h"
#include "formats/binhex.h"
#include "formats/bitmap_font.h"
#include "formats/mac_bitmap_family.h"
#include "formats/sfnt_faces.h"
#include "formats/type1_font.h"
#include "formats/woff.h"
#include "formats/woff2.h"
#include "platform/linux/mapped_file.h"

namespace typeprint::formats {
namespace {

constexpr uint32_t kCollectionTag = tag("ttcf");
// Collection header: ttcf, version, numFonts, then the offset of each face's offset table.
constexpr size_t kFirstFaceOffsetAt = 12;

// The last extension of the file name in lower case; for NAME.EXT.gz, EXT.
std::string lowerExtension(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  for (const char* compressed : {".gz", ".GZ"})
    if (name.size() > 3 && name.compare(name.size() - 3, 3, compressed) == 0) name.resize(name.size() - 3);
  const size_t dot = name.find_last_of('.');
  if (dot == std::string::npos || dot == 0) return {};
  std::string extension = name.substr(dot + 1);
  for (char& c : extension) c = char(std::tolower(static_cast<unsigned char>(c)));
  return extension;
}

std::string collectionKind(ByteSpan bytes) {
  BEReader r(bytes);
  const uint32_t firstFace = r.at(kFirstFaceOffsetAt, 4).u32();
  const uint32_t version = r.at(firstFace, 4).u32();
  return version == kSfntVersionOTTO ? "OpenType Collection" : "TrueType Collection";
}

void readDecodedSfnt(EDecodeStatus status, const std::vector<uint8_t>& sfnt, TFormatFile& file) {
  if (status == EDecodeStatus::kDecoded) file.faces = readSfntFaces(sfnt);
}

}  // namespace

std::string contentKindOf(ByteSpan bytes) {
  const uint32_t first = BEReader(bytes).u32();
  if (first == kCollectionTag) return collectionKind(bytes);
  if (first == kWoffSignature) return "WOFF";
  if (first == kWoff2Signature) return "WOFF2";
  if (const char* outline = sfntOutlineKind(first); *outline) return outline;
  if (looksLikeType1(bytes)) return "PostScript";
  if (looksLikePcf(bytes)) return "PCF";
  if (looksLikeBdf(bytes)) return "BDF";
  if (looksLikeGzip(bytes)) return "gzip";
  if (looksLikeBinHex(bytes)) return "BinHex";
  return {};
}

std::string extensionKindOf(const std::string& path) {
  static const std::pair<const char*, const char*> kExtensions[] = {
      {"ttf", "TrueType"},        {"otf", "OpenType - PS"},   {"ttc", "TrueType Collection"},
      {"otc", "OpenType Collection"}, {"woff", "WOFF"},       {"woff2", "WOFF2"},
      {"pfb", "PostScript"},      {"pfa", "PostScript"},      {"t1", "PostScript"},
      {"ps", "PostScript"},       {"pcf", "PCF"},             {"bdf", "BDF"},
      {"hqx", "BinHex"}};
  const std::string extension = lowerExtension(path);
  for (const auto& [name, kind] : kExtensions)
    if (extension == name) return kind;
  return {};
}

std::string kindNote(const std::string& path, const std::string& contentKind) {
  if (contentKind.empty()) return {};
  const std::string extension = lowerExtension(path);
  if (extension.empty()) return "the file name has no extension; its bytes are " + contentKind;
  const std::string promised = extensionKindOf(path);
  // A collection of either outline kind may be named .ttc or .otc.
  const bool bothCollections = promised.find("Collection") != std::string::npos &&
                               contentKind.find("Collection") != std::string::npos;
  if (promised.empty() || promised == contentKind || bothCollections) return {};
  return "named ." + extension + " (" + promised + ") but its bytes are " + contentKind;
}

TFormatFile readFormatBytes(ByteSpan bytes, const std::string& path) {
  TFormatFile file;
  file.contentKind = contentKindOf(bytes);
  std::vector<uint8_t> decoded;
  if (file.contentKind == "gzip") {
    // A compressed bitmap font is known by what it decompresses to.
    file.container = "gzip";
    if (decodeGzip(bytes, decoded) != EDecodeStatus::kDecoded) return file;
    const std::string inner = contentKindOf(decoded);
    if (inner != "PCF" && inner != "BDF") return file;
    file.contentKind = inner;
    bytes = decoded;
  }
  file.kindNote = kindNote(path, file.contentKind);
  const std::string& kind = file.contentKind;
  if (kind == "WOFF" || kind == "WOFF2") {
    file.container = kind;
    readDecodedSfnt(kind == "WOFF" ? decodeWoff(bytes, decoded) : decodeWoff2(bytes, decoded), decoded, file);
  } else if (kind == "PCF" || kind == "BDF") {
    std::optional<TFormatFace> face = kind == "PCF" ? readPcfFace(bytes) : readBdfFace(bytes);
    if (face) file.faces.push_back(std::move(*face));
  } else if (kind == "PostScript") {
    if (std::optional<TType1Program> program = readType1Program(bytes))
      file.faces.push_back(type1Face(*program, path));
  } else if (kind == "BinHex") {
    file.container = kind;  // its forks go to the resource readers (readBinHexFaces)
  } else if (!kind.empty()) {
    file.faces = readSfntFaces(bytes);
  }
  return file;
}

std::vector<TFormatFace> readResourceFaces(const std::string& path, const FileForks* forks) {
  if (std::optional<TType1Program> program = readType1ProgramFromPrinterFile(path, forks))
    return {type1Face(*program, path)};
  return readMacBitmapFamilies(path, forks);
}

std::optional<TFormatFile> readFormatSummary(const std::string& path) {
  std::shared_ptr<const MappedFile> mapped = MappedFile::open(path);
  if (!mapped) return std::nullopt;
  TFormatFile file;
  file.contentKind = contentKindOf(mapped->bytes());
  file.kindNote = kindNote(path, file.contentKind);
  if (sfntOutlineKind(BEReader(mapped->bytes()).u32())[0] || file.contentKind.find("Collection") != std::string::npos)
    file.faces = readSfntFaces(mapped->bytes(), false);
  return file;
}

std::optional<TFormatFile> readFormatFile(const std::string& path) {
  std::shared_ptr<const MappedFile> mapped = MappedFile::open(path);
  if (!mapped) return std::nullopt;
  TFormatFile file = readFormatBytes(mapped->bytes(), path);
  if (file.contentKind == "BinHex") {
    TMacFile mac;
    if (decodeBinHex(mapped->bytes(), mac) != EDecodeStatus::kDecoded) return file;
    TFormatFile inner = readFormatBytes(mac.dataFork, mac.name);
    file.faces = inner.faces;
    if (file.faces.empty()) {
      const FileForks forks = forksOf(mac);
      file.faces = readResourceFaces(path, &forks);
    }
  } else if (file.faces.empty() && file.contentKind.empty()) {
    file.faces = readResourceFaces(path, nullptr);
  }
  return file;
}

}  // namespace typeprint::formats
