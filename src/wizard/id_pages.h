// Shared code of the pages that show the subscriber's IDs.
#pragma once

#include "mfc/afxwin.h"
#include "wizard/wizard_data.h"

// ---- The first page ----

// Lists the IDs, with the current one selected.
void ListIds(const CWnd &page, const WizardData &data);

// Makes the ID on the page the current one; a typed ID is stored in the spare entry. False if the text is not an ID.
bool TakeId(const CWnd &page, WizardData &data);

// ---- The ID page ----

// Called when the page was made: lists the domains of a section of service.ini.
void InitIdPage(const CWnd &page, WizardData &data, const char *section);

// Called when the page is shown: opens its list the first time, and limits the mail user to `userLimit` bytes.
void ShowIdPage(const CWnd &page, WizardData &data, int userLimit);

// The same, and proposes the ID as the mail user if the field is empty or the ID has changed.
void ShowIdPageWithId(const CWnd &page, WizardData &data);

// Sets the account's title from an ID or an address, and the name of its connection.
void NameAccount(WizardData &data, const std::string &name);
