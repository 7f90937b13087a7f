#include "rescue/extraction.h"

#include <unistd.h>

#include <map>
#include <memory>

#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/fork_locator.h"
#include "rescue/afm_writer.h"
#include "rescue/bdf_writer.h"
#include "rescue/bitmap_strike.h"
#include "rescue/fond_metrics.h"
#include "rescue/post_font.h"
#include "rescue/safe_file_name.h"
#include "rescue/type1_charstrings.h"
#include "rescue/type1_font_info.h"
#include "resources/families.h"
#include "resources/fond.h"
#include "resources/printer_files.h"
#include "resources/resource_file.h"
#include "typeprint.h"

namespace typeprint::rescue {
namespace {

using ResourceFilePtr = std::unique_ptr<ResourceFile>;

constexpr uint32_t kSfntVersionTrueType = 0x00010000;
constexpr uint16_t kBoldStyle = 0x01;
constexpr uint16_t kItalicStyle = 0x02;
// A FONT resource's ID is family * 128 + point size; size 0 only names the family.
constexpr int kFontIDSizeBits = 7;

SourceLayout layoutOf(const ResourceFile& rf) {
  const FileForks& forks = rf.forks();
  SourceLayout layout;
  switch (forks.source) {
    case ForkSource::MacBinary: layout.container = "MacBinary"; break;
    case ForkSource::AppleSingle: layout.container = "AppleSingle"; break;
    case ForkSource::AppleDouble: layout.container = "AppleDouble"; break;
    case ForkSource::BareFork: layout.container = "bare fork"; break;
    case ForkSource::Plain: layout.container = "plain"; break;
  }
  layout.forkFile = forks.companionPath;
  layout.dataFork = rf.isDataFork();
  return layout;
}

std::string styleName(uint16_t style) {
  if ((style & (kBoldStyle | kItalicStyle)) == (kBoldStyle | kItalicStyle)) return "BoldItalic";
  if (style & kBoldStyle) return "Bold";
  if (style & kItalicStyle) return "Italic";
  return style == 0 ? "Regular" : "Style" + std::to_string(style);
}

std::vector<uint8_t> copyOf(ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

ByteSpan resourceBytes(const ResourceFile& rf, uint32_t type, int16_t id) {
  return dataOf(rf.find(type, id));
}

std::string resourceName(const ResourceFile& rf, uint32_t type, int16_t id) {
  Resource resource = rf.find(type, id);
  return resource ? resource->name : std::string();
}

// The face a family entry names: which family and style reach an outline or strike resource.
struct FaceRef {
  int16_t familyID = 0;
  uint16_t style = 0;
  int pointSize = 0;
  std::string family;
  std::string checksumAlsoCovers;
};

// The face checksum of a family face chains the family's kerning pairs of the style and every
// outline resource the style lists before the outline itself.
std::string checksumAlsoCovers(const ResourceFile& rf, ByteSpan fond, uint16_t style, int16_t outlineID) {
  std::string covers;
  const auto add = [&](const std::string& part) { covers += (covers.empty() ? "" : " and ") + part; };
  std::optional<FondMetrics> metrics = readFondMetrics(fond);
  const StyleKerning* kerning = metrics ? metrics->kerningFor(style) : nullptr;
  if (kerning && !kerning->pairs.empty()) add("the family's kerning pairs");
  for (int16_t id : getSortedNFNTsForFOND(fond, int16_t(style)))
    if (id != outlineID && !resourceBytes(rf, kTypeSfnt, id).empty()) add("sfnt " + std::to_string(id));
  return covers;
}

class Planner {
 public:
  Planner(SourcePlan& plan, const ExtractOptions& options) : plan_(plan), options_(options) {}

  void planFile(ResourceFile& rf) {
    const SourceLayout layout = layoutOf(rf);
    plan_.layout = layout;
    std::map<int16_t, FaceRef> outlineFaces, strikeFaces;
    for (int16_t id : rf.sortedIDs(kTypeFOND)) {
      Resource fondResource = rf.find(kTypeFOND, id);
      const std::string family = getResourceNameFromFOND(rf, fondResource);
      const ByteSpan fond = fondResource->data();
      for (const FondEntry& entry : fondEntries(fond)) {
        FaceRef face{id, entry.style, entry.pointSize, family, ""};
        if (entry.isOutline()) face.checksumAlsoCovers = checksumAlsoCovers(rf, fond, entry.style, entry.resID);
        auto& faces = entry.isOutline() ? outlineFaces : strikeFaces;
        faces.emplace(entry.resID, face);
      }
    }
    for (int16_t id : rf.sortedIDs(kTypeSfnt)) planSfnt(rf, id, outlineFaces, layout);
    planPrinterFontsOfFamilies(rf);
    if (rf.count(kTypePOST) > 0) planPrinterFont(rf, layout, nullptr, 0, std::nullopt);
    if (options_.bitmaps) {
      for (uint32_t type : {kTypeNFNT, kTypeFONT})
        for (int16_t id : rf.sortedIDs(type)) planStrike(rf, type, id, strikeFaces, layout);
    }
  }

 private:
  void fail(const std::string& reason) {
    if (plan_.error.empty()) plan_.error = reason;
  }

  // A name not yet taken in this source: the base, else the base with the resource ID.
  std::string uniqueName(const std::string& base, const std::string& extension, int id) {
    std::string name = safeFileName(base) + "." + extension;
    if (!taken_.insert(name).second) {
      name = safeFileName(base) + "-" + std::to_string(id) + "." + extension;
      taken_.insert(name);
    }
    return name;
  }

  void planSfnt(ResourceFile& rf, int16_t id, const std::map<int16_t, FaceRef>& faces,
                const SourceLayout& layout) {
    const ByteSpan bytes = resourceBytes(rf, kTypeSfnt, id);
    BEReader head(bytes);
    const uint32_t version = head.u32();
    if (!head.ok()) return fail("sfnt " + std::to_string(id) + " is too short to be a font");
    PlannedFile file;
    file.format = version == kSfntVersionOTTO ? "otf" : "ttf";
    if (version != kSfntVersionOTTO && version != kSfntVersionTrueType && version != tag("true"))
      file.notes.push_back("outline kind not TrueType or CFF; written as .ttf");
    std::string psName;
    getPostScriptNameFromNamesTable(SfntBytes(bytes), psName);
    auto face = faces.find(id);
    if (psName.empty())
      psName = face != faces.end() ? face->second.family + "-" + styleName(face->second.style) : "sfnt-" + std::to_string(id);
    file.fileName = uniqueName(psName, file.format, id);
    file.bytes = copyOf(bytes);
    file.fromPath = rf.path();
    file.fromLayout = layout;
    file.resourceType = "sfnt";
    file.resourceID = id;
    if (face != faces.end()) {
      file.familyID = face->second.familyID;
      file.style = face->second.style;
      file.sourceChecksumAlsoCovers = face->second.checksumAlsoCovers;
    } else {
      file.notes.push_back("no family names this outline");
    }
    plan_.files.push_back(std::move(file));
  }

  // Each face whose outline lives in a printer file, found the way the library finds it.
  void planPrinterFontsOfFamilies(ResourceFile& rf) {
    for (int16_t id : rf.sortedIDs(kTypeFOND)) {
      const ByteSpan fond = resourceBytes(rf, kTypeFOND, id);
      std::optional<FondMetrics> metrics;
      if (options_.afm) {
        metrics = readFondMetrics(fond);
        if (!metrics) return fail("FOND " + std::to_string(id) + " has a damaged width or kerning table");
      }
      for (int16_t style : getSortedStylesForFOND(fond)) {
        if (!shouldHavePrinterFile(fond, style)) continue;
        std::optional<UxString> path = CreatePrinterPath(&rf, fond, style);
        if (!path) {
          plan_.notes.push_back("printer file of " + std::string(getPostScriptNameForFOND(fond, style)) +
                                " (FOND " + std::to_string(id) + ", style " + std::to_string(style) + ") not found");
          continue;
        }
        if (*path == rf.path() || !plan_.printerFiles.insert(*path).second) continue;
        ResourceOpenFailure why = ResourceOpenFailure::None;
        ResourceFilePtr printer = ResourceFile::open(*path, true, &why);
        if (!printer) return fail("printer file " + *path + " holds no readable resource map");
        planPrinterFont(*printer, layoutOf(*printer), metrics ? &*metrics : nullptr, uint16_t(style), id);
      }
    }
  }

  void planPrinterFont(ResourceFile& printer, const SourceLayout& layout, const FondMetrics* family,
                       uint16_t style, std::optional<int16_t> familyID) {
    std::vector<PostResource> all;
    for (int16_t id : printer.sortedIDs(kTypePOST))
      all.push_back({id, resourceBytes(printer, kTypePOST, id)});
    const std::vector<PostResource> resources = orderedPostResources(all);
    if (resources.empty()) return fail(printer.path() + " has no POST resource from 501 on");
    const std::vector<uint8_t> text = clearText(resources);
    const Type1FontInfo info = readType1FontInfo(text);
    const std::string base = info.fontName.empty() ? lastPathComponent(printer.path()) : info.fontName;

    PlannedFile font;
    const PrinterFontBytes written = options_.pfa ? writePfa(resources) : writePfb(resources);
    font.format = options_.pfa ? "pfa" : "pfb";
    font.fileName = uniqueName(base, font.format, resources.front().id);
    font.bytes = written.bytes;
    font.fromPath = printer.path();
    font.fromLayout = layout;
    font.resourceType = "POST";
    font.resourceID = resources.front().id;
    font.familyID = familyID;
    font.style = style;
    if (!written.sawEndMarker) font.notes.push_back("no end-of-font resource: written up to the last POST resource");

    if (options_.afm) {
      if (!family) {
        font.notes.push_back("no family record names this printer font: no .afm");
      } else {
        const std::vector<uint8_t> encrypted = binaryPart(resources);
        PlannedFile metrics = afmFor(info, encrypted, *family, style);
        metrics.fileName = uniqueName(base, "afm", *familyID);
        metrics.fromPath = plan_.path;
        metrics.fromLayout = plan_.layout;
        metrics.resourceType = "FOND";
        metrics.resourceID = *familyID;
        metrics.familyID = familyID;
        metrics.style = style;
        plan_.files.push_back(std::move(font));
        plan_.files.push_back(std::move(metrics));
        return;
      }
    }
    plan_.files.push_back(std::move(font));
  }

  PlannedFile afmFor(const Type1FontInfo& info, const std::vector<uint8_t>& encrypted, const FondMetrics& family,
                     uint16_t style) {
    PlannedFile file;
    file.format = "afm";
    const AfmFont font = buildAfmFont(info, readGlyphMetrics(encrypted), family, style);
    if (!family.widthsFor(style)) file.notes.push_back("family has no widths for this style: outline widths used");
    if (!family.kerningFor(style)) file.notes.push_back("family has no kerning for this style");
    if (font.droppedPairs)
      file.notes.push_back(std::to_string(font.droppedPairs) + " kerning pairs name codes the font has no glyph for");
    const std::string text = writeAfm(font);
    file.bytes.assign(text.begin(), text.end());
    return file;
  }

  void planStrike(ResourceFile& rf, uint32_t type, int16_t id, const std::map<int16_t, FaceRef>& faces,
                  const SourceLayout& layout) {
    const std::string typeName = type == kTypeNFNT ? "NFNT" : "FONT";
    const ByteSpan bytes = resourceBytes(rf, type, id);
    if (type == kTypeFONT && bytes.empty()) return;  // a FONT that only names its family
    std::optional<BitmapStrike> strike = readBitmapStrike(bytes);
    if (!strike) return fail(typeName + " " + std::to_string(id) + " is damaged or not a one-bit strike");
    BdfFace face;
    auto named = faces.find(id);
    if (named != faces.end()) {
      face = {named->second.family, named->second.style, named->second.pointSize};
    } else if (type == kTypeFONT) {
      const int16_t familyFont = int16_t(id & ~((1 << kFontIDSizeBits) - 1));
      face = {resourceName(rf, kTypeFONT, familyFont), 0, id & ((1 << kFontIDSizeBits) - 1)};
    } else {
      face = {resourceName(rf, type, id), 0, strike->fRectHeight};
    }
    if (face.family.empty()) face.family = typeName + std::to_string(id);
    PlannedFile file;
    file.format = "bdf";
    file.fileName = uniqueName(face.family + "-" + styleName(face.style) + "-" + std::to_string(face.pointSize), "bdf", id);
    const std::string text = writeBdf(*strike, face);
    file.bytes.assign(text.begin(), text.end());
    file.fromPath = rf.path();
    file.fromLayout = layout;
    file.resourceType = typeName;
    file.resourceID = id;
    if (named != faces.end()) {
      file.familyID = named->second.familyID;
      file.style = named->second.style;
    }
    plan_.files.push_back(std::move(file));
  }

  SourcePlan& plan_;
  const ExtractOptions& options_;
  std::set<std::string> taken_;
};

// Faces are told apart by PostScript name, so it is collected beside the checksum.
constexpr uint32_t kChecksumMask = TP_ATTR_CHECKSUM | TP_ATTR_POSTSCRIPT_NAME;

// The face checksum the library gives the first face of `path`, or of the face (family, style)
// when a family ID is given.
std::optional<uint32_t> faceChecksum(const std::string& path, std::optional<int16_t> familyID, uint16_t style) {
  TP_FontArray* array = nullptr;
  if (TP_CreateSpecifier(path.c_str(), 0, kChecksumMask, &array) != TP_STATUS_OK || !array) return std::nullopt;
  std::unique_ptr<TP_FontArray, decltype(&TP_SpecifierFree)> owner(array, &TP_SpecifierFree);
  uint32_t index = 0, checksum = 0;
  if (familyID && TP_GetFontIndexForFONDResourceID(array, *familyID, int16_t(style), &index) != TP_STATUS_OK)
    return std::nullopt;
  if (TP_GetTypeprintChecksum(array, index, &checksum) != TP_STATUS_OK) return std::nullopt;
  return checksum;
}

std::string joinPath(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  return folder.back() == '/' ? folder + name : folder + "/" + name;
}

}  // namespace

std::string SourceLayout::describe() const {
  std::string text = container == "plain" ? "plain file" : container;
  if (!forkFile.empty()) text += " " + forkFile;
  return text + (dataFork ? ", resources in the data fork" : ", resource fork");
}

SourcePlan planExtraction(const std::string& path, const ExtractOptions& options) {
  SourcePlan plan;
  plan.path = path;
  ResourceOpenFailure why = ResourceOpenFailure::None;
  ResourceFilePtr rf = ResourceFile::open(path, true, &why);
  if (!rf) {
    std::optional<FileForks> forks = why == ResourceOpenFailure::Unreadable ? std::nullopt : openForks(path);
    if (!forks) {
      plan.error = "cannot read the file";
    } else if (!forks->resourceFork.empty()) {
      plan.error = "damaged: its resource fork holds no readable resource map";
    } else {
      plan.isMacFont = false;
      plan.error = "holds no Mac font resources";
    }
    return plan;
  }
  Planner(plan, options).planFile(*rf);
  if (plan.error.empty() && plan.files.empty()) plan.notes.push_back("no font resources to extract");
  if (!plan.error.empty()) plan.files.clear();
  return plan;
}

WriteOutcome writePlan(const SourcePlan& plan, const std::string& folder, bool force) {
  WriteOutcome outcome;
  if (!force) {
    for (const PlannedFile& file : plan.files) {
      const std::string target = joinPath(folder, file.fileName);
      if (access(target.c_str(), F_OK) == 0) {
        outcome.error = target + " exists (use --force to replace it)";
        return outcome;
      }
    }
  }
  for (const PlannedFile& file : plan.files) {
    const std::string target = joinPath(folder, file.fileName);
    WriteResult result = replaceFileAtomically(target, file.bytes);
    if (!result) {
      outcome.error = "cannot write " + target + ": " + result.reason();
      for (const WrittenFile& written : outcome.files) unlink(written.path.c_str());
      outcome.files.clear();
      return outcome;
    }
    outcome.files.push_back({target, &file, std::nullopt, std::nullopt});
  }
  for (WrittenFile& written : outcome.files) {
    const PlannedFile& file = *written.planned;
    if (file.format != "ttf" && file.format != "otf") continue;
    written.checksum = faceChecksum(written.path, std::nullopt, 0);
    if (file.familyID) written.sourceChecksum = faceChecksum(plan.path, file.familyID, file.style);
  }
  return outcome;
}

}  // namespace typeprint::rescue
