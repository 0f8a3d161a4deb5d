#include "wizard_script.h"

#include "usage.h"
#include "utf8.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

namespace {

// ---- The commands ----

enum class Argument {
  Id,
  Number,
  Typed, // a text for a control
  Text,  // a text that is expected
  Items, // several of them
  Rest,  // the rest of the line, as it is
  Word   // one of the command's words
};

struct Command {
  std::string_view name;
  std::vector<Argument> arguments;
  std::vector<std::string_view> words = {};
};

const Command Commands[] = {
    {"set", {Argument::Id, Argument::Typed}},
    {"select", {Argument::Id, Argument::Number}},
    {"click", {Argument::Id}},
    {"open", {Argument::Id}},
    {"next", {}},
    {"back", {}},
    {"finish", {}},
    {"cancel", {}},
    {"help", {}},
    {"answer", {Argument::Word}, {"ok", "cancel", "yes", "no"}},
    {"key", {Argument::Word}, {"shift", "backspace", "enter", "escape"}},
    {"dblclick", {}},
    {"show", {}},
    {"pause", {Argument::Rest}},
    {"expect caption", {Argument::Text}},
    {"expect text", {Argument::Id, Argument::Text}},
    {"expect items", {Argument::Id, Argument::Items}},
    {"expect checked", {Argument::Id, Argument::Word}, {"yes", "no"}},
    {"expect control", {Argument::Id, Argument::Rest}},
    {"expect focus", {Argument::Rest}},
    {"expect buttons", {Argument::Rest}},
    {"expect message", {Argument::Text}},
    {"expect icon", {Argument::Word}, {"stop", "question", "exclamation", "information", "none"}},
    {"expect help", {Argument::Number}},
    {"expect result", {Argument::Word}, {"0", "1"}},
};

struct Escape {
  char letter;
  char character;
};
constexpr Escape Escapes[] = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'\\', '\\'}, {'"', '"'}};

// ---- A line ----

bool IsBlank(char character) { return character == ' ' || character == '\t'; }

// What stands before the comment, which begins the line or follows a blank, and is not within quotes.
std::string_view WithoutComment(std::string_view line) {
  bool quoted = false;
  char before = ' ';
  for (size_t index = 0; index < line.size(); ++index) {
    const char character = line[index];
    if (quoted && character == '\\')
      ++index;
    else if (character == '"' && (quoted || IsBlank(before) || before == ','))
      quoted = !quoted;
    else if (character == '#' && !quoted && IsBlank(before))
      return line.substr(0, index);
    before = character;
  }
  return line;
}

// Takes the arguments from a line, one after the other.
class LineReader {
public:
  explicit LineReader(std::string_view line) : left(WithoutComment(line)) {
    while (!left.empty() && IsBlank(left.back()))
      left.remove_suffix(1);
    SkipBlanks();
  }

  bool IsAtEnd() const { return left.empty(); }

  std::string Word() { return std::string(Take(std::ranges::find_if(left, IsBlank))); }

  int Number(int least, int most) {
    const std::string word = Word();
    int number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size() || number < least || number > most)
      throw UsageError(Quoted(word) + " is no number from " + std::to_string(least) + " to " + std::to_string(most));
    return number;
  }

  std::string Rest() { return std::string(Take(left.end())); }

  // A text is the rest of the line, or stands in quotes.
  std::string Text() {
    std::string text = !left.empty() && left.front() == '"' ? InQuotes() : Unescaped(Take(left.end()));
    if (!FromUtf8(text))
      throw UsageError("code page 932 can't hold the text " + Quoted(text));
    return text;
  }

  // Texts with blanks or commas between them.
  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    while (!left.empty()) {
      const auto isBetween = [](char character) { return IsBlank(character) || character == ','; };
      texts.push_back(left.front() == '"' ? InQuotes() : Unescaped(Take(std::ranges::find_if(left, isBetween))));
      while (!left.empty() && isBetween(left.front()))
        left.remove_prefix(1);
    }
    return texts;
  }

