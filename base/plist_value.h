// PlistValue: the library's property-list value model (string, integer, real, boolean, data,
// date, array, dictionary). Data files and the property-list exchange format are read into it
// and written from it; platform/linux/plist_io does the parsing and printing.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace typeprint {

class PlistValue {
 public:
  enum class Type { String, Integer, Real, Boolean, Data, Date, Array, Dictionary };
  using Array = std::vector<PlistValue>;
  using Dictionary = std::map<std::string, PlistValue>;

  PlistValue() : type_(Type::String) {}
  static PlistValue string(std::string s) { PlistValue v(Type::String); v.string_ = std::move(s); return v; }
  static PlistValue integer(int64_t i) { PlistValue v(Type::Integer); v.integer_ = i; return v; }
  static PlistValue real(double d) { PlistValue v(Type::Real); v.real_ = d; return v; }
  static PlistValue boolean(bool b) { PlistValue v(Type::Boolean); v.integer_ = b; return v; }
  static PlistValue data(std::vector<uint8_t> bytes) { PlistValue v(Type::Data); v.data_ = std::move(bytes); return v; }
  // Seconds since 2001-01-01 00:00:00 UTC, the property-list epoch.
  static PlistValue date(double seconds) { PlistValue v(Type::Date); v.real_ = seconds; return v; }
  static PlistValue array(Array items = {}) { PlistValue v(Type::Array); v.array_ = std::move(items); return v; }
  static PlistValue dictionary(Dictionary items = {}) {
    PlistValue v(Type::Dictionary);
    v.dictionary_ = std::move(items);
    return v;
  }

  Type type() const { return type_; }
  bool is(Type t) const { return type_ == t; }

  // Typed access; the caller checks the type first. Values of another type read as empty or 0.
  const std::string& asString() const { return string_; }
  int64_t asInteger() const { return integer_; }
  double asReal() const { return real_; }
  bool asBoolean() const { return integer_ != 0; }
  const std::vector<uint8_t>& asData() const { return data_; }
  double asDate() const { return real_; }
  const Array& asArray() const { return array_; }
  Array& asArray() { return array_; }
  const Dictionary& asDictionary() const { return dictionary_; }
  Dictionary& asDictionary() { return dictionary_; }

  // Dictionary lookup: the value under `key`, or null when absent or this is no dictionary.
  const PlistValue* find(const std::string& key) const {
    if (type_ != Type::Dictionary) return nullptr;
    auto it = dictionary_.find(key);
    return it == dictionary_.end() ? nullptr : &it->second;
  }

  bool operator==(const PlistValue& o) const {
    return type_ == o.type_ && string_ == o.string_ && integer_ == o.integer_ && real_ == o.real_ &&
           data_ == o.data_ && array_ == o.array_ && dictionary_ == o.dictionary_;
  }
  bool operator!=(const PlistValue& o) const { return !(*this == o); }

 private:
  explicit PlistValue(Type t) : type_(t) {}
  Type type_;
  std::string string_;
  int64_t integer_ = 0;
  double real_ = 0;
  std::vector<uint8_t> data_;
  Array array_;
  Dictionary dictionary_;
};

}  // namespace typeprint
