// Which texts Communicator's preference file can hold. Its lines have the form `user_pref("name", "text");`, and
// nothing in the text is escaped. But Communicator reads the text as a string of JavaScript, byte by byte: a quote ends
// it, and the byte of a backslash, which in code page 932 is also the last one of 表 and 能, changes what the byte
// behind it means.
#pragma once

#include <string>
#include <vector>

struct NamedText {
  const char *name; // of the argument or field that it came with
  std::string text; // in the system's code page
};

// Throws UsageError for a text that would make the rest of the file unreadable to Communicator; `where`, if any, begins
// its message. Warns on the standard error of each text that Communicator would read as another.
void CheckCommunicatorTexts(const std::vector<NamedText> &texts, const std::string &where = "");
