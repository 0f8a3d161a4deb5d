#include "mfc/gdi.h"

#include "mfc/wnd.h"

#include <utility>

IMPLEMENT_DYNAMIC(CGdiObject, CObject)
IMPLEMENT_DYNAMIC(CBrush, CGdiObject)
IMPLEMENT_DYNAMIC(CFont, CGdiObject)
IMPLEMENT_DYNAMIC(CDC, CObject)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)
IMPLEMENT_DYNAMIC(CClientDC, CDC)

BOOL CGdiObject::Attach(HGDIOBJ object) {
  DeleteObject();
  m_hObject = object;
  return object != nullptr;
}

HGDIOBJ CGdiObject::Detach() { return std::exchange(m_hObject, nullptr); }

BOOL CGdiObject::DeleteObject() { return m_hObject && ::DeleteObject(Detach()); }

int CDC::DrawText(const std::string &text, RECT *rect, UINT format) {
  return ::DrawTextA(m_hDC, text.data(), static_cast<int>(text.size()), rect, format);
}

CPaintDC::CPaintDC(CWnd *window) : m_hWnd(window->m_hWnd) { Attach(::BeginPaint(m_hWnd, &m_ps)); }

CPaintDC::~CPaintDC() { ::EndPaint(m_hWnd, &m_ps); }

CClientDC::CClientDC(CWnd *window) : CDC(::GetDC(window->m_hWnd)), m_hWnd(window->m_hWnd) {}

CClientDC::~CClientDC() { ::ReleaseDC(m_hWnd, m_hDC); }