private:
  void SkipBlanks() {
    while (!left.empty() && IsBlank(left.front()))
      left.remove_prefix(1);
  }

  std::string_view Take(std::string_view::const_iterator end) {
    const auto length = static_cast<size_t>(end - left.begin());
    const std::string_view taken = left.substr(0, length);
    left.remove_prefix(length);
    SkipBlanks();
    return taken;
  }

  std::string InQuotes() {
    left.remove_prefix(1);
    size_t end = 0;
    while (end < left.size() && left[end] != '"')
      end += left[end] == '\\' ? 2 : 1;
    if (end >= left.size())
      throw UsageError("the quotes are not closed");
    std::string text = Unescaped(left.substr(0, end));
    left.remove_prefix(end + 1);
    SkipBlanks();
    return text;
  }

  static std::string Unescaped(std::string_view escaped) {
    std::string text;
    for (size_t index = 0; index < escaped.size(); ++index) {
      if (escaped[index] != '\\') {
        text += escaped[index];
        continue;
      }
      const char letter = ++index < escaped.size() ? escaped[index] : '\0';
      const auto *const known = std::ranges::find(Escapes, letter, &Escape::letter);
      if (known == std::end(Escapes))
        throw UsageError("a backslash stands before n, r, t, a quote or a backslash");
      text += known->character;
    }
    return text;
  }

  std::string_view left;
};

std::string WordOf(const Command &command, LineReader &line) {
  std::string word = line.Word();
  if (std::ranges::find(command.words, word) == command.words.end())
    throw UsageError(std::string(command.name) + " doesn't know " + Quoted(word));
  return word;
}

void ReadArgument(Argument argument, const Command &command, LineReader &line, Step &step) {
  constexpr int MostEntries = 32767;
  constexpr int LastId = 65534;
  switch (argument) {
  case Argument::Id:
    step.id = line.Number(1, LastId);
    break;
  case Argument::Number:
    step.number = line.Number(0, MostEntries);
    step.text = std::to_string(step.number);
    break;
  case Argument::Typed:
    step.text = *FromUtf8(line.Text());
    break;
  case Argument::Text:
    step.text = Quoted(line.Text());
    break;
  case Argument::Items: {
    std::vector<std::string> items = line.Texts();
    std::ranges::transform(items, items.begin(), Quoted);
    step.text = Listed(items);
    break;
  }
  case Argument::Rest:
    step.text = line.Rest();
    break;
  case Argument::Word:
    step.text = WordOf(command, line);
    break;
  }
}

Step ReadStep(LineReader line) {
  std::string name = line.Word();
  if (name == "expect")
    name += ' ' + line.Word();
  const auto *const command = std::ranges::find(Commands, name, &Command::name);
  if (command == std::end(Commands))
    throw UsageError("there is no command " + Quoted(name));
  Step step;
  step.command = name;
  for (const Argument argument : command->arguments)
    ReadArgument(argument, *command, line, step);
  if (!line.IsAtEnd())
    throw UsageError("something stands behind the end: " + Quoted(line.Rest()));
  return step;
}

} // namespace

WizardScript ReadWizardScript(const std::string &path) {
  WizardScript script{path, {}, 0};
  ForEachLine(path, [&script](const std::string &line, size_t number) {
    script.lines = number;
    const LineReader reader(line);
    if (reader.IsAtEnd())
      return;
    if (!script.steps.empty() && script.steps.back().command == "expect result")
      throw UsageError("the result comes last of all");
    script.steps.push_back(ReadStep(reader));
    script.steps.back().line = number;
  });
  return script;
}

std::string Quoted(const std::string &utf8) {
  constexpr const char *Digits = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char character : utf8) {
    const auto *const escape = std::ranges::find(Escapes, character, &Escape::character);
    const auto byte = static_cast<unsigned char>(character);
    if (escape != std::end(Escapes))
      quoted.append(1, '\\').append(1, escape->letter);
    else if (byte < ' ' || byte == 0x7F)
      quoted.append("\\x").append(1, Digits[byte >> 4]).append(1, Digits[byte & 0xF]);
    else
      quoted += character;
  }
  return quoted + '"';
}

std::string Listed(const std::vector<std::string> &quoted) {
  std::string list;
  for (const std::string &text : quoted)
    list.append(list.empty() ? "" : ", ").append(text);
  return '[' + list + ']';
}
