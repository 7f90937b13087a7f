// What the wider reader tells about one face and one file: the faces of every format it reads
// (sfnt fonts inside WOFF and WOFF2, collections, variable fonts, plain Type 1 programs, bitmap
// fonts, Mac bitmap-only families) and the container and kind that the file's bytes show.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace typeprint::formats {

// One variation axis of a variable font.
struct TAxis {
  std::string tag;
  double minimum = 0, defaultValue = 0, maximum = 0;
  std::string name;
};

// One named instance: its names and a coordinate per axis, in axis order.
struct TNamedInstance {
  std::string subfamilyName;
  std::string postScriptName;  // empty when the font gives none
  std::vector<double> coordinates;
};

struct TFormatFace {
  std::string kind;  // "TrueType", "OpenType - PS", "PostScript", "PostScript - MM", "PCF", "BDF", "Bitmap"
  std::string postScriptName, family, fullName, style, version, foundry;
  // A checksum of the font itself, the same whatever container holds it.
  uint32_t contentChecksum = 0;
  std::vector<TAxis> axes;
  std::vector<TNamedInstance> instances;
  int pixelSize = 0;            // bitmap fonts
  std::vector<int> pointSizes;  // Mac bitmap strikes
  // Mac family faces: the family resource's ID and the QuickDraw style; -1 for other faces.
  int32_t familyResourceID = -1, quickDrawStyle = -1;
};

struct TFormatFile {
  std::string container;    // "WOFF", "WOFF2", "BinHex", "gzip" or empty for a plain file
  // The kind the bytes show (for a gzip file, the kind of what it decompresses to).
  std::string contentKind;
  std::string kindNote;     // set when the file's name says another kind than its bytes
  std::vector<TFormatFace> faces;
};

}  // namespace typeprint::formats
