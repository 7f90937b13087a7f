#include "formats/woff2.h"

#include <woff2/decode.h>
#include <woff2/output.h>

#include <algorithm>
#include <cstring>

namespace typeprint::formats {
namespace {

// Offset of totalSfntSize in the WOFF2 header: signature, flavor, length, numTables, reserved.
constexpr size_t kTotalSfntSizeOffset = 16;

// The decoder's output, kept in a vector that never grows past `limit` bytes.
class BoundedOutput final : public woff2::WOFF2Out {
 public:
  BoundedOutput(std::vector<uint8_t>& out, size_t limit) : out_(out), limit_(limit) {}
  bool Write(const void* buf, size_t n) override {
    if (!Write(buf, size_, n)) return false;
    size_ += n;
    return true;
  }
  bool Write(const void* buf, size_t offset, size_t n) override {
    if (offset > limit_ || n > limit_ - offset) {
      overflowed_ = true;
      return false;
    }
    if (out_.size() < offset + n) out_.resize(offset + n);
    if (n) std::memcpy(out_.data() + offset, buf, n);
    return true;
  }
  size_t Size() override { return size_; }
  bool overflowed() const { return overflowed_; }

 private:
  std::vector<uint8_t>& out_;
  size_t limit_;
  size_t size_ = 0;
  bool overflowed_ = false;
};

}  // namespace

EDecodeStatus decodeWoff2(ByteSpan woff2, std::vector<uint8_t>& sfnt) {
  sfnt.clear();
  BEReader header(woff2);
  if (header.u32() != kWoff2Signature) return EDecodeStatus::kNotThisFormat;
  const uint32_t declared = BEReader(woff2).at(kTotalSfntSizeOffset, 4).u32();
  const size_t limit = size_t(decodedSizeLimit(woff2.size));
  if (declared > limit) return EDecodeStatus::kTooLarge;

  std::vector<uint8_t> out;
  out.reserve(std::min(woff2::ComputeWOFF2FinalSize(woff2.data, woff2.size), limit));
  BoundedOutput writer(out, limit);
  if (!woff2::ConvertWOFF2ToTTF(woff2.data, woff2.size, &writer))
    return writer.overflowed() ? EDecodeStatus::kTooLarge : EDecodeStatus::kDamaged;
  out.resize(writer.Size());
  sfnt = std::move(out);
  return EDecodeStatus::kDecoded;
}

}  // namespace typeprint::formats
