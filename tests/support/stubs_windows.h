// Windows 98 has some calls as stubs alone, which fail. The environment variable ACCTKIT_STUBS names them, with blanks
// between them. A suite's own calls of those fail from before its first static object is made.
#pragma once

#include <windows.h>

// Lets them fail in a module that is loaded, too.
void StubImports(HMODULE module);
