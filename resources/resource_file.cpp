#include "resources/resource_file.h"

// Until resource maps are read, no file has one: every query answers "no resources".
namespace typeprint {

void* AllocateResourceFile(const char*, bool) { return nullptr; }
void FreeResourceFile(void*) {}
int countResType(void*, uint32_t) { return 0; }
Handle getHandleOfTypeAndIndex(void*, uint32_t, int) { return nullptr; }
Handle getHandleOfTypeAndResID(void*, uint32_t, int16_t) { return nullptr; }
void ReleaseResource(Handle) {}
bool FileHasFONDsInResourceFork(void*) { return false; }
bool FileHasPOSTsInResourceFork(void*) { return false; }
bool is_psfont(void*) { return false; }
bool is_psprinterfont(void*) { return false; }
bool hasValidResourcePSHeader(void*) { return false; }

}  // namespace typeprint
