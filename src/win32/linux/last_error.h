// How a call fails.
#pragma once

#include "win32/win32.h"

namespace machine {

// Leaves an error for GetLastError, and passes on the answer that tells of it.
template <typename Answer> Answer Fail(LONG error, Answer answer) {
  SetLastError(static_cast<DWORD>(error));
  return answer;
}

} // namespace machine
