// Property-list helpers: read a property list (XML or binary) from a path and write one as XML,
// and put typed values into dictionaries and arrays and get them out again with their types
// checked. Integers behave as 32-bit longs where the names say "Long".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/be_reader.h"
#include "base/plist_value.h"
#include "foundation/ux_string.h"
#include "platform/linux/text_encoding.h"

namespace typeprint::QCFUtils {

using Dictionary = PlistValue::Dictionary;
using Array = PlistValue::Array;

// ---- files ----

// The whole file; nothing for a file that cannot be opened, is empty or reads short (the last
// two print a message on standard output).
std::optional<std::vector<uint8_t>> QCFCreateCFDataRefFromPath(const UxString& path);
// The file parsed as a property list. Our values are always mutable, so `mutability` is unused.
std::optional<PlistValue> QCFCreateCFPropertyListFromPath(const UxString& path, unsigned long mutability = 0);
// Creates or truncates `path` and writes the bytes; false (with a message) on any failure.
bool QCFWriteCFDataRefToXMLFile(ByteSpan data, const UxString& path);
bool QCFWriteCFPropertyListToXMLFile(const PlistValue& list, const UxString& path);

// ---- putting values (a key already present is replaced) ----

// False when `s` is null or not valid in `encoding`.
bool PutNullTermCharPtrIntoDict(Dictionary& dict, const std::string& key, const char* s, TextEncoding encoding);
bool PutUTF8NullTermCharPtrIntoDict(Dictionary& dict, const std::string& key, const char* s);
// Stored as a signed 32-bit number: 0xFFFFFFFF becomes -1.
bool PutULongIntoDict(Dictionary& dict, const std::string& key, uint32_t value);
bool PutLongIntoDict(Dictionary& dict, const std::string& key, int32_t value);
bool PutShortIntoDict(Dictionary& dict, const std::string& key, int16_t value);
bool PutCharIntoDict(Dictionary& dict, const std::string& key, int8_t value);
bool PutBoolIntoDict(Dictionary& dict, const std::string& key, bool value);
bool AppendUTF8NullTermCharPtrOntoArray(Array& array, const char* s);
bool AppendULongOntoArray(Array& array, uint32_t value);
bool AppendLongOntoArray(Array& array, int32_t value);
bool AppendShortOntoArray(Array& array, int16_t value);
bool AppendBoolOntoArray(Array& array, bool value);

// ---- getting values (borrowed; a value of another type counts as absent) ----

// True, and `out` set, when `key` holds a value of `type`; otherwise `out` is left alone.
bool GetCFTypeFromDict(const Dictionary& dict, const std::string& key, PlistValue::Type type, const PlistValue*& out);
const Array* GetCFArrayFromDict(const Dictionary& dict, const std::string& key);
const std::string* GetCFStringFromDict(const Dictionary& dict, const std::string& key);
const PlistValue* GetCFNumberFromDict(const Dictionary& dict, const std::string& key);  // integer or real
const PlistValue* GetCFBooleanFromDict(const Dictionary& dict, const std::string& key);
const std::string* QCFGetCFStringFromDictionary(const Dictionary& dict, const std::string& key);

// Copies the string's UTF-16 units, unterminated, and returns their number; when there are
// more than `capacity`, copies nothing and returns minus the number. 0 for a missing or
// non-string value.
int32_t QCFGetUniStringFromDictionary(const Dictionary& dict, const std::string& key, uint16_t* buffer,
                                      int32_t capacity);
// As above, and a zero unit after the n units when 1 <= n < capacity.
int32_t QCFGetUniStringNullTermFromDictionary(const Dictionary& dict, const std::string& key, uint16_t* buffer,
                                              int32_t capacity);

// A number converted to the type: true when the conversion is exact. An inexact one still
// stores the nearest value (truncated towards zero, clamped to the type's range).
bool GetDoubleFromDict(const Dictionary& dict, const std::string& key, double& out);
bool GetFloatFromDict(const Dictionary& dict, const std::string& key, float& out);
bool GetLongLongFromDict(const Dictionary& dict, const std::string& key, int64_t& out);
bool GetLongFromDict(const Dictionary& dict, const std::string& key, int32_t& out);
bool GetShortFromDict(const Dictionary& dict, const std::string& key, int16_t& out);
bool GetCharFromDict(const Dictionary& dict, const std::string& key, int8_t& out);
// True, and `out` set, when the value is a boolean.
bool GetBoolFromDict(const Dictionary& dict, const std::string& key, bool& out);

// The same conversions on a value in hand; false for a null value or one of another type.
bool GetDoubleFromCFValue(const PlistValue* value, double& out);
bool GetFloatFromCFValue(const PlistValue* value, float& out);
bool GetLongLongFromCFValue(const PlistValue* value, int64_t& out);
bool GetLongFromCFValue(const PlistValue* value, int32_t& out);
bool GetShortFromCFValue(const PlistValue* value, int16_t& out);
bool GetCharFromCFValue(const PlistValue* value, int8_t& out);
bool GetBoolFromCFValue(const PlistValue* value, bool& out);
// A malloc'ed copy of a string's UTF-16 units plus a zero unit; the caller frees it.
bool GetStringFromCFValue(const PlistValue* value, uint16_t*& out);

}  // namespace typeprint::QCFUtils
