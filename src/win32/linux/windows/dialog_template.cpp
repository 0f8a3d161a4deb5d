// Reader of dialog templates.
#include "win32/linux/windows/dialogs.h"

#include "win32/linux/machine/byte_reader.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/windows/resources.h"

namespace {

using machine::DialogTemplate;
using machine::Reader;
using machine::TemplateWindow;

// A template that lies in no resource of ours has no size of its own; this is more than any has.
constexpr size_t LargestTemplate = 0x100000;

struct PredefinedClass {
  WORD atom;
  const char *name;
};
constexpr PredefinedClass PredefinedClasses[] = {{0x80, "Button"},  {0x81, "Edit"},      {0x82, "Static"},
                                                 {0x83, "ListBox"}, {0x84, "ScrollBar"}, {0x85, "ComboBox"}};

std::string NextText(Reader &reader, char16_t first) {
  std::u16string wide;
  for (char16_t unit = first; unit != 0; unit = reader.Next<char16_t>())
    wide += unit;
  return text::FromWide(wide);
}
std::string NextText(Reader &reader) { return NextText(reader, reader.Next<char16_t>()); }

// A text, or a number that `name` tells the text of.
std::string NextTextOrNumber(Reader &reader, std::string (*name)(WORD)) {
  constexpr char16_t NumberFollows = 0xFFFF;
  const auto first = reader.Next<char16_t>();
  return first == NumberFollows ? name(reader.Next<WORD>()) : NextText(reader, first);
}

std::string NumberText(WORD number) { return std::string("#").append(std::to_string(number)); }

std::string ClassOfAtom(WORD atom) {
  for (const PredefinedClass &known : PredefinedClasses)
    if (known.atom == atom)
      return known.name;
  return NumberText(atom);
}

void ReadStyles(Reader &reader, bool extended, TemplateWindow &window) {
  if (extended)
    reader.Next<DWORD>(); // the help id
  const auto first = reader.Next<DWORD>();
  const auto second = reader.Next<DWORD>();
  window.style = extended ? second : first;
  window.exStyle = extended ? first : second;
}

void ReadPlace(Reader &reader, TemplateWindow &window) {
  for (int16_t *const number : {&window.x, &window.y, &window.width, &window.height})
    *number = reader.Next<int16_t>();
}

void ReadFont(Reader &reader, bool extended, DialogTemplate &dialog) {
  dialog.pointSize = reader.Next<WORD>();
  if (extended) {
    dialog.weight = reader.Next<WORD>();
    dialog.italic = reader.Next<BYTE>() != 0;
    dialog.charSet = reader.Next<BYTE>();
  }
  dialog.face = NextText(reader);
}

TemplateWindow ReadControl(Reader &reader, bool extended) {
  TemplateWindow control;
  reader.Align();
  ReadStyles(reader, extended, control);
  ReadPlace(reader, control);
  control.id = extended ? reader.Next<DWORD>() : reader.Next<WORD>();
  control.className = NextTextOrNumber(reader, ClassOfAtom);
  control.text = NextTextOrNumber(reader, NumberText);
  reader.Skip(reader.Next<WORD>()); // what the control would get at its creation
  return control;
}

// The new form begins with the version 1 and a number that can't be the upper half of a style.
bool IsExtended(Reader reader) { return reader.Next<DWORD>() == 0xFFFF0001; }

} // namespace

std::optional<DialogTemplate> machine::ReadTemplate(const DLGTEMPLATE *bytes) {
  if (bytes == nullptr)
    return std::nullopt;
  const size_t known = BytesOfResourceAt(bytes);
  return ReadTemplate({reinterpret_cast<const char *>(bytes), known != 0 ? known : LargestTemplate});
}

std::optional<DialogTemplate> machine::ReadTemplate(std::string_view bytes) {
  Reader reader(bytes.data(), bytes.size());
  const bool extended = IsExtended(reader);
  if (extended)
    reader.Next<DWORD>();

  DialogTemplate dialog;
  ReadStyles(reader, extended, dialog.window);
  const auto count = reader.Next<WORD>();
  ReadPlace(reader, dialog.window);
  NextTextOrNumber(reader, NumberText); // the menu
  dialog.window.className = NextTextOrNumber(reader, ClassOfAtom);
  dialog.window.text = NextText(reader);
  if ((dialog.window.style & DS_SETFONT) != 0)
    ReadFont(reader, extended, dialog);
  for (WORD index = 0; index < count && !reader.Failed(); ++index)
    dialog.controls.push_back(ReadControl(reader, extended));
  return reader.Failed() ? std::nullopt : std::optional(std::move(dialog));
}
