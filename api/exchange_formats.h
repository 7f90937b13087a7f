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
// Reads every FontData block; status 0 with the array, 4 when no block was closed, or 1 when
// the values found overlap so much that copying them would take more than kMaxXMLValueFactor
// times the document's size.
uint32_t arrayFromXML(const char* xml, TP_FontArray** out);
constexpr size_t kMaxXMLValueFactor = 16;

// The property-list document for an array, and whether it holds at least one face.
std::string propertyListRepresentation(TP_FontArray* array, bool* hasFaces);
// Reads an array of dictionaries; status 0 with the array, or 1.
uint32_t arrayFromPropertyList(const char* text, TP_FontArray** out);

// strtol as a 32-bit long: values beyond the signed 32-bit range saturate.
uint32_t strtol32(const char* text, int radix);

}  // namespace typeprint
