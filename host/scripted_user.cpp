#include "scripted_user.h"

#include "clients/file_queries.h"
#include "transcript.h"
#include "utf8.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace {

// A step found something other than it needs.
class Difference : public std::runtime_error {
public:
  Difference(const std::string &expected, const std::string &found)
      : std::runtime_error("expected " + expected + ", found " + found) {}
};

// ---- What a step needs in front of the user ----

HWND SheetOf(HWND top) { return IsSheet(top) ? top : throw Difference("a page", TopLine(top)); }

HWND BoxOf(HWND top) { return IsBox(top) ? top : throw Difference("a message box", TopLine(top)); }

Control ControlOf(HWND top, const Step &step) {
  const HWND control = GetDlgItem(CurrentPage(SheetOf(top)), step.id);
  return control != nullptr ? ReadControl(control)
                            : throw Difference("a control " + std::to_string(step.id), TopLine(top));
}

[[noreturn]] void RefuseControl(const Control &control, const std::string &expected) {
  throw Difference("a control " + expected, ControlLine(control));
}

// A control of a kind that a user can work with.
Control UsableControl(HWND top, const Step &step, bool (Control::*isOfKind)() const, const char *expected) {
  Control control = ControlOf(top, step);
  if (!control.IsUsable() || !(control.*isOfKind)())
    RefuseControl(control, expected);
  return control;
}

// ---- What a user does ----

// Types over all that stands in an edit, or in the edit part of a combo box.
void Set(HWND top, const Step &step) {
  const Control control = ControlOf(top, step);
  if (!control.IsUsable() || control.edit == nullptr)
    RefuseControl(control, "that takes a text");
  SetFocus(control.edit);
  SendMessageA(control.edit, EM_SETSEL, 0, -1);
  SendMessageA(control.edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(step.text.c_str()));
}

void Select(HWND top, const Step &step) {
  const Control list = UsableControl(top, step, &Control::IsList, "with a list");
  if (static_cast<size_t>(step.number) >= list.items.size())
    RefuseControl(list, "with an entry " + std::to_string(step.number));
  SetFocus(list.window);
  SendMessageA(list.window, CB_SETCURSEL, static_cast<WPARAM>(step.number), 0);
  SendMessageA(GetParent(list.window), WM_COMMAND, MAKEWPARAM(static_cast<unsigned>(step.id), CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(list.window));
}

void Click(HWND top, const Step &step) {
  SendMessageA(UsableControl(top, step, &Control::IsButton, "that can be clicked").window, BM_CLICK, 0, 0);
}

void Open(HWND top, const Step &step) {
  SendMessageA(UsableControl(top, step, &Control::IsList, "with a list").window, CB_SHOWDROPDOWN, TRUE, 0);
}

// Posted, so that a box that the page then shows comes up from the sheet's loop and not from within the step.
void Press(HWND sheet, const NamedButton &button) {
  PostMessageA(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button.press), 0);
}

void PressNamed(HWND top, const Step &step) {
  const NamedButton *const button = FindButton(SheetButtons, step.command);
  const HWND control = GetDlgItem(SheetOf(top), button->id);
  if (!IsUsable(control))
    throw Difference(step.command + " to be enabled", TopLine(top));
  SetFocus(control);
  Press(top, *button);
}

void Answer(HWND box, const NamedButton &button) {
  std::cout << TopLine(box) << " -> " << button.name << '\n';
  SendMessageA(GetDlgItem(box, button.id), BM_CLICK, 0, 0);
}

void AnswerNamed(HWND top, const Step &step) {
  const NamedButton *const button = FindButton(BoxButtons, step.text);
  if (!IsUsable(GetDlgItem(BoxOf(top), button->id)))
    throw Difference("a button " + step.text, TopLine(top));
  Answer(top, *button);
}

void PressKey(HWND top, const Step &step) {
  if (step.text == "shift" || step.text == "backspace")
    platform::PressKey(step.text == "shift" ? VK_SHIFT : VK_BACK);
  else
    PostKey(top, step.text == "enter" ? VK_RETURN : VK_ESCAPE);
}

void DoubleClick(HWND top, const Step &) {
  SendMessageA(CurrentPage(SheetOf(top)), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(1, 1));
}

void Show(HWND top, const Step &) {
  std::cout << TopLine(top) << '\n';
  if (IsSheet(top))
    for (const std::string &line : PageLines(top))
      std::cout << line << '\n';
}

struct ActionRow {
  const char *command;
  void (*action)(HWND top, const Step &step);
};
constexpr ActionRow Actions[] = {
    {"set", Set},         {"select", Select},      {"click", Click},       {"open", Open},
    {"next", PressNamed}, {"back", PressNamed},    {"finish", PressNamed}, {"cancel", PressNamed},
    {"help", PressNamed}, {"answer", AnswerNamed}, {"key", PressKey},      {"dblclick", DoubleClick},
    {"show", Show}};

