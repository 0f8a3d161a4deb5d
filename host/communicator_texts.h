// What Communicator's preference file can hold. Its lines read user_pref("name", "text"); and nothing in a text is
// escaped when it is written, but Communicator reads it back as a string of JavaScript, byte by byte:
// a quote ends it, and a backslash's byte, which in code page 932 also ends 表 and 能, changes the byte behind it.
#pragma once

#include <string>
#include <vector>

struct NamedText {
  const char *name; // of the argument or field that it came with
  std::string text; // in the system's code page
};

// Throws UsageError for a text that would cost Communicator the lines behind it; `where`, if any, begins its message.
// Warns on the standard error of each text that Communicator would read back as another.
void CheckCommunicatorTexts(const std::vector<NamedText> &texts, const std::string &where = "");
