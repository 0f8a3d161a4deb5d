// The list of the subscriber's IDs, as a host hands it to the exports of the wizards.
#pragma once

#include "wizard/wizard_data.h"

// Stores the IDs of the list and after them the spare entry, and makes the first one that is `id` the current one; if
// there is none, the first of all. An empty `id` is the spare entry. In the list each ID is ended by a zero byte, and
// the list by one more; a zero byte at its very start is skipped.
void FillIds(WizardData &data, const char *id, const char *idList);
