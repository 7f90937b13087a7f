// Collection faces rebuilt both ways, which must agree byte for byte, then read like any font.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "analysis/checksums.h"
#include "analysis/name_table.h"
#include "analysis/ttc_split.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  TrueTypeCollectionFont collection{ByteSpan(data, size)};
  // Faces past the offsets present all fail alike; a few more than fit is enough.
  unsigned faces = collection.faceCount() < 64 ? collection.faceCount() : 64;
  for (unsigned face = 0; face < faces; ++face) {
    std::vector<uint8_t> bytes;
    TTCFace layout;
    int built = collection.GetDataPtrForFace(face, bytes);
    int laid = collection.GetFaceLayout(face, layout);
    if (built != laid) abort();
    if (built != kTTCSuccess) continue;
    if (layout.size() != bytes.size() || layout.crc() != CChecksum::icrc(ByteSpan(bytes), 0)) abort();
    UxString name, nameFromBytes;
    getMetaDataFromNamesTable(layout, nullptr, nullptr, nullptr, &name, nullptr, nullptr, nullptr);
    getMetaDataFromNamesTable(ByteSpan(bytes), nullptr, nullptr, nullptr, &nameFromBytes, nullptr,
                              nullptr, nullptr);
    uint32_t kernA = 1, kernB = 1;
    bool okA = GetTrueTypeKerningTableChecksum(layout, &kernA), okB = GetTrueTypeKerningTableChecksum(ByteSpan(bytes), &kernB);
    if (name != nameFromBytes || okA != okB || kernA != kernB) abort();
  }
  return 0;
}
