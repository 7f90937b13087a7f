// The names of a face of a resource-fork font file whose outline lives in a separate PostScript
// printer-font file: read from the clear-text header in that file's `POST` resources (or, for
// printer files that keep it there, its data fork), completed from the family resource: the
// PostScript name from the style-mapping table, the styled name from the family's name, and the
// kind of multiple-master ("PostScript - MM"), CID and OCF families.
#pragma once

#include <functional>

#include "foundation/ux_string.h"
#include "resources/handle.h"

namespace typeprint {

class TypeprintResourceFile;

// Status values of the collectors.
constexpr long kPSMetaDataRead = 0;
constexpr long kPSMetaDataNoPrinterFile = 6;
constexpr long kPSMetaDataNothingToDo = -1;

// POST resources of a printer-font file start at this ID; only the first two hold header text.
constexpr int16_t kFirstPOSTResourceID = 501;
constexpr int16_t kLastPOSTHeaderResourceID = 502;
// Size of a full POST segment (2 header bytes and 2046 bytes of the font program).
constexpr size_t kFullPOSTSegmentSize = 2048;
// Bytes of a printer file's data fork that are searched for the header.
constexpr size_t kPrinterFileHeaderBytes = 6000;

// Runs the PostScript header reader over one resource (its two leading segment bytes included;
// zero bytes read as "_"). Nothing for a null or empty handle. Any output may be null.
void GatherMetaDataFromHandle(Handle handle, UxString* kind, UxString* foundry, UxString* family, UxString* version,
                              UxString* postScriptName, UxString* styledName, UxString* fullName);

// Walks the POST resources of a printer-font file from 501 up, stopping at one that is absent,
// empty, or a full 2048-byte segment other than 501, and passes 501 and 502 to `read`. True when
// `read` was called.
bool walkPrinterFileHeader(TypeprintResourceFile& printer, const std::function<void(Handle)>& read);

// The face's names from the POST resources of its printer-font file, completed from the family.
// 0 header read, 6 printer file unnamed or unopenable, -1 nothing to do (no object, no family,
// outline in the file, no usable POST resource).
long CollectPSMetaDataMac(void* rf, const UxString& path, Handle fond, short style, UxString* printerFilePath,
                          UxString* kind, UxString* foundry, UxString* family, UxString* version,
                          UxString* postScriptName, UxString* styledName, UxString* fullName);

// The names from the first 6000 bytes of the data fork of the file named by *printerFilePath
// (`path` is not used). 0 read (even when the fork is empty), 6 missing or unopenable, -1 no
// path. The path is written back into *printerFilePath.
long CollectPSMetaDataFromFile(const UxString& path, UxString* printerFilePath, UxString* kind, UxString* foundry,
                               UxString* family, UxString* version, UxString* postScriptName, UxString* styledName,
                               UxString* fullName);

// The names from the face's first `sfnt` resource (ascending ID) read as a PostScript header.
// 0 when one was read, -1 otherwise (also for a null object).
long Collect_sfnt_MetaDataFromPrinterInfo(void* rf, Handle fond, short style, UxString* kind, UxString* foundry,
                                          UxString* family, UxString* version, UxString* postScriptName,
                                          UxString* styledName, UxString* fullName);

}  // namespace typeprint
