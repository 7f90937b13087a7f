#include "resources/families.h"

// The resource-fork families answer nothing yet: no face has an outline resource or a printer
// file that these functions can find, so each gives its "not found" result.
namespace typeprint {

int16_t getFirstResourceIDFromHandleAndStyle(void*, Handle, short) { return -1; }

bool has_ttc_true_Flag(void*, Handle, short) { return false; }

bool has_OTTO_Flag_inResource(void*, Handle, short) { return false; }

long CollectPSMetaDataMac(void*, const UxString&, Handle, short, UxString*, UxString*, UxString*, UxString*,
                          UxString*, UxString*, UxString*, UxString*) {
  return -1;
}

long CollectPSMetaDataFromFile(const UxString&, UxString* printerFilePath, UxString*, UxString*, UxString*,
                               UxString*, UxString*, UxString*, UxString*) {
  return (printerFilePath && !printerFilePath->empty()) ? 6 : -1;
}

}  // namespace typeprint
