#include "platform/linux/plist_io.h"

#include <plist/plist.h>

#include <cmath>
#include <cstring>
#include <string_view>
#include <vector>
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
// Larger documents are not property lists this library reads or writes.
constexpr size_t kMaxDocumentSize = size_t(64) << 20;
// Nodes a binary property list may unfold to (its shared objects copied at each use).
constexpr size_t kMaxBinaryNodes = size_t(4) << 20;

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

// The position just past the first `needle` at or after `from`; npos when there is none.
size_t skipPast(std::string_view text, size_t from, std::string_view needle) {
  const size_t at = text.find(needle, from);
  return at == std::string_view::npos ? at : at + needle.size();
}

// The position of the '>' that ends the tag starting at `from`, quoted attribute values skipped.
size_t tagEnd(std::string_view text, size_t from) {
  for (size_t i = from; i < text.size(); ++i) {
    if (text[i] == '>') return i;
    if (text[i] == '"' || text[i] == '\'') {
      i = text.find(text[i], i + 1);
      if (i == std::string_view::npos) return i;
    }
  }
  return std::string_view::npos;
}

// Whether the elements of an XML text nest no deeper than a property list fromNode accepts:
// <plist>, kMaxDepth + 1 containers, and a value. Comments, CDATA, declarations and processing
// instructions are passed over; text that ends inside one of them is left to the parser to refuse.
bool xmlNestingWithinLimit(ByteSpan bytes) {
  constexpr int kMaxElementDepth = kMaxDepth + 3;
  const std::string_view text(reinterpret_cast<const char*>(bytes.data), bytes.size);
  int depth = 0;
  for (size_t i = text.find('<'); i != std::string_view::npos; i = text.find('<', i)) {
    const std::string_view rest = text.substr(i);
    if (rest.rfind("<!--", 0) == 0) i = skipPast(text, i + 4, "-->");
    else if (rest.rfind("<![CDATA[", 0) == 0) i = skipPast(text, i + 9, "]]>");
    else if (rest.rfind("<?", 0) == 0) i = skipPast(text, i + 2, "?>");
    else {
      const size_t end = tagEnd(text, i + 1);
      if (end == std::string_view::npos) return true;
      if (rest.rfind("</", 0) == 0) --depth;
      else if (rest[1] != '!' && text[end - 1] != '/' && ++depth > kMaxElementDepth) return false;
      i = end + 1;
    }
    if (i == std::string_view::npos) return true;
  }
  return true;
}

// Whether a binary property list's object tree, walked from its top object with every shared
// object unfolded as libplist unfolds it, stays within kMaxDepth levels and kMaxBinaryNodes
// nodes. The trailer (last 32 bytes): 6 unused, offset size, reference size, object count (u64),
// top object (u64), offset table position (u64). An array (0xA), set (0xC) or dictionary (0xD)
// marker holds its count in the low nibble, or 0xF and an integer object after it; then the
// references (twice as many for a dictionary). Damage is left to the parser to refuse.
bool binaryTreeWithinLimits(ByteSpan bytes) {
  if (bytes.size < 8 + 32) return true;
  BEReader trailer = BEReader(bytes).at(bytes.size - 32, 32);
  trailer.skip(6);
  const uint8_t offsetSize = trailer.u8(), refSize = trailer.u8();
  const uint64_t objects = uint64_t(trailer.u32()) << 32 | trailer.u32();
  const uint64_t top = uint64_t(trailer.u32()) << 32 | trailer.u32();
  const uint64_t table = uint64_t(trailer.u32()) << 32 | trailer.u32();
  if (offsetSize == 0 || offsetSize > 8 || refSize == 0 || refSize > 8 || table >= bytes.size ||
      objects > (bytes.size - table) / offsetSize || top >= objects)
    return true;
  const auto readSized = [](BEReader& r, uint8_t size) {
    uint64_t v = 0;
    for (uint8_t i = 0; i < size; ++i) v = v << 8 | r.u8();
    return v;
  };
  struct Pending { uint64_t object; int depth; };
  std::vector<Pending> stack{{top, 0}};
  size_t nodes = 1;  // counted when found, so the stack stays within the limit too
  while (!stack.empty()) {
    const Pending next = stack.back();
    stack.pop_back();
    if (next.depth > kMaxDepth) return false;
    BEReader entry = BEReader(bytes).at(size_t(table + next.object * offsetSize), offsetSize);
    const uint64_t offset = readSized(entry, offsetSize);
    if (!entry.ok() || offset >= bytes.size) continue;
    BEReader object = BEReader(bytes).at(size_t(offset), bytes.size - size_t(offset));
    const uint8_t marker = object.u8();
    const uint8_t kind = marker >> 4;
    if (kind != 0xA && kind != 0xC && kind != 0xD) continue;
    uint64_t count = marker & 0xF;
    if (count == 0xF) {
      const uint8_t intMarker = object.u8();
      if (intMarker >> 4 != 0x1 || (intMarker & 0xF) > 3) continue;
      count = readSized(object, uint8_t(1u << (intMarker & 0xF)));
    }
    if (kind == 0xD) count *= 2;
    if (!object.ok() || count > object.remaining() / refSize) continue;
    for (uint64_t i = 0; i < count; ++i) {
      const uint64_t child = readSized(object, refSize);
      if (child >= objects) continue;
      if (++nodes > kMaxBinaryNodes) return false;
      stack.push_back({child, next.depth + 1});
    }
  }
  return true;
}

}  // namespace

std::optional<PlistValue> parsePropertyList(ByteSpan bytes) {
  if (bytes.empty() || bytes.size > kMaxDocumentSize) return std::nullopt;
  // libplist builds the whole tree recursively before it can be checked: documents nested too
  // deeply, or binary ones whose shared objects unfold into too many, are refused first.
  const bool binary = bytes.size >= 8 && std::memcmp(bytes.data, "bplist00", 8) == 0;
  if (binary ? !binaryTreeWithinLimits(bytes) : !xmlNestingWithinLimit(bytes)) return std::nullopt;
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
