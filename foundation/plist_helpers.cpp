#include "foundation/plist_helpers.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

#include "foundation/streams.h"
#include "platform/linux/file_system.h"
#include "platform/linux/mapped_file.h"
#include "platform/linux/plist_io.h"

namespace typeprint::QCFUtils {
namespace {

using Type = PlistValue::Type;

void say(const char* message) { std::fputs(message, stdout); }

bool putString(Dictionary& dict, const std::string& key, const char* s, TextEncoding encoding) {
  UxString text;
  if (!s || !text.Set(s, encoding)) return false;
  dict[key] = PlistValue::string(text);
  return true;
}

const PlistValue* lookup(const Dictionary& dict, const std::string& key, Type type) {
  auto it = dict.find(key);
  return it != dict.end() && it->second.is(type) ? &it->second : nullptr;
}

// Integer targets take the range [-2^digits, 2^digits), which is exact in a double.
template <typename T>
bool fromReal(double d, T& out) {
  if constexpr (std::is_floating_point_v<T>) {
    out = T(d);
    return double(out) == d;
  } else {
    const double limit = std::ldexp(1.0, std::numeric_limits<T>::digits);
    if (std::isnan(d)) {
      out = 0;
      return false;
    }
    if (d < -limit || d >= limit) {
      out = d < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
      return false;
    }
    out = T(d);
    return double(out) == d;
  }
}

template <typename T>
bool fromInteger(int64_t v, T& out) {
  if constexpr (std::is_floating_point_v<T>) {
    out = T(v);
    return static_cast<long double>(out) == static_cast<long double>(v);
  } else {
    if (v < std::numeric_limits<T>::min() || v > std::numeric_limits<T>::max()) {
      out = v < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
      return false;
    }
    out = T(v);
    return true;
  }
}

template <typename T>
bool numberFromValue(const PlistValue* value, T& out) {
  if (!value) return false;
  if (value->is(Type::Integer)) return fromInteger(value->asInteger(), out);
  if (value->is(Type::Real)) return fromReal(value->asReal(), out);
  return false;
}

template <typename T>
bool numberFromDict(const Dictionary& dict, const std::string& key, T& out) {
  return numberFromValue(GetCFNumberFromDict(dict, key), out);
}

std::optional<std::u16string> unitsOf(const Dictionary& dict, const std::string& key) {
  const std::string* s = GetCFStringFromDict(dict, key);
  return s ? utf8ToUTF16(*s) : std::nullopt;
}

}  // namespace

// ---- files ----

std::optional<std::vector<uint8_t>> QCFCreateCFDataRefFromPath(const UxString& path) {
  // Only regular files are read, opened without blocking, so a FIFO or device is refused.
  std::shared_ptr<const MappedFile> file = MappedFile::open(path);
  if (!file) return std::nullopt;
  if (file->bytes().empty()) {
    say("QCFUtils::QCFCreateCFDataRefFromPath:  error getting file length & rewinding file ");
    return std::nullopt;
  }
  return std::vector<uint8_t>(file->bytes().begin(), file->bytes().end());
}

std::optional<PlistValue> QCFCreateCFPropertyListFromPath(const UxString& path, unsigned long) {
  if (path.empty()) return std::nullopt;
  std::optional<std::vector<uint8_t>> bytes = QCFCreateCFDataRefFromPath(path);
  if (!bytes) return std::nullopt;
  std::optional<PlistValue> list = parsePropertyList(*bytes);
  if (!list) say("QCFUtils::QCFCreateCFPropertyListFromPath:  error returned.");
  return list;
}

bool QCFWriteCFDataRefToXMLFile(ByteSpan data, const UxString& path) {
  if (path.empty()) return false;
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) {
    say("*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Error opening file for writing.\n");
    return false;
  }
  if (!data.data) {
    say("*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Failed to create buffer from CFDataRef.\n");
    std::fclose(f);
    return false;
  }
  size_t written = std::fwrite(data.data, 1, data.size, f);
  bool closed = std::fclose(f) == 0;
  if (written != data.size || !closed) {
    say("*** QCFUtils::QCFWriteCFDataRefToXMLFile:  Error writing to file.\n");
    return false;
  }
  return true;
}

bool QCFWriteCFPropertyListToXMLFile(const PlistValue& list, const UxString& path) {
  if (path.empty()) return false;
  std::optional<std::string> xml = printXMLPropertyList(list);
  if (!xml) {
    say("*** QCFUtils::QCFWriteCFPropertyListToXMLFile:  Failed to create XML CFData from property list for "
        "writing.\n");
    return false;
  }
  return QCFWriteCFDataRefToXMLFile(ByteSpan(reinterpret_cast<const uint8_t*>(xml->data()), xml->size()), path);
}

// ---- putting values ----

bool PutNullTermCharPtrIntoDict(Dictionary& dict, const std::string& key, const char* s, TextEncoding encoding) {
  return putString(dict, key, s, encoding);
}

bool PutUTF8NullTermCharPtrIntoDict(Dictionary& dict, const std::string& key, const char* s) {
  return putString(dict, key, s, TextEncoding::UTF8);
}

bool PutULongIntoDict(Dictionary& dict, const std::string& key, uint32_t value) {
  return PutLongIntoDict(dict, key, int32_t(value));
}

bool PutLongIntoDict(Dictionary& dict, const std::string& key, int32_t value) {
  dict[key] = PlistValue::integer(value);
  return true;
}

bool PutShortIntoDict(Dictionary& dict, const std::string& key, int16_t value) {
  dict[key] = PlistValue::integer(value);
  return true;
}

