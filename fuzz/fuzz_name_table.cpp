// The naming-table reader over arbitrary bytes, with every output asked for.
#include <cstddef>
#include <cstdint>

#include "analysis/name_table.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  UxString foundry, family, version, postScript, styled, full, windowsFull;
  bool ok = getMetaDataFromNamesTable(SfntBytes(ByteSpan(data, size)), &foundry, &family,
                                      &version, &postScript, &styled, &full, &windowsFull);
  volatile size_t sink = ok + foundry.size() + family.size() + version.size() + postScript.size() + styled.size() +
                         full.size() + windowsFull.size();
  (void)sink;
  return 0;
}
