// A sign-up file: lines `key=value` in UTF-8, the keys being the fields of SignupRecord; # begins a comment line.
#pragma once

#include "acctkit/acctkit.h"

#include <string>

// Throws UsageError with file, line and key for what can't be taken.
SignupRecord ReadSignupFile(const std::string &path);
