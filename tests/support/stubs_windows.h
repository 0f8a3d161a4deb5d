// Windows 98 has some functions only as stubs, which fail. The environment variable ACCTKIT_STUBS lists them, separated
// by blanks. In a suite the calls of these functions fail, even in the constructors of static objects.
#pragma once

#include <windows.h>

// Makes these functions fail in a loaded module too.
void StubImports(HMODULE module);
