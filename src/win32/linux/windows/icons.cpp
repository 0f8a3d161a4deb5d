// Icons of files, the system's own, and the system image list, which has a small one of every file that was asked for.
#include "win32/linux/windows/icons.h"

#include "win32/linux/machine/handle_table.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/windows/drawing.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>

namespace {

constexpr int SmallIcon = 16;

struct Icon {
  std::string file;
};

machine::HandleTable<HICON, Icon> &Icons() {
  static machine::HandleTable<HICON, Icon> icons{0x3000000};
  return icons;
}

// The first image, without a file, is there from the start.
class SystemImages {
public:
  const HIMAGELIST handle = reinterpret_cast<HIMAGELIST>(uintptr_t{0x3F00000});

  int IndexOf(const std::filesystem::path &file) {
    const std::lock_guard lock(guard);
    return indices.emplace(file, static_cast<int>(indices.size()) + 1).first->second;
  }

  bool Has(HIMAGELIST list, int index) {
    const std::lock_guard lock(guard);
    return list == handle && index >= 0 && index <= static_cast<int>(indices.size());
  }

private:
  std::mutex guard;
  std::map<std::filesystem::path, int> indices;
};

SystemImages &Images() {
  static SystemImages images;
  return images;
}

// A system icon's handle is made of its number, below those of the others.
constexpr uintptr_t SystemIconBit = 0x1000000;
constexpr uintptr_t FirstSystemIcon = 32512;
constexpr uintptr_t LastSystemIcon = 32517;

bool IsSystemIcon(uintptr_t number) { return number >= FirstSystemIcon && number <= LastSystemIcon; }

} // namespace

namespace machine {

std::string IconFile(HICON icon) {
  const auto found = Icons().Find(icon);
  return found ? found->file : "";
}

size_t LiveIcons() { return Icons().Size(); }

} // namespace machine

DWORD_PTR SHGetFileInfoA(const char *path, DWORD, SHFILEINFOA *info, UINT, UINT flags) {
  const machine::DiskPath found = machine::FindOnDisk(path);
  if (!found.exists)
    return 0;
  if ((flags & (SHGFI_ICON | SHGFI_SYSICONINDEX)) != 0)
    info->iIcon = Images().IndexOf(found.path);
  if ((flags & SHGFI_ICON) != 0)
    info->hIcon = Icons().Add(std::make_shared<Icon>(Icon{path}));
  return (flags & SHGFI_SYSICONINDEX) != 0 ? reinterpret_cast<DWORD_PTR>(Images().handle) : 1;
}

BOOL DestroyIcon(HICON icon) {
  return IsSystemIcon(reinterpret_cast<uintptr_t>(icon) & ~SystemIconBit) || Icons().Remove(icon) != nullptr;
}

HICON LoadIconA(HINSTANCE instance, const char *name) {
  const auto number = reinterpret_cast<uintptr_t>(name);
  return instance == nullptr && IsSystemIcon(number) ? reinterpret_cast<HICON>(SystemIconBit | number) : nullptr;
}

BOOL ImageList_GetImageInfo(HIMAGELIST list, int index, IMAGEINFO *info) {
  if (!Images().Has(list, index))
    return FALSE;
  const int left = index * SmallIcon; // the images stand side by side
  *info = {{left, 0, left + SmallIcon, SmallIcon}};
  return TRUE;
}

BOOL ImageList_Draw(HIMAGELIST list, int index, HDC context, int x, int y, UINT style) {
  return Images().Has(list, index) && machine::Draw(context, {.kind = machine::Drawn::Kind::Image,
                                                              .place = {x, y, x + SmallIcon, y + SmallIcon},
                                                              .image = index,
                                                              .style = style});
}
