// A PostScript Type 1 printer font stored as `POST` resources, turned into the two file forms
// Linux reads: PFB (segments, each a 6-byte header and its bytes) and PFA (text with the binary
// part written as hexadecimal).
//
// Each resource starts with a kind byte and a zero byte; the rest is its body. The resources are
// taken in ascending ID order from 501:
//   0  comment: skipped
//   1  clear text: carriage returns become line feeds, a line feed right after one is dropped
//   2  binary (the eexec-encrypted part)
//   3  end of file, 5  end of font: nothing after either is read
//   4  the font continues in the data fork; like any other kind, skipped
// Consecutive resources of one kind make one PFB segment; a text resource always closes the
// binary segment before it, even when it adds no byte. A resource shorter than its two-byte head
// is skipped. A font without an end marker ends with its last resource.
#pragma once

#include <cstdint>
#include <vector>

#include "base/be_reader.h"

namespace typeprint::rescue {

constexpr int16_t kFirstPostResourceID = 501;

// The resource bodies in the order they are read, each with its ID.
struct PostResource {
  int16_t id = 0;
  ByteSpan bytes;
};

struct PrinterFontBytes {
  std::vector<uint8_t> bytes;
  bool sawEndMarker = false;  // a kind 3 or 5 resource ended the font
};

// The POST resources from `all` (any order) that the font is read from: IDs from 501 up,
// ascending.
std::vector<PostResource> orderedPostResources(std::vector<PostResource> all);

// PFB bytes: segments 0x80 0x01 (text) / 0x80 0x02 (binary) with a little-endian 32-bit length,
// then 0x80 0x03.
PrinterFontBytes writePfb(const std::vector<PostResource>& resources);

// PFA bytes: the text as in the PFB; the binary as lower-case hexadecimal, 64 digits to a line,
// a line break written before the 33rd byte of a line and never at the end of a binary run.
PrinterFontBytes writePfa(const std::vector<PostResource>& resources);

// The clear-text bytes of the font (kind 1 resources translated as above, up to the end
// marker), where its header dictionary lives.
std::vector<uint8_t> clearText(const std::vector<PostResource>& resources);
// The binary bytes of the font (kind 2 resources, up to the end marker): its encrypted part.
std::vector<uint8_t> binaryPart(const std::vector<PostResource>& resources);

}  // namespace typeprint::rescue
