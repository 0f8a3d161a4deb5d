// What the pages of the wizards that know the subscriber's IDs do with them.
#pragma once

#include "mfc/afxwin.h"
#include "wizard/wizard_data.h"

// ---- The first page ----

// Lists the IDs, with the current one selected.
void ListIds(const CWnd &page, const WizardData &data);

// Makes the ID that the page shows the current one; one that is typed goes into the spare entry. False if it is no ID.
bool TakeId(const CWnd &page, WizardData &data);

// ---- The ID page ----

// The page has been made: it lists the domains of a section of service.ini.
void InitIdPage(const CWnd &page, WizardData &data, const char *section);

// The page is shown, the first time with its list open. The mail user has a limit of so many bytes.
void ShowIdPage(const CWnd &page, WizardData &data, int userLimit);

// The same, with the ID proposed as the mail user where there is none, or where the ID has changed.
void ShowIdPageWithId(const CWnd &page, WizardData &data);

// Names the account, after an ID or an address, and its connection.
void NameAccount(WizardData &data, const std::string &name);
