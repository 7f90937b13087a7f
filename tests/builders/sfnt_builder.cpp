#include "builders/sfnt_builder.h"

namespace typeprint::test {

Bytes patchU16(Bytes bytes, size_t at, uint16_t value) {
  bytes.at(at) = uint8_t(value >> 8);
  bytes.at(at + 1) = uint8_t(value);
  return bytes;
}

Bytes patchU32(Bytes bytes, size_t at, uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes.at(at + i) = uint8_t(value >> (24 - 8 * i));
  return bytes;
}

Bytes truncated(Bytes bytes, size_t size) {
  if (size < bytes.size()) bytes.resize(size);
  return bytes;
}

Bytes asciiBytes(const std::string& text) { return Bytes(text.begin(), text.end()); }

Bytes utf16be(const std::u16string& text) {
  Bytes out;
  for (char16_t unit : text) {
    out.push_back(uint8_t(unit >> 8));
    out.push_back(uint8_t(unit));
  }
  return out;
}

uint32_t wordSum(const Bytes& bytes) {
  uint32_t sum = 0;
  for (size_t i = 0; i < bytes.size(); i += 4) {
    uint32_t word = 0;
    for (size_t k = 0; k < 4; ++k) word = word << 8 | (i + k < bytes.size() ? bytes[i + k] : 0);
    sum += word;
  }
  return sum;
}

namespace {

void putU16(Bytes& out, uint16_t v) {
  out.push_back(uint8_t(v >> 8));
  out.push_back(uint8_t(v));
}

void putU32(Bytes& out, uint32_t v) {
  putU16(out, uint16_t(v >> 16));
  putU16(out, uint16_t(v));
}

size_t padded(size_t n) { return (n + 3) & ~size_t(3); }

}  // namespace

SfntBuilder& SfntBuilder::table(const std::string& tag, Bytes data) {
  tables_.push_back({tag, std::move(data)});
  return *this;
}

SfntBuilder& SfntBuilder::table(const std::string& tag, size_t length) {
  Bytes data(length);
  for (size_t i = 0; i < length; ++i) data[i] = uint8_t(i + 1);
  return table(tag, std::move(data));
}

size_t SfntBuilder::tableOffset(size_t index) const {
  size_t at = entryOffset(tables_.size());
  for (size_t i = 0; i < index; ++i) at += padded(tables_[i].data.size());
  return at;
}

Bytes SfntBuilder::build() const {
  Bytes out;
  putU32(out, version_);
  putU16(out, uint16_t(tables_.size()));
  putU16(out, 0);
  putU16(out, 0);
  putU16(out, 0);
  for (size_t i = 0; i < tables_.size(); ++i) {
    std::string tag = tables_[i].tag;
    tag.resize(4, ' ');
    out.insert(out.end(), tag.begin(), tag.end());
    putU32(out, wordSum(tables_[i].data));
    putU32(out, uint32_t(tableOffset(i)));
    putU32(out, uint32_t(tables_[i].data.size()));
  }
  for (size_t i = 0; i < tables_.size(); ++i) {
    out.insert(out.end(), tables_[i].data.begin(), tables_[i].data.end());
    bool last = i + 1 == tables_.size();
    if (!(last && unpaddedEnd_)) out.resize(padded(out.size()), 0);
  }
  return out;
}

Bytes nameTable(const std::vector<NameRecordSpec>& records) {
  Bytes out, strings;
  putU16(out, 0);
  putU16(out, uint16_t(records.size()));
  putU16(out, uint16_t(6 + 12 * records.size()));
  for (const NameRecordSpec& r : records) {
    putU16(out, r.platformID);
    putU16(out, r.encodingID);
    putU16(out, r.languageID);
    putU16(out, r.nameID);
    putU16(out, uint16_t(r.text.size()));
    putU16(out, uint16_t(strings.size()));
    strings.insert(strings.end(), r.text.begin(), r.text.end());
  }
  out.insert(out.end(), strings.begin(), strings.end());
  return out;
}

Bytes fontWithNames(const std::vector<NameRecordSpec>& records) {
  return SfntBuilder()
      .table("cmap", 8)
      .table("head", 54)
      .table("hhea", 36)
      .table("hmtx", 8)
      .table("maxp", 6)
      .table("name", nameTable(records))
      .table("post", 32)
      .build();
}

}  // namespace typeprint::test
