/*
 * typeprint: identify font files and the faces they hold.
 *
 * A caller hands TP_CreateSpecifier one font file; it gets back an opaque array with one
 * record per face (names, version, foundry, platform, outline file and three checksums).
 * Single attributes are read with the TP_Get* functions, two records are compared with
 * TP_Match, and an array travels as XML or as a property list and back.
 *
 * Every function that returns a TP_Status returns one of the four codes below.
 * String getters write into a caller buffer of signed capacity `size`: nothing at all when
 * size < 1, otherwise the first min(length, size - 1) bytes and a terminator; truncation is
 * silent and still gives TP_STATUS_OK.
 *
 * Two functions can raise a C++ exception instead of returning, and a C caller cannot catch it
 * (the process then ends): TP_GetKindName for an index not below the count, and TP_GetStyles when
 * the keyword table data file is missing or lacks a required part. A C caller checks the index
 * against TP_GetFontCount first and installs the data files; a C++ caller may catch
 * std::exception. Every other function returns normally.
 */
#ifndef TYPEPRINT_H
#define TYPEPRINT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct TP_FontArray TP_FontArray; /* opaque: callers only hold pointers */
typedef uint32_t TP_Status;

enum {
  TP_STATUS_OK = 0,            /* success */
  TP_STATUS_FAILED = 1,        /* null argument, nothing found, or empty input */
  TP_STATUS_RANGE = 4,         /* index not below the count, buffer too small, no XML block */
  TP_STATUS_NOT_COLLECTED = 5  /* the attribute's bit was not in the creation mask */
};

/* Attribute mask bits: ask for attributes at creation; each record keeps the mask. */
#define TP_ATTR_POSTSCRIPT_NAME     0x00000001u
#define TP_ATTR_KIND_NAME           0x00000002u
#define TP_ATTR_FOUNDRY_NAME        0x00000004u
#define TP_ATTR_VERSION             0x00000008u
#define TP_ATTR_KERNING_CHECKSUM    0x00000010u
#define TP_ATTR_OUTLINE_FILE_SIZE   0x00000020u
#define TP_ATTR_FAMILY_NAME         0x00001000u
#define TP_ATTR_OUTLINE_FILE_NAME   0x00002000u
#define TP_ATTR_CHECKSUM            0x00004000u
#define TP_ATTR_DISPLAY_NAME        0x00008000u
#define TP_ATTR_FULL_NAME           0x00010000u
#define TP_ATTR_LEGACY_CHECKSUM     0x00020000u
#define TP_ATTR_PLATFORM            0x00040000u
#define TP_ATTR_WINDOWS_MM_FILE     0x00080000u
#define TP_ATTR_WINDOWS_FULL_NAME   0x00100000u
#define TP_ATTR_ALL                 0x001FF03Fu

/* Writes the library's version (1, 4); does nothing when either pointer is null. */
void TP_GetTypeprintVersion(uint32_t* major /* out */, uint32_t* minor /* out */);

/* Writes the number of faces in the array. */
TP_Status TP_GetFontCount(TP_FontArray* array, uint32_t* count /* out */);

/* Releases an array made by one of the three creators. */
TP_Status TP_SpecifierFree(TP_FontArray* array);

/* Identifies the font file at `path` (UTF-8); `ignored` has no meaning; `mask` selects attributes. */
TP_Status TP_CreateSpecifier(const char* path, uint32_t ignored, uint32_t mask, TP_FontArray** out /* out */);

/* Rebuilds an array from the text of TP_GetXMLRepresentation. */
TP_Status TP_CreateSpecifierFromXML(const char* xml, TP_FontArray** out /* out */);

/* Rebuilds an array from the text of TP_GetPropertyListRepresentation. */
TP_Status TP_CreateSpecifierFromPropertyList(const char* text, TP_FontArray** out /* out */);

/* Writes the array as XML; *size is the capacity in and the needed length + 1 out. */
TP_Status TP_GetXMLRepresentation(TP_FontArray* array, char* buffer /* out */, uint32_t* size /* in/out */);

/* Writes the array as an XML property list; *size as for TP_GetXMLRepresentation. */
TP_Status TP_GetPropertyListRepresentation(TP_FontArray* array, char* buffer /* out */,
                                           uint32_t* size /* in/out */);

/* Compares face indexA of a with face indexB of b: attributes alike and attributes in conflict. */
TP_Status TP_Match(TP_FontArray* a, uint32_t indexA, TP_FontArray* b, uint32_t indexB,
                   uint32_t* matching /* out */, uint32_t* differing /* out */);

/* Finds the face made from a Mac family resource and style; writes 0 to *index first. */
TP_Status TP_GetFontIndexForFONDResourceID(TP_FontArray* array, int16_t fondID, int16_t style,
                                           uint32_t* index /* out */);

/* String getters: copy one attribute of face `index` into the buffer. TP_GetKindName throws
   for an index not below the count (see the top of this file); the others return TP_STATUS_RANGE. */
TP_Status TP_GetKindName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetPostScriptName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetFamilyName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetFullName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetDisplayName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetWindowsFullName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetVersion(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetPlatform(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetPrinterFont(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetWindowsMMFile(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetFoundryName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);
TP_Status TP_GetLegacyFoundryName(TP_FontArray* array, uint32_t index, char* buffer /* out */, int32_t size);

/* Numeric getters: write one 32-bit attribute of face `index`. */
TP_Status TP_GetOutlineFileSize(TP_FontArray* array, uint32_t index, uint32_t* value /* out */);
TP_Status TP_GetTypeprintChecksum(TP_FontArray* array, uint32_t index, uint32_t* value /* out */);
TP_Status TP_GetLegacyTypeprintChecksum(TP_FontArray* array, uint32_t index, uint32_t* value /* out */);
TP_Status TP_GetKerningChecksum(TP_FontArray* array, uint32_t index, uint32_t* value /* out */);

/* The built-in styles that two names express: at most maxNames names of nameSize bytes each.
   Throws when the keyword table cannot be read (see the top of this file). */
TP_Status TP_GetStyles(const char* nameA, const char* nameB, uint32_t maxNames, int32_t nameSize,
                       uint32_t* count /* out */, char** names /* out */);

/* The classification of a family ("--" when unknown), trying otherFamily (may be null) second. */
TP_Status TP_GetClassificationFromFamily(const char* family, const char* otherFamily,
                                         char* buffer /* out */, int32_t size);

/* The PostScript name in the naming table of sfnt data; the buffer is left alone when none. */
void TP_GetPostScriptNameFromNamesTable(const char* data, uint32_t length, void* resourceFile,
                                        char** styleHandle, int32_t styleIndex,
                                        char* buffer /* out */, int32_t size);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TYPEPRINT_H */
