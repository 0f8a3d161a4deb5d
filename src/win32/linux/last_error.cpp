// The last error of a thread.
#include "win32/win32.h"

namespace {
thread_local DWORD lastError = 0;
}

DWORD GetLastError() { return lastError; }

void SetLastError(DWORD code) { lastError = code; }