bool PutCharIntoDict(Dictionary& dict, const std::string& key, int8_t value) {
  dict[key] = PlistValue::integer(value);
  return true;
}

bool PutBoolIntoDict(Dictionary& dict, const std::string& key, bool value) {
  dict[key] = PlistValue::boolean(value);
  return true;
}

bool AppendUTF8NullTermCharPtrOntoArray(Array& array, const char* s) {
  UxString text;
  if (!s || !text.Set(s, TextEncoding::UTF8)) return false;
  array.push_back(PlistValue::string(text));
  return true;
}

bool AppendULongOntoArray(Array& array, uint32_t value) { return AppendLongOntoArray(array, int32_t(value)); }

bool AppendLongOntoArray(Array& array, int32_t value) {
  array.push_back(PlistValue::integer(value));
  return true;
}

bool AppendShortOntoArray(Array& array, int16_t value) {
  array.push_back(PlistValue::integer(value));
  return true;
}

bool AppendBoolOntoArray(Array& array, bool value) {
  array.push_back(PlistValue::boolean(value));
  return true;
}

// ---- getting values ----

bool GetCFTypeFromDict(const Dictionary& dict, const std::string& key, PlistValue::Type type, const PlistValue*& out) {
  const PlistValue* value = lookup(dict, key, type);
  if (!value) return false;
  out = value;
  return true;
}

const Array* GetCFArrayFromDict(const Dictionary& dict, const std::string& key) {
  const PlistValue* value = lookup(dict, key, Type::Array);
  return value ? &value->asArray() : nullptr;
}

const std::string* GetCFStringFromDict(const Dictionary& dict, const std::string& key) {
  const PlistValue* value = lookup(dict, key, Type::String);
  return value ? &value->asString() : nullptr;
}

const PlistValue* GetCFNumberFromDict(const Dictionary& dict, const std::string& key) {
  const PlistValue* value = lookup(dict, key, Type::Integer);
  return value ? value : lookup(dict, key, Type::Real);
}

const PlistValue* GetCFBooleanFromDict(const Dictionary& dict, const std::string& key) {
  return lookup(dict, key, Type::Boolean);
}

const std::string* QCFGetCFStringFromDictionary(const Dictionary& dict, const std::string& key) {
  return GetCFStringFromDict(dict, key);
}

int32_t QCFGetUniStringFromDictionary(const Dictionary& dict, const std::string& key, uint16_t* buffer,
                                      int32_t capacity) {
  std::optional<std::u16string> units = unitsOf(dict, key);
  if (!units || units->size() > size_t(std::numeric_limits<int32_t>::max())) return 0;
  int32_t n = int32_t(units->size());
  if (!buffer || n > capacity) return -n;
  std::copy(units->begin(), units->end(), buffer);
  return n;
}

int32_t QCFGetUniStringNullTermFromDictionary(const Dictionary& dict, const std::string& key, uint16_t* buffer,
                                              int32_t capacity) {
  int32_t n = QCFGetUniStringFromDictionary(dict, key, buffer, capacity);
  if (n >= 1 && n < capacity) buffer[n] = 0;
  return n;
}

bool GetDoubleFromDict(const Dictionary& dict, const std::string& key, double& out) {
  return numberFromDict(dict, key, out);
}
bool GetFloatFromDict(const Dictionary& dict, const std::string& key, float& out) {
  return numberFromDict(dict, key, out);
}
bool GetLongLongFromDict(const Dictionary& dict, const std::string& key, int64_t& out) {
  return numberFromDict(dict, key, out);
}
bool GetLongFromDict(const Dictionary& dict, const std::string& key, int32_t& out) {
  return numberFromDict(dict, key, out);
}
bool GetShortFromDict(const Dictionary& dict, const std::string& key, int16_t& out) {
  return numberFromDict(dict, key, out);
}
bool GetCharFromDict(const Dictionary& dict, const std::string& key, int8_t& out) {
  return numberFromDict(dict, key, out);
}

bool GetBoolFromDict(const Dictionary& dict, const std::string& key, bool& out) {
  return GetBoolFromCFValue(GetCFBooleanFromDict(dict, key), out);
}

bool GetDoubleFromCFValue(const PlistValue* value, double& out) { return numberFromValue(value, out); }
bool GetFloatFromCFValue(const PlistValue* value, float& out) { return numberFromValue(value, out); }
bool GetLongLongFromCFValue(const PlistValue* value, int64_t& out) { return numberFromValue(value, out); }
bool GetLongFromCFValue(const PlistValue* value, int32_t& out) { return numberFromValue(value, out); }
bool GetShortFromCFValue(const PlistValue* value, int16_t& out) { return numberFromValue(value, out); }
bool GetCharFromCFValue(const PlistValue* value, int8_t& out) { return numberFromValue(value, out); }

bool GetBoolFromCFValue(const PlistValue* value, bool& out) {
  if (!value || !value->is(Type::Boolean)) return false;
  out = value->asBoolean();
  return true;
}

bool GetStringFromCFValue(const PlistValue* value, uint16_t*& out) {
  if (!value || !value->is(Type::String)) return false;
  std::optional<std::u16string> units = utf8ToUTF16(value->asString());
  if (!units) return false;
  uint16_t* copy = static_cast<uint16_t*>(std::malloc((units->size() + 1) * sizeof(uint16_t)));
  if (!copy) return false;
  std::copy(units->begin(), units->end(), copy);
  copy[units->size()] = 0;
  out = copy;
  return true;
}

}  // namespace typeprint::QCFUtils
