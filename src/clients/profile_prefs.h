// A user's profile in the way of both Netscape clients: a directory with a prefs.js and a directory for mail in it.
#pragma once

#include <string>

std::string PrefsPath(const std::string &directory);
// Makes the directory for mail.
void MakeMailDirectory(const std::string &directory);
// Whether a profile of that name may be overwritten.
std::string SameProfileQuestion(const std::string &profile);
