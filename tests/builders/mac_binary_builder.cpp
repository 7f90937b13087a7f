#include "builders/mac_binary_builder.h"

#include "base/be_writer.h"
#include "platform/linux/mac_binary.h"

namespace typeprint::test {

MacBinaryBuilder& MacBinaryBuilder::version(int v) {
  version_ = v;
  return *this;
}
MacBinaryBuilder& MacBinaryBuilder::name(const std::string& macName) {
  name_ = macName;
  return *this;
}
MacBinaryBuilder& MacBinaryBuilder::typeCreator(const char (&type)[5], const char (&creator)[5]) {
  type_ = tag(type);
  creator_ = tag(creator);
  return *this;
}
MacBinaryBuilder& MacBinaryBuilder::dataFork(Bytes bytes) {
  data_ = std::move(bytes);
  return *this;
}
MacBinaryBuilder& MacBinaryBuilder::resourceFork(Bytes bytes) {
  resource_ = std::move(bytes);
  return *this;
}

Bytes MacBinaryBuilder::withFreshCrc(Bytes file) {
  uint16_t crc = macBinaryCrc(ByteSpan(file.data(), 124));
  return patchU16(std::move(file), 124, crc);
}

Bytes MacBinaryBuilder::build() const {
  BEWriter w;
  w.u8(0);
  w.u8(uint8_t(name_.size()));
  for (char c : name_) w.u8(uint8_t(c));
  w.zeros(65 - w.size());
  w.u32(type_);
  w.u32(creator_);
  w.zeros(83 - w.size());
  w.u32(uint32_t(data_.size()));
  w.u32(uint32_t(resource_.size()));
  w.zeros(128 - w.size());
  if (version_ == 3) w.patchU32(102, tag("mBIN"));
  Bytes header = w.take();
  if (version_ >= 2) {
    header[122] = version_ == 3 ? 0x82 : 0x81;
    header[123] = 0x81;
    header = withFreshCrc(std::move(header));
  }
  BEWriter out;
  out.bytes(header);
  out.bytes(data_);
  out.align(128);
  out.bytes(resource_);
  out.align(128);
  return out.take();
}

}  // namespace typeprint::test
