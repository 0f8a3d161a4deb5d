// Prints what a person wants to see after a set-up: every client, its accounts or profiles, and where their values
// stand.
#pragma once

// Prints to the standard output, as text or as one JSON document.
void PrintAccounts(bool asJson);

// Prints the clients, their versions, and which of mail and news is installed.
void PrintStatus();
