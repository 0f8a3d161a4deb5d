// The pages of a property sheet, as long as it runs.
#pragma once

#include "win32/linux/windows/dialogs.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace machine {

class PropertyPage {
public:
  // Null for a record that is none and for a page whose template isn't there.
  static std::shared_ptr<PropertyPage> Make(const PROPSHEETPAGEA *record);

  PropertyPage(const PropertyPage &) = delete;
  PropertyPage &operator=(const PropertyPage &) = delete;

  // Makes the dialog if it isn't there; false if it can't be had.
  bool MakeWindow(HWND sheet);
  HWND Window() const { return window; } // null before

  const DialogTemplate &Template() const { return dialog; }
  const std::string &Title() const { return title; }
  bool HasHelp() const { return (Record().dwFlags & PSP_HASHELP) != 0; }
  // The number of its template, 0 for one that has none.
  LRESULT Id() const;

private:
  PropertyPage(const PROPSHEETPAGEA &given, DialogTemplate read);

  PROPSHEETPAGEA &Record() { return *reinterpret_cast<PROPSHEETPAGEA *>(record.data()); }
  const PROPSHEETPAGEA &Record() const { return *reinterpret_cast<const PROPSHEETPAGEA *>(record.data()); }

  std::vector<std::byte> record; // whose size is told in it: the caller may keep something of his behind it
  std::string templateName;
  std::string title;
  DialogTemplate dialog;
  HWND window = nullptr;
};

} // namespace machine
