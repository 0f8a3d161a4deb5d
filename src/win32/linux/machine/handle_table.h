// Things that callers know by handles. A handle is looked up, so that one that is stale or made up finds nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace machine {

template <typename Handle, typename Thing> class HandleTable {
public:
  // Tables begin at different numbers, so that a handle of one isn't found in another.
  explicit HandleTable(uintptr_t first) : next(first) {}

  Handle Add(std::shared_ptr<Thing> thing) {
    const std::lock_guard lock(guard);
    const auto handle = reinterpret_cast<Handle>(next++);
    things.emplace(handle, std::move(thing));
    return handle;
  }

  std::shared_ptr<Thing> Find(Handle handle) const {
    const std::lock_guard lock(guard);
    const auto found = things.find(handle);
    return found != things.end() ? found->second : nullptr;
  }

  // Takes a thing out, null if there is none.
  std::shared_ptr<Thing> Remove(Handle handle) {
    const std::lock_guard lock(guard);
    const auto found = things.extract(handle);
    return found ? std::move(found.mapped()) : nullptr;
  }

private:
  friend struct HandleTableHooks; // of the tests

  mutable std::mutex guard;
  uintptr_t next;
  std::unordered_map<Handle, std::shared_ptr<Thing>> things;
};

} // namespace machine
