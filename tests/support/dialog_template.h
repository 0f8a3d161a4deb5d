// Dialog templates as a resource compiler makes them.
#pragma once

#include "win32/win32_ui.h"

#include <initializer_list>
#include <vector>

struct Control {
  int id;
  DWORD style;
  WORD atom;
  const char16_t *text;
};
constexpr WORD ButtonAtom = 0x80;
constexpr WORD EditAtom = 0x81;
constexpr WORD StaticAtom = 0x82;
constexpr WORD ComboBoxAtom = 0x85;

// A compiled template in the extended form.
class Template {
public:
  Template(DWORD style, const std::vector<Control> &controls, const char16_t *caption = u"Caption") {
    Add({1, 0xFFFF, 0, 0});
    AddStyle(style | DS_SETFONT);
    Add({static_cast<WORD>(controls.size()), 0, 0, 100, 80, 0, 0});
    AddText(caption);
    Add({9, 400, 0x8000});
    AddText(u"Face");
    for (const Control &control : controls) {
      words.resize((words.size() + 1) / 2 * 2);
      Add({0, 0});
      AddStyle(control.style | WS_CHILD | WS_VISIBLE);
      Add({4, 8, 40, 12, static_cast<WORD>(control.id), 0, 0xFFFF, control.atom});
      AddText(control.text);
      Add({0});
    }
  }

  const DLGTEMPLATE *Bytes() const { return reinterpret_cast<const DLGTEMPLATE *>(words.data()); }
  size_t Size() const { return words.size() * sizeof(WORD); }

private:
  std::vector<WORD> words;

  void Add(std::initializer_list<WORD> more) { words.insert(words.end(), more); }
  void AddText(const char16_t *text) {
    do
      words.push_back(*text);
    while (*text++ != 0);
  }
  void AddStyle(DWORD style) { Add({0, 0, LOWORD(style), HIWORD(style)}); }
};
