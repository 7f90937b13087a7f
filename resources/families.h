// The family-resource questions that font analysis asks of a resource-fork font file: the kind
// of a face's outline resource, where that resource is, and the PostScript header of a face's
// printer-font file.
#pragma once

#include <cstdint>

#include "foundation/ux_string.h"
#include "resources/handle.h"

namespace typeprint {

// Resource ID of the first present association entry of `fond` with this style; -1 if none.
int16_t getFirstResourceIDFromHandleAndStyle(void* rf, Handle fond, short style);
// The face's `sfnt` resource begins with 0x00010000 (or "true", outside CID families).
bool has_ttc_true_Flag(void* rf, Handle fond, short style);
// The face's `sfnt` resource begins with "OTTO".
bool has_OTTO_Flag_inResource(void* rf, Handle fond, short style);

// Reads the face's names from the POST resources of its printer-font file. 0 header read,
// 6 printer file unnamed or unopenable, -1 nothing to do.
long CollectPSMetaDataMac(void* rf, const UxString& path, Handle fond, short style, UxString* printerFilePath,
                          UxString* kind, UxString* foundry, UxString* family, UxString* version,
                          UxString* postScriptName, UxString* styledName, UxString* fullName);
// Reads the names from the data fork of the printer-font file named by *printerFilePath.
// 0 header read, 6 file missing or unopenable, -1 no path.
long CollectPSMetaDataFromFile(const UxString& path, UxString* printerFilePath, UxString* kind, UxString* foundry,
                               UxString* family, UxString* version, UxString* postScriptName, UxString* styledName,
                               UxString* fullName);

}  // namespace typeprint
