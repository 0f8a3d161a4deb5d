/* A mailer plug-in for the tests. The environment sets its results; it writes the account that it gets to a file. */
#include "acctkit/acctkit.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#define ENTRY __declspec(dllexport)
#else
#define ENTRY __attribute__((visibility("default")))
#endif

static void Copy(char *field, size_t size, const char *name) {
  const char *value = getenv(name);
  snprintf(field, size, "%s", value != NULL ? value : "");
}

ENTRY int32_t GetMailerInfo(MailerInfo *info, int32_t size) {
  if (size != (int32_t)sizeof *info)
    return 0;
  Copy(info->name, sizeof info->name, "ACCTKIT_PLUGIN_NAME");
  Copy(info->path, sizeof info->path, "ACCTKIT_PLUGIN_PATH");
  return PLUGIN_ANSWER;
}

ENTRY int32_t SetMailEnvironment(const MailEnvironment *environment, int32_t size) {
  const char *path = getenv("ACCTKIT_PLUGIN_KEEP");
  FILE *file = path != NULL ? fopen(path, "wb") : NULL;
  if (file == NULL)
    return 0;
  fwrite(environment, 1, (size_t)size, file);
  fclose(file);
  return PLUGIN_ANSWER;
}

#ifndef PLUGIN_INCOMPLETE
ENTRY int32_t SetCompleteFlag(void) {
  const char *flag = getenv("ACCTKIT_PLUGIN_FLAG");
  return flag != NULL ? atoi(flag) : 0;
}
#endif
