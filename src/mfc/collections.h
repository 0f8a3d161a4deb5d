// The framework's growing array of strings.
#pragma once

#include "mfc/cstring.h"
#include "mfc/object.h"

#include <vector>

class CStringArray : public CObject {
  DECLARE_DYNAMIC(CStringArray)

public:
  int GetSize() const { return static_cast<int>(m_strings.size()); }
  const CString &GetAt(int index) const { return m_strings[static_cast<size_t>(index)]; }
  CString &operator[](int index) { return m_strings[static_cast<size_t>(index)]; }
  const CString &operator[](int index) const { return GetAt(index); }
  // Returns the index of the new entry.
  int Add(const CString &text);

private:
  std::vector<CString> m_strings;
};
