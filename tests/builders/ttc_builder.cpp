#include "builders/ttc_builder.h"

namespace typeprint::test {

int TtcBuilder::addTable(Bytes data) {
  tables_.push_back(std::move(data));
  return int(tables_.size()) - 1;
}

TtcBuilder& TtcBuilder::face(std::vector<std::pair<std::string, int>> tables) {
  faces_.push_back(std::move(tables));
  return *this;
}

Bytes TtcBuilder::build() const {
  size_t headerSize = 12 + 4 * faces_.size() + (version_ == 0x00020000 ? 12 : 0);
  std::vector<size_t> faceAt;
  size_t at = headerSize;
  for (const auto& f : faces_) {
    faceAt.push_back(at);
    at += 12 + 16 * f.size();
  }
  std::vector<size_t> tableAt;
  for (const Bytes& t : tables_) {
    tableAt.push_back(at);
    at += (t.size() + 3) & ~size_t(3);
  }
  Bytes out(at, 0);
  out = patchU32(out, 0, 0x74746366);
  out = patchU32(out, 4, version_);
  out = patchU32(out, 8, uint32_t(faces_.size()));
  for (size_t i = 0; i < faces_.size(); ++i) {
    out = patchU32(out, faceOffsetEntry(i), uint32_t(faceAt[i]));
    size_t f = faceAt[i];
    out = patchU32(out, f, 0x00010000);
    out = patchU16(out, f + 4, uint16_t(faces_[i].size()));
    for (size_t k = 0; k < faces_[i].size(); ++k) {
      size_t e = f + 12 + 16 * k;
      std::string tag = faces_[i][k].first;
      tag.resize(4, ' ');
      for (size_t c = 0; c < 4; ++c) out[e + c] = uint8_t(tag[c]);
      const Bytes& t = tables_[size_t(faces_[i][k].second)];
      out = patchU32(out, e + 4, wordSum(t));
      out = patchU32(out, e + 8, uint32_t(tableAt[size_t(faces_[i][k].second)]));
      out = patchU32(out, e + 12, uint32_t(t.size()));
    }
  }
  for (size_t i = 0; i < tables_.size(); ++i) std::copy(tables_[i].begin(), tables_[i].end(), out.begin() + tableAt[i]);
  return out;
}

}  // namespace typeprint::test
