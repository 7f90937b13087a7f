// C-level access to an open resource-fork font file. The object travels as an untyped pointer;
// every function tolerates a null object and then answers "no resources".
#pragma once

#include <cstdint>

#include "foundation/be_reader.h"
#include "resources/handle.h"

namespace typeprint {

constexpr uint32_t kTypeFOND = tag("FOND");
constexpr uint32_t kTypeNFNT = tag("NFNT");
constexpr uint32_t kTypeFONT = tag("FONT");
constexpr uint32_t kTypePOST = tag("POST");
constexpr uint32_t kTypeSfnt = tag("sfnt");

// Opens the resource map of the file at `path` (UTF-8); null when it has no usable one.
void* AllocateResourceFile(const char* path, bool readOnly);
void FreeResourceFile(void* rf);
int countResType(void* rf, uint32_t type);
// Resource `index` (from 1) of a type, or null. Valid while the file is open.
Handle getHandleOfTypeAndIndex(void* rf, uint32_t type, int index);
Handle getHandleOfTypeAndResID(void* rf, uint32_t type, int16_t id);
// Gives a handle obtained from a resource file back.
void ReleaseResource(Handle h);
bool FileHasFONDsInResourceFork(void* rf);
bool FileHasPOSTsInResourceFork(void* rf);
bool is_psfont(void* rf);
bool is_psprinterfont(void* rf);
bool hasValidResourcePSHeader(void* rf);

}  // namespace typeprint
