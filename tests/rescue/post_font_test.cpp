// Expected bytes were taken from t1unmac 1.41 (-b and -a) run on resource forks holding the same
// POST resources.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "rescue/post_font.h"

namespace typeprint::rescue {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes post(uint8_t kind, const std::string& body) {
  Bytes b(body.size() + 2);
  b[0] = kind;
  std::copy(body.begin(), body.end(), b.begin() + 2);
  return b;
}

std::string pfbSegment(uint8_t kind, const std::string& body) {
  std::string s{char(0x80), char(kind)};
  for (int i = 0; i < 4; ++i) s.push_back(char((body.size() >> (8 * i)) & 0xFF));
  return s + body;
}

const std::string kEnd{char(0x80), char(3)};

TEST(PostFont, MatchesTheReferenceConverter) {
  const std::string bin2("\x00\x01", 2);
  const struct {
    const char* what;
    std::vector<std::pair<int16_t, Bytes>> resources;
    std::string pfb, pfa;
  } rows[] = {
      {"CR, CRLF and LF all become LF",
       {{501, post(1, "a\r\nb\rc\nd")}, {502, post(5, "")}},
       pfbSegment(1, "a\nb\nc\nd") + kEnd, "a\nb\nc\nd"},
      {"a CR ending one resource and an LF starting the next make one line end",
       {{501, post(1, "ab\r")}, {502, post(1, "\ncd")}, {503, post(5, "")}},
       pfbSegment(1, "ab\ncd") + kEnd, "ab\ncd"},
      {"the pending CR survives a binary run",
       {{501, post(1, "e\r")}, {502, post(2, bin2)}, {503, post(1, "\nx")}, {504, post(5, "")}},
       pfbSegment(1, "e\n") + pfbSegment(2, bin2) + pfbSegment(1, "x") + kEnd, "e\n0001x"},
      {"resources are read in ID order from 501",
       {{503, post(1, "C\r")}, {500, post(1, "skipped")}, {501, post(1, "A")}, {502, post(2, bin2)}, {504, post(5, "")}},
       pfbSegment(1, "A") + pfbSegment(2, bin2) + pfbSegment(1, "C\n") + kEnd, "A0001C\n"},
      {"an empty text resource splits the binary segment",
       {{501, post(1, "e")}, {502, post(2, bin2)}, {503, post(1, "")}, {504, post(2, bin2)}, {505, post(5, "")}},
       pfbSegment(1, "e") + pfbSegment(2, bin2) + pfbSegment(2, bin2) + kEnd, "e00010001"},
      {"comments, kind 4 and unknown kinds are skipped without splitting",
       {{501, post(1, "e")}, {502, post(2, bin2)}, {503, post(0, "c")}, {504, post(4, "")}, {505, post(6, "zz")},
        {506, post(2, bin2)}, {507, post(5, "")}},
       pfbSegment(1, "e") + pfbSegment(2, bin2 + bin2) + kEnd, "e00010001"},
      {"kind 3 ends the font; nothing after it is read",
       {{501, post(1, "a")}, {502, post(3, "")}, {503, post(1, "b")}},
       pfbSegment(1, "a") + kEnd, "a"},
      {"the end marker's own bytes are ignored",
       {{501, post(1, "ab")}, {502, post(5, "junk")}},
       pfbSegment(1, "ab") + kEnd, "ab"},
      {"a resource shorter than its head is skipped",
       {{501, post(1, "a")}, {502, Bytes{0}}, {503, Bytes{}}, {504, post(1, "b")}, {505, post(5, "")}},
       pfbSegment(1, "ab") + kEnd, "ab"},
      {"only an end marker",
       {{501, post(5, "")}}, kEnd, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::vector<PostResource> resources;
    for (const auto& [id, bytes] : row.resources) resources.push_back({id, ByteSpan(bytes)});
    resources = orderedPostResources(resources);
    PrinterFontBytes pfb = writePfb(resources), pfa = writePfa(resources);
    EXPECT_EQ(std::string(pfb.bytes.begin(), pfb.bytes.end()), row.pfb);
    EXPECT_EQ(std::string(pfa.bytes.begin(), pfa.bytes.end()), row.pfa);
    EXPECT_TRUE(pfb.sawEndMarker);
  }
}

TEST(PostFont, HexLinesHold32BytesAndContinueAcrossResources) {
  Bytes binary(40);
  for (size_t i = 0; i < binary.size(); ++i) binary[i] = uint8_t(i);
  const Bytes text = post(1, "x eexec"), part = post(2, std::string(binary.begin(), binary.end())), tail = post(1, "tail");
  const std::vector<PostResource> resources{{501, text}, {502, part}, {503, part}, {504, tail}};
  PrinterFontBytes pfa = writePfa(resources);
  // From t1unmac: 80 bytes make lines of 32, 32 and 16 bytes; no break before the text after them.
  EXPECT_EQ(std::string(pfa.bytes.begin(), pfa.bytes.end()),
            "x eexec000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f\n"
            "2021222324252627000102030405060708090a0b0c0d0e0f1011121314151617\n"
            "18191a1b1c1d1e1f2021222324252627tail");
  EXPECT_FALSE(pfa.sawEndMarker);
  EXPECT_FALSE(writePfb(resources).sawEndMarker);
}

}  // namespace
}  // namespace typeprint::rescue