// ---- What a user finds ----

struct FindingRow {
  const char *command;
  std::string (*find)(HWND top, const Step &step);
};
constexpr FindingRow Findings[] = {
    {"expect caption", [](HWND top, const Step &) { return QuotedText(top); }},
    {"expect text", [](HWND top, const Step &step) { return Quoted(ControlOf(top, step).text); }},
    {"expect items", [](HWND top, const Step &step) { return QuotedItems(ControlOf(top, step)); }},
    {"expect checked", [](HWND top, const Step &step) { return CheckOf(ControlOf(top, step)); }},
    {"expect control", [](HWND top, const Step &step) { return Description(ControlOf(top, step)); }},
    {"expect focus", [](HWND top, const Step &) { return FocusOf(top); }},
    {"expect buttons", [](HWND top, const Step &) { return ButtonsOf(top); }},
    {"expect message", [](HWND top, const Step &) { return MessageOf(BoxOf(top)); }},
    {"expect icon", [](HWND top, const Step &) { return IconOf(BoxOf(top)); }},
};

void Compare(const Step &step, const std::string &found) {
  if (found != step.text)
    throw Difference(step.text.empty() ? "nothing" : step.text, found.empty() ? "nothing" : found);
}

} // namespace

bool ScriptedUser::Act(HWND top) noexcept {
  try {
    ReportNewPage(top);
    if (failed)
      return CancelAll(top);
    TakeStep(top);
  } catch (const std::exception &error) {
    ReportFailure(error.what());
  }
  return true;
}

void ScriptedUser::ReportNewPage(HWND top) {
  if (!IsSheet(top) || CurrentPage(top) == page)
    return;
  page = CurrentPage(top);
  std::cout << TopLine(top) << '\n';
}

void ScriptedUser::TakeStep(HWND top) {
  if (taken == script.steps.size() || script.steps[taken].command == "expect result")
    throw Difference("the wizard to be over", TopLine(top));
  const Step &step = script.steps[taken];
  if (step.command == "pause") {
    if (IsPauseOver(step))
      ++taken;
    return;
  }
  const auto *const action = std::ranges::find(Actions, step.command, &ActionRow::command);
  const auto *const finding = std::ranges::find(Findings, step.command, &FindingRow::command);
  if (action != std::end(Actions))
    action->action(top, step);
  else
    Compare(step, finding != std::end(Findings) ? finding->find(top, step) : helpTopic);
  ++taken;
}

// Another thread waits for the line, so that the windows go on meanwhile.
bool ScriptedUser::IsPauseOver(const Step &step) {
  if (pause == nullptr) {
    std::cout << "pause " << step.text << std::endl;
    pause = std::make_shared<std::atomic<Pause>>(Pause::Lasts);
    platform::RunDetached([seen = pause] {
      std::string line;
      *seen = std::getline(std::cin, line) ? Pause::IsOver : Pause::HasNoEnd;
    });
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  const Pause state = *pause;
  if (state != Pause::Lasts)
    pause = nullptr;
  if (state == Pause::HasNoEnd)
    throw Difference("a line on the standard input", "its end");
  return state == Pause::IsOver;
}

// Cancels what is in front, and says yes if asked. Gives up when windows stay open all the same.
bool ScriptedUser::CancelAll(HWND top) {
  constexpr int Attempts = 20;
  if (++cancelled > Attempts)
    return false;
  if (IsSheet(top)) {
    Press(top, *FindButton(SheetButtons, "cancel"));
    return true;
  }
  for (const char *name : {"yes", "cancel", "ok"})
    if (const NamedButton *const button = FindButton(BoxButtons, name); IsUsable(GetDlgItem(top, button->id))) {
      Answer(top, *button);
      return true;
    }
  return false;
}

bool ScriptedUser::SeeHelp(const char *file, ULONG_PTR topic) noexcept {
  helpTopic = std::to_string(topic);
  std::cout << "help " << Quoted(ToUtf8(file)) << " topic=" << helpTopic << '\n';
  return PathExists(file) != 0;
}

bool ScriptedUser::CheckResult(int32_t result) {
  std::cout << "result " << result << '\n';
  if (failed)
    return false;
  try {
    const Step *const next = taken < script.steps.size() ? &script.steps[taken] : nullptr;
    if (next != nullptr && next->command == "expect result")
      Compare(*next, std::to_string(result));
    else if (next != nullptr)
      throw Difference("to do \"" + next->command + '"', "the wizard over");
    else if (result == 0)
      throw Difference("a wizard", "that none came up");
  } catch (const Difference &difference) {
    ReportFailure(difference.what());
  }
  return !failed;
}

void ScriptedUser::ReportFailure(const std::string &difference) {
  const size_t line = taken < script.steps.size() ? script.steps[taken].line : std::max<size_t>(script.lines, 1);
  failed = true;
  std::cout.flush();
  std::cerr << script.path << ':' << line << ": " << difference << '\n';
}
