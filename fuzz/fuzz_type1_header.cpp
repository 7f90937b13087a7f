// The Type 1 header reader over arbitrary bytes, and the printer-font-metrics test.
#include <cstddef>
#include <cstdint>

#include "analysis/type1_header.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace typeprint;
  TType1HeaderText header(ByteSpan(data, size < 6000 ? size : 6000));
  UxString kind, foundry, family, version, postScript, styled, full;
  GatherPostScriptMetaDataFromData(header.lower, header.text, &kind, &foundry, &family, &version, &postScript,
                                   &styled, &full);
  UxString mmm;
  GetWindowsMMMFontNameFromPrinterFontName(header.text, &mmm);
  volatile size_t sink = kind.size() + foundry.size() + family.size() + version.size() + postScript.size() +
                         styled.size() + full.size() + mmm.size();
  (void)sink;
  return 0;
}
