#include "win32/linux/windows/dialog_template.h"

#include "win32/linux/machine/byte_reader.h"
#include "win32/linux/text/code_page.h"

namespace machine {

namespace {

// The first number of a template of this form.
constexpr DWORD Extended = 0xFFFF0001;
// Whether it names a font.
constexpr DWORD DS_SETFONT = 0x0040;

constexpr struct {
  WORD atom;
  const char *name;
} PredefinedClasses[] = {{0x80, "Button"}, {0x81, "Edit"}, {0x82, "Static"}, {0x85, "ComboBox"}};

std::string NextText(Reader &reader, char16_t first) {
  std::u16string wide;
  for (char16_t unit = first; unit != 0; unit = reader.Next<char16_t>())
    wide += unit;
  return text::FromWide(wide);
}

// A text, or a number that `name` tells the text of.
std::string NextTextOrNumber(Reader &reader, std::string (*name)(WORD)) {
  constexpr char16_t NumberFollows = 0xFFFF;
  const auto first = reader.Next<char16_t>();
  return first == NumberFollows ? name(reader.Next<WORD>()) : NextText(reader, first);
}

std::string NumberText(WORD number) { return std::string("#").append(std::to_string(number)); }

std::string ClassOfAtom(WORD atom) {
  for (const auto &known : PredefinedClasses)
    if (known.atom == atom)
      return known.name;
  return NumberText(atom);
}

void ReadStyle(Reader &reader, TemplateWindow &window) {
  reader.Skip(2 * sizeof(DWORD)); // the help id and the extended style
  window.style = reader.Next<DWORD>();
}

void ReadBounds(Reader &reader, TemplateWindow &window) {
  for (int *const number : {&window.x, &window.y, &window.width, &window.height})
    *number = reader.Next<int16_t>();
}

// The size counts; weight, slant, character set and face make no difference here.
int ReadFont(Reader &reader) {
  const int pointSize = reader.Next<WORD>();
  reader.Skip(2 * sizeof(WORD));
  NextText(reader, reader.Next<char16_t>());
  return pointSize;
}

TemplateWindow ReadControl(Reader &reader) {
  TemplateWindow control;
  reader.Align();
  ReadStyle(reader, control);
  ReadBounds(reader, control);
  control.id = reader.Next<int32_t>();
  control.className = NextTextOrNumber(reader, ClassOfAtom);
  control.text = NextTextOrNumber(reader, NumberText);
  reader.Skip(reader.Next<WORD>()); // what the control would get at its creation
  return control;
}

} // namespace

std::optional<DialogTemplate> ReadTemplate(std::string_view bytes) {
  Reader reader(bytes.data(), bytes.size());
  if (reader.Next<DWORD>() != Extended)
    return std::nullopt;
  DialogTemplate dialog;
  ReadStyle(reader, dialog.window);
  const auto count = reader.Next<WORD>();
  ReadBounds(reader, dialog.window);
  NextTextOrNumber(reader, NumberText); // the menu
  NextTextOrNumber(reader, NumberText); // the class
  dialog.window.text = NextText(reader, reader.Next<char16_t>());
  if ((dialog.window.style & DS_SETFONT) != 0)
    dialog.pointSize = ReadFont(reader);
  for (WORD index = 0; index < count && !reader.Failed(); ++index)
    dialog.controls.push_back(ReadControl(reader));
  return reader.Failed() ? std::nullopt : std::optional(std::move(dialog));
}

} // namespace machine
