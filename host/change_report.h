// What a dry run tells: the changes that wait to be written to a machine folder.
#pragma once

#include "win32/linux/public/transaction.h"

#include <string>
#include <vector>

// The changes of keys, files and folders, a block each, then what the command would answer, and the notice if a plug-in
// wasn't asked; all of it in UTF-8 and as text or as one JSON document. No data is in it of a value, preference or line
// whose name has "password" in it.
std::string ChangeReport(const std::vector<machine::FileChange> &changes, const std::string &answer,
                         const std::string &notice, bool asJson);
