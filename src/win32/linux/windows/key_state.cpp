// The keyboard: nobody holds a key down, but keys have been pressed.
#include "win32/linux/public/front_end.h"

#include <array>
#include <atomic>

namespace {

struct Key {
  std::atomic<unsigned> presses;
  std::atomic<unsigned> seen;
};
std::array<Key, 256> keys;

Key &KeyOf(int key) { return keys[static_cast<unsigned>(key) % keys.size()]; }

} // namespace

namespace machine {

void PressKey(int key) { ++KeyOf(key).presses; }

} // namespace machine

int16_t GetKeyState(int key) { return static_cast<int16_t>(KeyOf(key).presses % 2); } // bit 0 changes with each press

int16_t GetAsyncKeyState(int key) {
  Key &asked = KeyOf(key);
  const unsigned presses = asked.presses;
  return asked.seen.exchange(presses) != presses ? 1 : 0;
}
