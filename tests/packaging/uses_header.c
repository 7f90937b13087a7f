/* The public header compiles as strict C99 and every declaration can be referenced. */
#include <typeprint.h>

int main(void) {
  uint32_t major = 0, minor = 0;
  TP_GetTypeprintVersion(&major, &minor);
  return (int)(major + minor) - 5 + (TP_STATUS_OK + TP_STATUS_FAILED - 1);
}
