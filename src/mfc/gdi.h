// Drawing objects and device contexts. An object deletes its handle. The classes that take a context from a window
// release it; a plain CDC owns nothing.
#pragma once

#include "mfc/object.h"
#include "win32/win32_ui.h"

#include <string>

class CWnd;

class CGdiObject : public CObject {
  DECLARE_DYNAMIC(CGdiObject)

public:
  HGDIOBJ m_hObject = nullptr;

  CGdiObject() = default;
  ~CGdiObject() override { DeleteObject(); }

  operator HGDIOBJ() const { return m_hObject; }
  // FALSE for a null handle.
  BOOL Attach(HGDIOBJ object);
  HGDIOBJ Detach();
  BOOL DeleteObject();
};

class CBrush : public CGdiObject {
  DECLARE_DYNAMIC(CBrush)

public:
  CBrush() = default;
  explicit CBrush(COLORREF colour) { Attach(CreateSolidBrush(colour)); }
};

class CFont : public CGdiObject {
  DECLARE_DYNAMIC(CFont)
};

class CDC : public CObject {
  DECLARE_DYNAMIC(CDC)

public:
  HDC m_hDC = nullptr;

  CDC() = default;
  explicit CDC(HDC context) : m_hDC(context) {}

  void Attach(HDC context) { m_hDC = context; }

  // Returns the object that was selected before.
  HGDIOBJ SelectObject(HGDIOBJ object) { return ::SelectObject(m_hDC, object); }
  int SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }
  COLORREF SetTextColor(COLORREF colour) { return ::SetTextColor(m_hDC, colour); }
  BOOL GetTextMetrics(TEXTMETRICA *metrics) const { return ::GetTextMetricsA(m_hDC, metrics); }
  int DrawText(const std::string &text, RECT *rect, UINT format);
  BOOL PatBlt(int x, int y, int width, int height, DWORD operation) {
    return ::PatBlt(m_hDC, x, y, width, height, operation);
  }
};

// Begins and ends the painting of a window; only for its WM_PAINT handler.
class CPaintDC : public CDC {
  DECLARE_DYNAMIC(CPaintDC)

public:
  PAINTSTRUCT m_ps{};

  explicit CPaintDC(CWnd *window);
  ~CPaintDC() override;

private:
  HWND m_hWnd;
};

// A window's context outside of painting.
class CClientDC : public CDC {
  DECLARE_DYNAMIC(CClientDC)

public:
  explicit CClientDC(CWnd *window);
  ~CClientDC() override;

private:
  HWND m_hWnd;
};
