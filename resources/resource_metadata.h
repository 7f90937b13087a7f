// The names of a face of a resource-fork font file whose outline lives in a separate PostScript
// printer-font file: read from the clear-text header in that file's `POST` resources (or, for
// printer files that keep it there, its data fork), completed from the family resource: the
// PostScript name from the style-mapping table, the styled name from the family's name, and the
// kind of multiple-master ("PostScript - MM"), CID and OCF families.
#pragma once

#include <functional>

#include "foundation/ux_string.h"
#include "resources/resource_file.h"

namespace typeprint {

// What a collector found.
enum class PSHeaderOutcome {
  Read,           // a header was read
  NoPrinterFile,  // the printer file is unnamed, missing or cannot be opened
  NothingToDo,    // no file, no family, outline in the file, or no usable header resource
};

// POST resources of a printer-font file start at this ID; only the first two hold header text.
constexpr int16_t kFirstPOSTResourceID = 501;
constexpr int16_t kLastPOSTHeaderResourceID = 502;
// Size of a full POST segment (2 header bytes and 2046 bytes of the font program).
constexpr size_t kFullPOSTSegmentSize = 2048;
// Bytes of a printer file's data fork that are searched for the header.
constexpr size_t kPrinterFileHeaderBytes = 6000;

// Runs the PostScript header reader over one resource (its two leading segment bytes included;
// zero bytes read as "_"). Nothing for empty bytes. Any output may be null.
void GatherMetaDataFromResource(ByteSpan resource, UxString* kind, UxString* foundry, UxString* family, UxString* version,
                              UxString* postScriptName, UxString* styledName, UxString* fullName);

// Walks the POST resources of a printer-font file from 501 up, stopping at one that is absent,
// empty, or a full 2048-byte segment other than 501, and passes 501 and 502 to `read`. True when
// `read` was called.
bool walkPrinterFileHeader(const ResourceFile& printer, const std::function<void(ByteSpan)>& read);

// The face's names from the POST resources of its printer-font file, completed from the family.
PSHeaderOutcome CollectPSMetaDataMac(ResourceFile* rf, const UxString& path, Resource fond, short style,
                                     UxString* printerFilePath,
                          UxString* kind, UxString* foundry, UxString* family, UxString* version,
                          UxString* postScriptName, UxString* styledName, UxString* fullName);

// The names from the first 6000 bytes of the data fork of the file named by *printerFilePath
// (`path` is not used): Read even when the fork is empty, NothingToDo without a printer file
// path. The path is written back into *printerFilePath.
PSHeaderOutcome CollectPSMetaDataFromFile(const UxString& path, UxString* printerFilePath, UxString* kind, UxString* foundry,
                               UxString* family, UxString* version, UxString* postScriptName, UxString* styledName,
                               UxString* fullName);

}  // namespace typeprint
