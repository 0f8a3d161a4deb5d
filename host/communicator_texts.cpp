#include "communicator_texts.h"

#include "usage.h"

#include <iostream>

namespace {

struct Judgement {
  const char *breaks; // what breaks the file, null if nothing does
  bool changes;       // whether the text is read back as another
};

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }

Judgement Judge(const std::string &text) {
  bool escapes = false; // the byte to come
  bool changes = false;
  for (const char byte : text) {
    // Also behind a backslash: Communicator could read such a quote, but a reader that only counts quotes couldn't.
    if (byte == '"')
      return {"has a double quote", true};
    if (IsControl(byte))
      return {"has a control character", true};
    escapes = byte == '\\' && !escapes;
    changes = changes || escapes;
  }
  return {escapes ? "ends in the byte of a backslash, as some Japanese characters do" : nullptr, changes};
}

} // namespace

void CheckCommunicatorTexts(const std::vector<NamedText> &texts, const std::string &where) {
  for (const auto &[name, text] : texts)
    if (const char *const breaks = Judge(text).breaks; breaks != nullptr)
      throw UsageError(where + name + ' ' + breaks + ": Communicator couldn't read its preferences from there on");
  for (const auto &[name, text] : texts)
    if (Judge(text).changes)
      std::cerr << "acctkit: warning: " << where << name
                << " has the byte of a backslash, as some Japanese characters do: Communicator will show it garbled\n";
}
