// Icons of files, the system's own, and the system image list, which has a small one of every file that was asked for.
#include "win32/linux/machine/paths.h"
#include "win32/linux/windows/drawing.h"

#include <filesystem>
#include <map>
#include <mutex>

namespace {

constexpr int SmallIcon = 16;

// The first image, without a file, is there from the start.
class SystemImages {
public:
  const HIMAGELIST handle = reinterpret_cast<HIMAGELIST>(uintptr_t{0x3F00000});

  int IndexOf(const std::filesystem::path &file) {
    const std::lock_guard lock(guard);
    return indices.emplace(file, static_cast<int>(indices.size()) + 1).first->second;
  }

private:
  std::mutex guard;
  std::map<std::filesystem::path, int> indices;
};

SystemImages &Images() {
  static SystemImages images;
  return images;
}

} // namespace

DWORD_PTR SHGetFileInfoA(const char *path, DWORD, SHFILEINFOA *info, UINT, UINT flags) {
  const machine::DiskPath found = machine::FindOnDisk(path);
  if (!found.exists)
    return 0;
  if ((flags & (SHGFI_ICON | SHGFI_SYSICONINDEX)) != 0)
    info->iIcon = Images().IndexOf(found.path);
  if ((flags & SHGFI_ICON) != 0)
    info->hIcon = machine::Handles().icons.Add(std::make_shared<machine::Icon>());
  return (flags & SHGFI_SYSICONINDEX) != 0 ? reinterpret_cast<DWORD_PTR>(Images().handle) : 1;
}

BOOL DestroyIcon(HICON icon) { return machine::Handles().icons.Remove(icon) != nullptr; }

// A system icon's handle is made of its number, below those of the others.
HICON LoadIconA(HINSTANCE, const char *name) {
  constexpr uintptr_t SystemIconBit = 0x1000000;
  return reinterpret_cast<HICON>(SystemIconBit | reinterpret_cast<uintptr_t>(name));
}

// The images stand side by side.
BOOL ImageList_GetImageInfo(HIMAGELIST, int index, IMAGEINFO *info) {
  info->rcImage = {index * SmallIcon, 0, (index + 1) * SmallIcon, SmallIcon};
  return TRUE;
}
