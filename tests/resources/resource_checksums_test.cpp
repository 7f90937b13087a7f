// Checksums of resource-fork faces: the fixture faces against tests/fonts/mac/family_checksums.tsv,
// and on built families the kerning walk's bounds, the bitmap quirk and printer files (CRCs by zlib).
#include <gtest/gtest.h>
#include <zlib.h>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "resources/resource_checksums.h"
#include "support/mac_fixtures.h"
#include "support/resource_files.h"

namespace typeprint {
namespace {

using test::Bytes;
using test::FondBuilder;
using test::ResourceForkBuilder;

uint32_t zlibCrc(const Bytes& b, uint32_t crc = 0) { return uint32_t(crc32(crc, b.data(), uInt(b.size()))); }

// Byte sum of a FondBuilder kerning entry: its header, and pairs (i, i + 1, 0, i).
uint32_t kernEntrySum(uint16_t style, int16_t pairs, bool withPairs = true) {
  uint32_t sum = (style >> 8) + (style & 0xFF) + (uint16_t(pairs) >> 8) + (uint16_t(pairs) & 0xFF);
  for (int i = 0; withPairs && i < pairs; ++i) sum += uint32_t(3 * i + 1);
  return sum;
}

TEST(ResourceChecksums, FixtureFacesMatchTheIndependentValues) {
  const std::vector<test::ExpectedFace> faces = test::loadExpectedFaces();
  ASSERT_EQ(faces.size(), 20u);
  for (const auto& face : faces) {
    SCOPED_TRACE(face.path + " style " + std::to_string(face.style));
    const std::string path = test::macFixture(face.path);
    auto rf = test::openResourceFile(path);
    ASSERT_TRUE(rf->find(kTypeFOND, int16_t(face.fondID)));
    const ByteSpan fond = rf->find(kTypeFOND, int16_t(face.fondID))->data();
    EXPECT_EQ(GetBastionChecksum(fond, short(face.style)), face.kerningSum);
    uint32_t chained = 0xDEADBEEF;
    EXPECT_EQ(GetLanternChecksum(path, rf.get(), fond, short(face.style), false, chained), face.faceCrc);
    EXPECT_EQ(chained, face.legacyCrc);
    EXPECT_EQ(GetLanternChecksum(path, rf.get(), fond, short(face.style), true, chained), face.crossPlatformFaceCrc);
    EXPECT_EQ(chained, face.crossPlatformLegacyCrc);
  }
}

TEST(ResourceChecksums, KerningSumsWalkOnlyWhatFits) {
  const FondBuilder builder = FondBuilder().entry(0, 0, 1).kerning(0, 3).kerning(1, 2).kerning(0, 1);
  const Bytes fond = builder.build();
  const size_t kern = builder.layout().kernTable, lastEntry = kern + 2 + (4 + 12) + (4 + 8);
  const struct { const char* what; Bytes bytes; short style; uint32_t sum; } rows[] = {
      {"two entries of style 0", fond, 0, kernEntrySum(0, 3) + kernEntrySum(0, 1)},
      {"last header cut", test::truncated(fond, lastEntry + 3), 0, kernEntrySum(0, 3)},
      // A pair count of -1 steps back onto the same header, which every round then counts again.
      {"negative pair count steps back", test::patchU16(fond, kern + 2 + 2, uint16_t(-1)), 0,
       3 * kernEntrySum(0, -1, false)},
      {"table offset past the end", test::patchU32(fond, 20, 0xFFFFFFF0), 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(GetBastionChecksum(row.bytes, row.style), row.sum);
  }
}

TEST(ResourceChecksums, BitmapsAndPrinterFilesOfBuiltFamilies) {
  const Bytes nfnt(40, 0x5A), font{1, 2}, p501{1, 0, 'a'}, p502{2, 0, 'b', 'c'};
  const std::string program = "%!PS-AdobeFont-1.0: Sample-One 1.0\n/FontName /Sample-One def\n";
  const Bytes lwfn = ResourceForkBuilder().add("POST", 501, p501).add("POST", 502, p502).add("POST", 504, {5, 0}).build();
  const auto suitcase = [&](bool kerning) {  // one bitmap face, Sample-One, printer file SamplOne
    FondBuilder family;
    family.postScriptNames("Sample", {{0, "-One"}}).entry(12, 0, 7);
    if (kerning) family.kerning(0, 2);
    return ResourceForkBuilder().add("FOND", 300, family.build()).add("NFNT", 7, nfnt).add("FONT", 7, font).build();
  };
  const uint32_t bitmaps = zlibCrc(font, zlibCrc(nfnt));
  const struct { const char* what; bool kerning; std::string printerFile; uint32_t printerCrc, face; } rows[] = {
      {"bitmaps count while the CRC is 0", false, "", 0x77, bitmaps},
      // The kerning CRC is not 0: no bitmaps, nothing added, and the whole suitcase stands in.
      {"kerning first", true, "", 0x77, zlibCrc(suitcase(true))},
      {"printer file without a resource map: the whole file replaces the CRC", false, program,
       zlibCrc(test::bytesOf(program.c_str())), zlibCrc(test::bytesOf(program.c_str()))},
      {"POST resources from 501 chained, up to the missing 503", false, std::string(lwfn.begin(), lwfn.end()),
       zlibCrc(p502, zlibCrc(p501, 0x77)), zlibCrc(p502, zlibCrc(p501))},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir dir;
    if (!row.printerFile.empty()) test::writeFile(dir.file("SamplOne"), row.printerFile);
    auto rf = test::writeAndOpen(dir, "Suitcase", suitcase(row.kerning));
    const ByteSpan fond = rf->at(kTypeFOND, 1)->data();
    EXPECT_EQ(ChecksumNFNTsfntFONT(rf.get(), fond, 0, 0), bitmaps);
    EXPECT_EQ(ChecksumNFNTsfntFONT(rf.get(), fond, 0, 5), 5u);
    EXPECT_EQ(ChecksumPrinterFile(rf.get(), fond, 0, 0x77), row.printerCrc);
    uint32_t chained = 0;
    EXPECT_EQ(GetLanternChecksum(dir.file("Suitcase"), rf.get(), fond, 0, false, chained), row.face);
    EXPECT_EQ(chained, row.face);
  }
}

}  // namespace
}  // namespace typeprint
