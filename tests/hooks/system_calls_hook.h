// The layer's calls of the system, for a suite to see and to disturb. The calls here take the place of the layer's own;
// they pass on to the system what no plan befalls.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct CallPlan {
  std::string_view name = {}; // of the calls that it is for; empty for all
  size_t number = 0;          // which of them it befalls, from 1; 0 for every one
  int error = 0;              // the errno with which the call fails; 0: the process is killed there
  bool losesUnsynced = false; // and the power is cut: files lose what was written and not synced
};

// Whether a call of that name changes a file or folder. Plans to kill are for these alone: a kill before another one
// leaves what a kill before the next change does.
bool IsChange(std::string_view name);

// Records the calls of the process while it lives, and lets a plan befall them: the call isn't made, but of a write the
// first half is. Wait doesn't wait. One at a time, in a process with one thread.
class WatchedCalls {
public:
  explicit WatchedCalls(const std::optional<CallPlan> &plan = std::nullopt);
  ~WatchedCalls();
  WatchedCalls(const WatchedCalls &) = delete;
  WatchedCalls &operator=(const WatchedCalls &) = delete;

  // Each by its name in system_calls.h, but "Create" for an Open that may make a file, and by its path if it has one:
  // "Rename /machine/user.reg".
  static const std::vector<std::string> &All();
};
