// The layer's calls of the system, for a suite to see and to disturb. The calls here take the place of the layer's own;
// they pass on to the system what no plan befalls.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct CallPlan {
  std::string_view name = {}; // of the calls that it is for, as in system_calls.h; empty for all
  size_t number = 0;          // which of them it befalls, from 1; 0 for every one
  int error = 0;              // the errno with which the call fails; 0: there the process is killed
};

// Records the calls of this process while it lives, and lets a plan befall them: the call isn't made, but of a write
// the first half is written. Wait doesn't wait then. One at a time.
class WatchedCalls {
public:
  explicit WatchedCalls(std::optional<CallPlan> plan = std::nullopt);
  ~WatchedCalls();
  WatchedCalls(const WatchedCalls &) = delete;
  WatchedCalls &operator=(const WatchedCalls &) = delete;

  // Each as its name, and the path if it has one: "Rename /machine/user.reg".
  const std::vector<std::string> &All() const { return all; }
  size_t Count(std::string_view name) const;

private:
  friend class Call;

  std::optional<CallPlan> plan;
  size_t planned = 0; // calls that the plan is for, so far
  std::vector<std::string> all;
};
