#include "wizard/build_stamp.h"

#include "resources/resource.h"

namespace {

// Whether a key was pressed since the last call for it. Whether it is down now doesn't count.
bool WasPressed(int key) { return (GetAsyncKeyState(key) & 1) != 0; }

void ShowBuildStamp(const CWnd &page, bool whole) {
  page.SetDlgItemText(IDC_BUILD_STAMP, whole ? "Build 2001-02-22 012345Q" : "Build 2001-02-22");
}

} // namespace

void HandleDoubleClick(const CWnd &page, const std::function<void()> &handleByDefault) {
  if (!WasPressed(VK_SHIFT)) {
    handleByDefault();
  } else if (WasPressed(VK_BACK)) {
    ShowBuildStamp(page, true);
    handleByDefault();
  } else {
    handleByDefault();
    ShowBuildStamp(page, false);
  }
}
