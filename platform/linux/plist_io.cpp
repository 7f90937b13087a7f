#include "platform/linux/plist_io.h"

#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

namespace typeprint {
namespace {

struct PlistFree {
  void operator()(void* p) const { plist_free(static_cast<plist_t>(p)); }
};
using OwnedPlist = std::unique_ptr<void, PlistFree>;

// Property lists nest only a few levels in practice; a hostile document cannot recurse deeper.
constexpr int kMaxDepth = 64;

std::optional<PlistValue> fromNode(plist_t node, int depth) {
  if (!node || depth > kMaxDepth) return std::nullopt;
  switch (plist_get_node_type(node)) {
    case PLIST_STRING: {
      uint64_t length = 0;
      const char* s = plist_get_string_ptr(node, &length);
      return PlistValue::string(s ? std::string(s, length) : std::string());
    }
    case PLIST_UINT: {
      uint64_t v = 0;
      plist_get_uint_val(node, &v);
      return PlistValue::integer(int64_t(v));
    }
    case PLIST_REAL: {
      double d = 0;
      plist_get_real_val(node, &d);
      return PlistValue::real(d);
    }
    case PLIST_BOOLEAN: {
      uint8_t b = 0;
      plist_get_bool_val(node, &b);
      return PlistValue::boolean(b != 0);
    }
    case PLIST_DATA: {
      uint64_t length = 0;
      const char* p = plist_get_data_ptr(node, &length);
      const uint8_t* bytes = reinterpret_cast<const uint8_t*>(p);
      return PlistValue::data(p ? std::vector<uint8_t>(bytes, bytes + length) : std::vector<uint8_t>());
    }
    case PLIST_DATE: {
      int32_t sec = 0, usec = 0;
      plist_get_date_val(node, &sec, &usec);
      return PlistValue::date(sec + usec / 1e6);
    }
    case PLIST_ARRAY: {
      PlistValue::Array items;
      uint32_t n = plist_array_get_size(node);
      items.reserve(n);
      for (uint32_t i = 0; i < n; ++i) {
        std::optional<PlistValue> item = fromNode(plist_array_get_item(node, i), depth + 1);
        if (!item) return std::nullopt;
        items.push_back(std::move(*item));
      }
      return PlistValue::array(std::move(items));
    }
    case PLIST_DICT: {
      PlistValue::Dictionary items;
      plist_dict_iter it = nullptr;
      plist_dict_new_iter(node, &it);
      for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, it, &key, &value);
        if (!value) {
          std::free(key);
          break;
        }
        std::optional<PlistValue> item = fromNode(value, depth + 1);
        std::string k = key ? key : "";
        std::free(key);
        if (!item) {
          std::free(it);
          return std::nullopt;
        }
        items.emplace(std::move(k), std::move(*item));
      }
      std::free(it);
      return PlistValue::dictionary(std::move(items));
    }
    default:
      return std::nullopt;
  }
}

plist_t toNode(const PlistValue& v) {
  switch (v.type()) {
    case PlistValue::Type::String: return plist_new_string(v.asString().c_str());
    case PlistValue::Type::Integer: return plist_new_uint(uint64_t(v.asInteger()));
    case PlistValue::Type::Real: return plist_new_real(v.asReal());
    case PlistValue::Type::Boolean: return plist_new_bool(v.asBoolean());
    case PlistValue::Type::Data:
      return plist_new_data(reinterpret_cast<const char*>(v.asData().data()), v.asData().size());
    case PlistValue::Type::Date: {
      double whole = std::floor(v.asDate());
      return plist_new_date(int32_t(whole), int32_t(std::lround((v.asDate() - whole) * 1e6)));
    }
    case PlistValue::Type::Array: {
      plist_t node = plist_new_array();
      for (const PlistValue& item : v.asArray()) plist_array_append_item(node, toNode(item));
      return node;
    }
    case PlistValue::Type::Dictionary: {
      plist_t node = plist_new_dict();
      for (const auto& [key, item] : v.asDictionary()) plist_dict_set_item(node, key.c_str(), toNode(item));
      return node;
    }
  }
  return nullptr;
}

}  // namespace

std::optional<PlistValue> parsePropertyList(ByteSpan bytes) {
  if (bytes.empty() || bytes.size > std::numeric_limits<uint32_t>::max()) return std::nullopt;
  plist_t root = nullptr;
  plist_from_memory(reinterpret_cast<const char*>(bytes.data), uint32_t(bytes.size), &root);
  OwnedPlist owner(root);
  return fromNode(root, 0);
}

std::optional<std::string> printXMLPropertyList(const PlistValue& value) {
  OwnedPlist root(toNode(value));
  if (!root) return std::nullopt;
  char* xml = nullptr;
  uint32_t length = 0;
  plist_to_xml(static_cast<plist_t>(root.get()), &xml, &length);
  if (!xml) return std::nullopt;
  std::string out(xml, length);
  plist_to_xml_free(xml);
  return out;
}

}  // namespace typeprint
