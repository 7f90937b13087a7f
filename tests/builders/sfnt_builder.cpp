#include "builders/sfnt_builder.h"

#include "base/be_writer.h"

namespace typeprint::test {

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
  BEWriter out;
  out.u32(version_);
  out.u16(uint16_t(tables_.size()));
  out.zeros(6);
  for (size_t i = 0; i < tables_.size(); ++i) {
    std::string tag = tables_[i].tag;
    tag.resize(4, ' ');
    out.bytes(ByteSpan(reinterpret_cast<const uint8_t*>(tag.data()), 4));
    out.u32(wordSum(tables_[i].data));
    out.u32(uint32_t(tableOffset(i)));
    out.u32(uint32_t(tables_[i].data.size()));
  }
  for (size_t i = 0; i < tables_.size(); ++i) {
    out.bytes(tables_[i].data);
    if (i + 1 < tables_.size() || !unpaddedEnd_) out.align(4);
  }
  return out.take();
}

Bytes nameTable(const std::vector<NameRecordSpec>& records) {
  BEWriter out, strings;
  out.u16(0);
  out.u16(uint16_t(records.size()));
  out.u16(uint16_t(6 + 12 * records.size()));
  for (const NameRecordSpec& r : records) {
    for (uint16_t field : {r.platformID, r.encodingID, r.languageID, r.nameID, uint16_t(r.text.size()),
                           uint16_t(strings.size())})
      out.u16(field);
    strings.bytes(r.text);
  }
  out.bytes(strings.data());
  return out.take();
}

Bytes fontWithNames(const std::vector<NameRecordSpec>& records) {
  return SfntBuilder().table("cmap", 8).table("head", 54).table("hhea", 36).table("hmtx", 8).table("maxp", 6)
      .table("name", nameTable(records)).table("post", 32).build();
}

}  // namespace typeprint::test
