#include "rescue/post_font.h"

#include <algorithm>

#include "base/be_writer.h"

namespace typeprint::rescue {
namespace {

enum PostKind : uint8_t {
  kPostComment = 0,
  kPostText = 1,
  kPostBinary = 2,
  kPostEndOfFile = 3,
  kPostDataFork = 4,
  kPostEndOfFont = 5,
};

constexpr uint8_t kPfbMarker = 0x80;
constexpr uint8_t kPfbEnd = 3;
constexpr size_t kPfaBytesPerLine = 32;

// A run of resources of one kind, as it goes into the output.
struct Block {
  uint8_t kind = 0;
  std::vector<uint8_t> bytes;
};

struct Blocks {
  std::vector<Block> list;
  bool sawEndMarker = false;
};

// Text bytes with carriage returns made line feeds. The state crosses resources, so a CR at the
// end of one resource and an LF at the start of the next still make one line end.
class LineEndTranslator {
 public:
  void append(ByteSpan text, std::vector<uint8_t>* out) {
    for (uint8_t c : text) {
      if (c == '\n' && afterCR_) {
        afterCR_ = false;
        continue;
      }
      afterCR_ = c == '\r';
      out->push_back(afterCR_ ? uint8_t('\n') : c);
    }
  }

 private:
  bool afterCR_ = false;
};

Blocks readBlocks(const std::vector<PostResource>& resources) {
  Blocks blocks;
  LineEndTranslator lineEnds;
  for (const PostResource& resource : resources) {
    BEReader in(resource.bytes);
    const uint8_t kind = in.u8();
    in.skip(1);
    if (!in.ok()) continue;
    if (kind == kPostEndOfFile || kind == kPostEndOfFont) {
      blocks.sawEndMarker = true;
      break;
    }
    if (kind != kPostText && kind != kPostBinary) continue;
    if (blocks.list.empty() || blocks.list.back().kind != kind) blocks.list.push_back({kind, {}});
    std::vector<uint8_t>& out = blocks.list.back().bytes;
    const ByteSpan body = in.span(in.remaining());
    if (kind == kPostText)
      lineEnds.append(body, &out);
    else
      out.insert(out.end(), body.begin(), body.end());
  }
  return blocks;
}

void appendHex(const std::vector<uint8_t>& binary, std::vector<uint8_t>* out) {
  static const char kDigits[] = "0123456789abcdef";
  for (size_t i = 0; i < binary.size(); ++i) {
    if (i > 0 && i % kPfaBytesPerLine == 0) out->push_back('\n');
    out->push_back(uint8_t(kDigits[binary[i] >> 4]));
    out->push_back(uint8_t(kDigits[binary[i] & 0xF]));
  }
}

void putLittleEndian32(BEWriter& out, uint32_t v) {
  for (int i = 0; i < 4; ++i) out.u8(uint8_t(v >> (8 * i)));
}

}  // namespace

std::vector<PostResource> orderedPostResources(std::vector<PostResource> all) {
  all.erase(std::remove_if(all.begin(), all.end(),
                           [](const PostResource& r) { return r.id < kFirstPostResourceID; }),
            all.end());
  std::stable_sort(all.begin(), all.end(), [](const PostResource& a, const PostResource& b) { return a.id < b.id; });
  return all;
}

PrinterFontBytes writePfb(const std::vector<PostResource>& resources) {
  Blocks blocks = readBlocks(resources);
  BEWriter out;
  for (const Block& block : blocks.list) {
    if (block.bytes.empty()) continue;
    out.u8(kPfbMarker);
    out.u8(block.kind);
    putLittleEndian32(out, uint32_t(block.bytes.size()));
    out.bytes(block.bytes);
  }
  out.u8(kPfbMarker);
  out.u8(kPfbEnd);
  return {out.take(), blocks.sawEndMarker};
}

PrinterFontBytes writePfa(const std::vector<PostResource>& resources) {
  Blocks blocks = readBlocks(resources);
  std::vector<uint8_t> out;
  for (const Block& block : blocks.list) {
    if (block.kind == kPostText)
      out.insert(out.end(), block.bytes.begin(), block.bytes.end());
    else
      appendHex(block.bytes, &out);
  }
  return {std::move(out), blocks.sawEndMarker};
}

namespace {

std::vector<uint8_t> joined(const std::vector<PostResource>& resources, uint8_t kind) {
  std::vector<uint8_t> bytes;
  for (const Block& block : readBlocks(resources).list)
    if (block.kind == kind) bytes.insert(bytes.end(), block.bytes.begin(), block.bytes.end());
  return bytes;
}

}  // namespace

std::vector<uint8_t> clearText(const std::vector<PostResource>& resources) { return joined(resources, kPostText); }

std::vector<uint8_t> binaryPart(const std::vector<PostResource>& resources) { return joined(resources, kPostBinary); }

}  // namespace typeprint::rescue
