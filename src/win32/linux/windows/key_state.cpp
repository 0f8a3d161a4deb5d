// The keyboard: nobody holds a key down, but keys have been pressed.
#include "win32/linux/public/front_end.h"

#include <array>
#include <atomic>

namespace {

std::array<std::atomic<bool>, 256> pressed; // since GetAsyncKeyState last looked

std::atomic<bool> &PressedFlag(int key) { return pressed[static_cast<unsigned>(key) % pressed.size()]; }

} // namespace

void machine::PressKey(int key) { PressedFlag(key) = true; }

int16_t GetKeyState(int) { return 0; }

int16_t GetAsyncKeyState(int key) { return PressedFlag(key).exchange(false) ? 1 : 0; }
