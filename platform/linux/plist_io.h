// Reading and writing property lists through libplist: XML and binary in, XML out.
#pragma once

#include <optional>
#include <string>

#include "base/be_reader.h"
#include "base/plist_value.h"

namespace typeprint {

// Parses an XML or binary property list. Nothing when the bytes are not one.
std::optional<PlistValue> parsePropertyList(ByteSpan bytes);

// Prints a value as an XML property list document.
std::optional<std::string> printXMLPropertyList(const PlistValue& value);

}  // namespace typeprint
