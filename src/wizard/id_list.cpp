#include "wizard/id_list.h"

#include <cstring>

namespace {

// Reads the strings of a host's list, one after the other. A zero byte at its very start doesn't end it.
void ReadIds(const char *list, CStringArray &ids) {
  for (const char *at = list; at[0] != '\0' || at[1] != '\0'; at += std::strlen(at)) {
    if (*at == '\0')
      ++at;
    ids.Add(at);
  }
}

} // namespace

void FillIds(WizardData &data, const char *id, const char *idList) {
  ReadIds(idList, data.ids);
  data.ids.Add("");
  for (int index = data.ids.GetSize() - 1; index >= 0; --index)
    if (data.ids[index] == id)
      data.currentId = index;
}
