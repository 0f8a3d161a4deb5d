// The base class of all receivers of commands and messages, and the message maps, in which a class names its handlers.
//
// A map is in the class's source file, between BEGIN_MESSAGE_MAP and END_MESSAGE_MAP. A message without an entry is
// looked up in the base class's map. An entry's handler is a function that calls the member with the message's
// parameters in their types, so a handler with other parameters doesn't compile.
#pragma once

#include "mfc/object.h"
#include "win32/win32_ui.h"

#include <cstdint>
#include <vector>

class CCmdTarget;

using AFX_PMSG = LRESULT (*)(CCmdTarget &target, WPARAM wParam, LPARAM lParam);

struct AFX_MSGMAP_ENTRY {
  UINT nMessage;
  int nCode; // of a WM_COMMAND, like nID, the control or command
  UINT nID;
  AFX_PMSG pfn;
};

struct AFX_MSGMAP {
  const AFX_MSGMAP *(*pfnGetBaseMap)(); // null in the last map
  std::vector<AFX_MSGMAP_ENTRY> lpEntries;

  // The entry in this map or in a base class's map; null if there is none.
  const AFX_MSGMAP_ENTRY *Find(UINT message, int code, UINT id) const;
};

#define DECLARE_MESSAGE_MAP()                                                                                          \
protected:                                                                                                             \
  static const AFX_MSGMAP *GetThisMessageMap();                                                                        \
  const AFX_MSGMAP *GetMessageMap() const override;                                                                    \
                                                                                                                       \
private:

// clang-format off
#define BEGIN_MESSAGE_MAP(className, baseName)                                                                         \
  const AFX_MSGMAP *className::GetMessageMap() const { return GetThisMessageMap(); }                                   \
  const AFX_MSGMAP *className::GetThisMessageMap() {                                                                   \
    using ThisClass [[maybe_unused]] = className;                                                                      \
    static const AFX_MSGMAP map = {&baseName::GetThisMessageMap, {

#define END_MESSAGE_MAP()                                                                                              \
    }};                                                                                                                \
    return &map;                                                                                                       \
  }
// clang-format on

#define ON_MESSAGE(message, handler)                                                                                   \
  {message, 0, 0, [](CCmdTarget &target, WPARAM wParam, LPARAM lParam) -> LRESULT {                                    \
     return static_cast<ThisClass &>(target).handler(wParam, lParam);                                                  \
   }},

#define ON_WM_PAINT()                                                                                                  \
  {WM_PAINT, 0, 0, [](CCmdTarget &target, WPARAM, LPARAM) -> LRESULT {                                                 \
     static_cast<ThisClass &>(target).OnPaint();                                                                       \
     return 0;                                                                                                         \
   }},

#define ON_WM_LBUTTONDBLCLK()                                                                                          \
  {WM_LBUTTONDBLCLK, 0, 0, [](CCmdTarget &target, WPARAM wParam, LPARAM lParam) -> LRESULT {                           \
     static_cast<ThisClass &>(target).OnLButtonDblClk(static_cast<UINT>(wParam), CPoint(lParam));                      \
     return 0;                                                                                                         \
   }},

#define ON_WM_GETDLGCODE()                                                                                             \
  {WM_GETDLGCODE, 0, 0, [](CCmdTarget &target, WPARAM, LPARAM) -> LRESULT {                                            \
     return static_cast<LRESULT>(static_cast<ThisClass &>(target).OnGetDlgCode());                                     \
   }},

#define ON_WM_SHOWWINDOW()                                                                                             \
  {WM_SHOWWINDOW, 0, 0, [](CCmdTarget &target, WPARAM wParam, LPARAM lParam) -> LRESULT {                              \
     static_cast<ThisClass &>(target).OnShowWindow(static_cast<BOOL>(wParam), static_cast<UINT>(lParam));              \
     return 0;                                                                                                         \
   }},

#define ON_WM_HELPINFO()                                                                                               \
  {WM_HELP, 0, 0, [](CCmdTarget &target, WPARAM, LPARAM lParam) -> LRESULT {                                           \
     return static_cast<ThisClass &>(target).OnHelpInfo(reinterpret_cast<HELPINFO *>(lParam));                         \
   }},

#define ON_CONTROL(code, id, handler)                                                                                  \
  {WM_COMMAND, code, id, [](CCmdTarget &target, WPARAM, LPARAM) -> LRESULT {                                           \
     static_cast<ThisClass &>(target).handler();                                                                       \
     return 0;                                                                                                         \
   }},

#define ON_BN_CLICKED(id, handler) ON_CONTROL(BN_CLICKED, id, handler)
#define ON_CBN_SELCHANGE(id, handler) ON_CONTROL(CBN_SELCHANGE, id, handler)

// Codes of commands that come from no control, in addition to the notification codes of controls: to run the command,
// and to ask first whether it is enabled.
constexpr int CN_COMMAND = 0;
constexpr int CN_UPDATE_COMMAND_UI = -1;

constexpr UINT ID_HELP = 0xE146;

// The state that a CN_UPDATE_COMMAND_UI handler sets; the extra argument of OnCmdMsg.
class CCmdUI {
public:
  UINT m_nID = 0;
  bool m_bEnabled = true;

  virtual ~CCmdUI() = default;
  virtual void Enable(BOOL enabled = TRUE) { m_bEnabled = enabled; }
};

// The handler that would get a command, for callers that only want to know it.
struct AFX_CMDHANDLERINFO {
  CCmdTarget *pTarget;
  AFX_PMSG pmf;
};

// A point in a window, from the packed form in mouse messages.
class CPoint : public POINT {
public:
  explicit CPoint(LPARAM packed)
      : POINT{static_cast<int16_t>(LOWORD(static_cast<DWORD_PTR>(packed))),
              static_cast<int16_t>(HIWORD(static_cast<DWORD_PTR>(packed)))} {}
};

class CCmdTarget : public CObject {
  DECLARE_DYNAMIC(CCmdTarget)

public:
  // Calls a command's handler in the message map, or only returns it in `pHandlerInfo`. FALSE if there is none.
  virtual BOOL OnCmdMsg(UINT nID, int nCode, void *pExtra, AFX_CMDHANDLERINFO *pHandlerInfo);

protected:
  static const AFX_MSGMAP *GetThisMessageMap();
  virtual const AFX_MSGMAP *GetMessageMap() const;
};
