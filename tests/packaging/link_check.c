/* Built against an installed typeprint: checks the version, then prints the classification of the
   family named on the command line, which the library reads from its installed data files. */
#include <stdio.h>
#include <typeprint.h>

int main(int argc, char** argv) {
  uint32_t major = 0, minor = 0;
  char classification[128] = "";
  TP_GetTypeprintVersion(&major, &minor);
  if (major != 1 || minor != 4) return 1;
  if (argc < 2 || TP_GetClassificationFromFamily(argv[1], NULL, classification, sizeof classification) != TP_STATUS_OK)
    return 2;
  printf("%s\n", classification);
  return 0;
}
