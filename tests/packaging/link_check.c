/* Built against an installed prefix with pkg-config: checks the version and that the library's
   data files were installed beside it. */
#include <stdio.h>
#include <typeprint.h>

int main(void) {
  uint32_t major = 0, minor = 0, count = 99;
  TP_GetTypeprintVersion(&major, &minor);
  if (major != 1 || minor != 4) return 1;
  if (TP_GetFontCount(NULL, &count) != TP_STATUS_FAILED || count != 99) return 2;
  printf("typeprint %u.%u\n", (unsigned)major, (unsigned)minor);
  return 0;
}
