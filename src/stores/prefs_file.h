// prefs.js of a Netscape profile: load the text, find, read, remove and add preference lines in memory, save it.
//
// There is no parser. A preference is found by a byte search for a needle (usually its key without quotes) and changed
// by removing its line and appending a new one; all other lines stay, byte for byte. A line has the form
//   user_pref("key", value);
// and ends in LF; nothing between quotes is escaped. All texts are bytes in the file's code page.
#pragma once

#include "win32/win32.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

constexpr size_t PrefsCapacity = 102400;
// Size of one value or list item in a client's own buffers, terminator included.
constexpr int32_t PrefValueSize = 260;

// The working copy of one prefs.js during one adapter operation. It is zero-terminated, and all bytes after the
// terminator are zero.
struct PrefsText {
  char text[PrefsCapacity + 1];
  size_t length;
  bool read; // whether the file could be read
  // Whether `text` is all that the file held, plus every change since. If it isn't (the file couldn't be read, was too
  // large or held a zero byte, or there was no room for a line), SavePrefsText doesn't write the file.
  bool whole;

  PrefsText();
};

// Reads the file at `path`, makes an empty one if there is none, and ends the text in LF if it isn't empty. If the file
// can't be opened or read, the text is empty; if it has more than 102,400 bytes, the text has the first 102,400.
void LoadPrefsText(const char *path, PrefsText &prefs);

// Replaces the file at `path` with the text; does nothing if the text isn't whole.
void SavePrefsText(const char *path, const PrefsText &prefs, DWORD access = GENERIC_READ | GENERIC_WRITE);

// 1 if the text contains the needle, else 0.
int32_t HasPrefText(const char *needle, const PrefsText &prefs);

// Removes the line of the first occurrence of the needle, and the LF before it; if that is the first line of the text,
// an empty line remains. 1 if a line was removed; 0 if the needle isn't found, or is more than 1,024 bytes after the
// start of its line: such a line is no preference of ours. At exactly 1,024 bytes the LF before it stays, and so an
// empty line.
int32_t RemovePrefLine(const char *needle, PrefsText &prefs);

// The same, but copies the line from the needle on (without its LF) to `keep`. If that doesn't fit into `keepSize`
// bytes with a terminator, nothing is removed and the result is 0.
int32_t TakePrefLine(const char *needle, PrefsText &prefs, char *keep, int32_t keepSize);

// Adds a complete line, which ends in LF, at the end of the text. Without room for the line the text stays unchanged,
// and is no longer whole.
void AppendPrefLine(PrefsText &prefs, const char *line);

// Inserts a complete line right after the line of the first occurrence of the needle. 0 if the needle isn't found.
// Without room it does the same as AppendPrefLine.
int32_t InsertPrefLine(const char *needle, PrefsText &prefs, const char *line);

// The quoted value after the first occurrence of the needle, of any length. Only quotes are counted: the next one
// closes the key, the second one opens the value. Nothing if there is no such value.
std::optional<std::string> FindPrefValue(const std::string &needle, const PrefsText &prefs);

// The items of a comma-separated list, at least one.
std::vector<std::string> ListItems(const std::string &list);

// The same with buffers, for callers that know the longest value. Adapters use the functions above, because here a
// value that doesn't fit looks like a missing one.
//
// Copies the value to `out`, which is zeroed first. 1 if a value was copied; 0 if there is none or it doesn't fit into
// `size` bytes with its terminator.
int32_t ReadPrefValue(const char *needle, const PrefsText &prefs, char *out, int32_t size);
// The number of items, and the item at an index from 0. GetListItem returns 0 with `out` unchanged for an index after
// the last item, and 0 with an empty `out` for an item that doesn't fit.
int32_t CountListItems(const char *list);
int32_t GetListItem(const char *list, int32_t index, char *out, int32_t size);

// Converts a value from the system's code page to UTF-8. 0, with `out` empty, if the value or the result has more than
// 259 bytes.
int32_t ToUtf8Value(const char *value, char (&out)[PrefValueSize]);
