/* A host program in C: looks for Outlook Express and prints its version. */
#include <acctkit/acctkit.h>
#include <stdio.h>
#include <stdlib.h>

/* A host's own functions may have the names of Win32 calls, which the library makes. */
int RegCloseKey(void *key) {
  (void)key;
  abort();
}

int main(void) {
  int32_t major = 0;
  int32_t minor = 0;
  if (!IsInstallMailer(0) || !GetMailVersion(0, &major, &minor))
    return 1;
  printf("Outlook Express %d.%d\n", (int)major, (int)minor);
  return 0;
}
