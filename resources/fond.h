// The family record (`FOND` resource): its header fields, its font association table (one entry
// per point size and style, pointing at a bitmap or outline resource) and its style-mapping table,
// from which each face's PostScript name is built. Pascal-string helpers used on those names.
//
// Layout (big-endian, offsets from the start of the resource):
//    2  s16  family ID
//   16  s32  offset of the family glyph-width table (0 = none)
//   20  s32  offset of the family kerning table (0 = none)
//   24  s32  offset of the style-mapping table (0 = none)
//   48  s16  second international word (non-zero: a double-byte family)
//   52  s16  number of association entries minus one
//   54  6*n  association entries: point size (s16, 0 = outline), style (u16), resource ID (s16)
// Entry i counts only when its six bytes lie within the resource (60 + 6i <= size); a family
// shorter than 54 bytes has no table to walk.
//
// Style-mapping table (offsets from its own start):
//   10  48 bytes  index table: for each style index, the number (from 1) of a name-table string
//   58  s16       number of strings in the name table
//   60  ...       Pascal strings: 1 is the base PostScript name; a string numbered by the index
//                 table (2 and up) is a list of string numbers whose strings are appended to it
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/be_reader.h"

namespace typeprint {

constexpr size_t kFondFamilyIDOffset = 2;
constexpr size_t kFondWidthTableOffsetField = 16;
constexpr size_t kFondKerningTableOffsetField = 20;
constexpr size_t kFondStyleTableOffsetField = 24;
constexpr size_t kFondIntl1Offset = 48;
constexpr size_t kFondEntryCountOffset = 52;
constexpr size_t kFondFirstEntryOffset = 54;
constexpr size_t kFondEntrySize = 6;
// Shortest family whose header fields (up to the count field) can be read.
constexpr size_t kFondHeaderSize = 52;
// Shortest family whose association table can be walked.
constexpr size_t kFondMinTableSize = 54;

constexpr size_t kStyleTableIndexOffset = 10;
constexpr size_t kStyleTableIndexCount = 48;
constexpr size_t kStyleTableStringCountOffset = 58;
constexpr size_t kStyleTableStringsOffset = 60;

// Family IDs reserved for Japanese families, read as double-byte.
constexpr int16_t kFirstDoubleByteFamilyID = 16384;
constexpr int16_t kLastDoubleByteFamilyID = 16895;

// Capacity of a Pascal-string buffer holding up to 255 characters (the length byte included).
constexpr size_t kStr255Capacity = 256;

// QuickDraw style bits.
constexpr uint16_t kStyleBold = 0x01;
constexpr uint16_t kStyleItalic = 0x02;
constexpr uint16_t kStyleUnderline = 0x04;
constexpr uint16_t kStyleOutline = 0x08;
constexpr uint16_t kStyleShadow = 0x10;
constexpr uint16_t kStyleCondense = 0x20;
constexpr uint16_t kStyleExtend = 0x40;

struct FondEntry {
  size_t index = 0;  // position in the table, from 0
  int16_t pointSize = 0;
  uint16_t style = 0;
  int16_t resID = 0;
  bool isOutline() const { return pointSize == 0; }
};

// Family ID; 0 for a family shorter than the header.
int16_t fondFamilyID(ByteSpan fond);
// The table offset stored at `field` (16, 20 or 24), read unsigned; 0 for a family shorter than
// the header.
uint32_t fondTableOffset(ByteSpan fond, size_t field);
// The style-mapping offset; 0 for a family shorter than the header.
uint32_t fondStyleTableOffset(ByteSpan fond);
// The number of association entries the family claims (count field + 1; 0 when the field is
// negative or the family is shorter than 54 bytes). Entries may still be missing from the data.
size_t fondClaimedEntryCount(ByteSpan fond);
// Whether entry `i` (from 0) lies within the data.
bool fondEntryPresent(ByteSpan fond, size_t i);
// Entry `i` when it is claimed and present.
bool fondEntryAt(ByteSpan fond, size_t i, FondEntry* entry);
// The present association entries in table order.
std::vector<FondEntry> fondEntries(ByteSpan fond);
// At least the header, and a second international word that is set or a Japanese family ID.
bool fondIsDoubleByte(ByteSpan fond);

// Index 0..47 of a QuickDraw style in the style-mapping table: bold 1, italic 2, outline 4,
// shadow 8, condense 16, extend 32 (only without condense); underline is ignored.
int GetStyleIndex(uint16_t style);

// Pascal strings: a length byte, then that many bytes. A capacity counts the length byte; a
// capacity of 0 leaves the destination untouched.
// Copies min(length + 1, capacity) bytes; a null source gives the empty string.
void CopyPascalString(const unsigned char* src, unsigned char* dst, size_t capacity);
// Appends src, cut so that the result's length + 1 stays within the capacity.
void AppendPascalString(unsigned char* dst, const unsigned char* src, size_t capacity);
// As CopyPascalString, with every byte outside 32..126 turned into "?". src may equal dst.
void CopyPascalStringAsciiLimit(const unsigned char* src, unsigned char* dst, size_t capacity);
// The n-th (from 1) Pascal string of a name table that starts with its first string. A string
// cut by the end of the table keeps the bytes present; a string past the end is empty.
void GetIndStyleName(ByteSpan table, int n, unsigned char* dst, size_t capacity);

// The face's PostScript name built from the family's style-mapping table, as a Pascal string of
// at most capacity - 1 printable ASCII characters; empty when the family has no usable table.
void GetPrinterFontNameFromResource(ByteSpan fond, uint16_t style, unsigned char* dst, size_t capacity);

}  // namespace typeprint
