#include "mfc/collections.h"

IMPLEMENT_DYNAMIC(CStringArray, CObject)

int CStringArray::Add(const CString &text) {
  m_strings.push_back(text);
  return GetSize() - 1;
}
