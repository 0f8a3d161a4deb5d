// The list in which the user chooses a client. It is owner-drawn; each entry has the small icon of the client's
// program.
#pragma once

#include "mfc/afxwin.h"

#include <cstdint>
#include <string>

class ClientComboBox : public CComboBox {
public:
  ~ClientComboBox() override = default;

  // Adds an entry at the end of the list. `path` is the client's program and identifies the entry, `name` is the text
  // shown. Always 1.
  int32_t AddClient(const std::string &path, const std::string &name);

  // The path of the selected entry. 0 without a selection, with `out` unchanged.
  int32_t GetSelectedPath(std::string &out) const;

  void DrawItem(DRAWITEMSTRUCT *draw) override;
  void MeasureItem(MEASUREITEMSTRUCT *measure) override;
  int CompareItem(COMPAREITEMSTRUCT *compare) override;
  void DeleteItem(DELETEITEMSTRUCT *deleted) override;

private:
  struct ClientItem;

  // The item of an entry, null if there is none.
  ClientItem *ItemAt(UINT index) const;

  static HIMAGELIST GetImageList();
  static int32_t GetIconSize(SIZE &size);
  static int32_t GetIconIndex(const std::string &path, int32_t &index);
};
