#include "mfc/cmd_target.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

const AFX_MSGMAP_ENTRY *AFX_MSGMAP::Find(UINT message, int code, UINT id) const {
  const auto matches = [&](const AFX_MSGMAP_ENTRY &entry) {
    return entry.nMessage == message && entry.nCode == code && entry.nID == id;
  };
  for (const AFX_MSGMAP *map = this; map; map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr)
    if (const auto entry = std::ranges::find_if(map->lpEntries, matches); entry != map->lpEntries.end())
      return &*entry;
  return nullptr;
}

const AFX_MSGMAP *CCmdTarget::GetThisMessageMap() {
  static const AFX_MSGMAP map = {nullptr, {}};
  return &map;
}

const AFX_MSGMAP *CCmdTarget::GetMessageMap() const { return GetThisMessageMap(); }

BOOL CCmdTarget::OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo) {
  const AFX_MSGMAP_ENTRY *entry = GetMessageMap()->Find(WM_COMMAND, nCode, nID);
  if (!entry)
    return FALSE;
  if (pHandlerInfo)
    *pHandlerInfo = {this, entry->pfn};
  else
    entry->pfn(*this, nID, reinterpret_cast<LPARAM>(pExtra));
  return TRUE;
}
