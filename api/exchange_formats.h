// The two exchange forms of a face array: a small XML document and an XML property list. Both
// carry the same nine attributes per face, written through the public getters and read back into
// new arrays.
#pragma once

#include <cstdint>
#include <string>

#include "api/font_specifier.h"

namespace typeprint {

// The namespace URL written on the root element of the XML form.
extern const char* const kXMLSchemaInstanceURL;

// The XML document for an array, and whether it holds at least one face.
std::string xmlRepresentation(TP_FontArray* array, bool* hasFaces);
// Reads every FontData block; status 0 with the array, or 4 when no block was closed.
uint32_t arrayFromXML(const char* xml, TP_FontArray** out);

// The property-list document for an array, and whether it holds at least one face.
std::string propertyListRepresentation(TP_FontArray* array, bool* hasFaces);
// Reads an array of dictionaries; status 0 with the array, or 1.
uint32_t arrayFromPropertyList(const char* text, TP_FontArray** out);

// The raw text between <tag> and </tag>, searched from `from` onward; false when either is missing.
bool ExtractTagValue(const std::string& text, size_t from, const char* tag, UxString* value);
// The same text read as a number by strtol in `radix`, saturated to a signed 32-bit value; the
// value is stored even when the tag is missing (as 0).
bool ExtractTagValue(const std::string& text, size_t from, const char* tag, short radix, uint32_t* value);

// strtol as a 32-bit long: values beyond the signed 32-bit range saturate.
uint32_t strtol32(const char* text, int radix);

}  // namespace typeprint
