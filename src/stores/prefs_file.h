// prefs.js of a Netscape profile: load the text, find, read, remove and add preference lines in memory, save it.
//
// There is no parser. A preference is found by a byte search for a needle (as a rule its key without quotes) and
// changed by removing its line and appending a new one; what nobody touches stays as it is, byte for byte. A line reads
//   user_pref("key", value);
// and ends in LF; nothing between quotes is escaped. All texts are bytes in whatever code page the file is.
#pragma once

#include "win32/win32.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

constexpr size_t PrefsCapacity = 102400;
// Room for one value or list item in a client's own buffers, terminator included.
constexpr int32_t PrefValueSize = 260;

// The working copy of one prefs.js, alive within one adapter operation: zero-terminated, zero behind the terminator.
struct PrefsText {
  char text[PrefsCapacity + 1];
  size_t length;
  bool read; // whether the file could be read
  // Whether `text` is all that the file held plus every change made since. Once it isn't (the file couldn't be read,
  // was too large, held a zero byte, or a line found no room), SavePrefsText leaves the file alone.
  bool whole;

  PrefsText();
};

// Reads the file at `path`, creating an empty one if there is none, and ends the text in LF if it isn't empty. A file
// that can't be opened or read gives an empty text, one of more than 102,400 bytes the bytes up to there.
void LoadPrefsText(const char *path, PrefsText &prefs);

// Replaces the file at `path` by the text, unless the text isn't whole.
void SavePrefsText(const char *path, const PrefsText &prefs, DWORD access = GENERIC_READ | GENERIC_WRITE);

// 1 if the needle stands anywhere in the text, else 0.
int32_t HasPrefText(const char *needle, const PrefsText &prefs);

// Removes the line of the first occurrence of the needle with the LF ahead of it; the first line of the text leaves an
// empty line. 1 if a line was removed, 0 if the needle isn't there, or stands more than 1,024 bytes behind the start of
// its line: such a line is no preference of ours. At just 1,024 bytes the LF ahead stays, and so an empty line.
int32_t RemovePrefLine(const char *needle, PrefsText &prefs);

// The same, with the line from the needle on (without its LF) copied to `keep`. 0, with nothing removed, if that
// doesn't fit into `keepSize` bytes with a terminator.
int32_t TakePrefLine(const char *needle, PrefsText &prefs, char *keep, int32_t keepSize);

// Adds a ready-made line, which ends in LF, behind the last byte of the text. A line without room leaves the text as it
// is, and no longer whole.
void AppendPrefLine(PrefsText &prefs, const char *line);

// Puts a ready-made line right behind the line of the first occurrence of the needle. 0 if the needle isn't there.
// Without room the text is left as by AppendPrefLine.
int32_t InsertPrefLine(const char *needle, PrefsText &prefs, const char *line);

// The quoted value behind the first occurrence of the needle, of any length, counting quotes and nothing else: the next
// one closes the key, the one after opens the value. Nothing if there is none.
std::optional<std::string> FindPrefValue(const std::string &needle, const PrefsText &prefs);

// The items of a list joined by commas, at least one.
std::vector<std::string> ListItems(const std::string &list);

// The same into buffers, for whoever knows the largest value. Adapters use the ones above: here a value that doesn't
// fit can't be told from one that isn't there.
//
// Copies the value to `out`, which is zeroed first. 1 if a value was copied; 0 if there is none or it doesn't fit into
// `size` bytes with its terminator.
int32_t ReadPrefValue(const char *needle, const PrefsText &prefs, char *out, int32_t size);
// The number of items, and the item at an index from 0. GetListItem answers 0 for an index behind the last item, with
// `out` as it was, and for an item that doesn't fit, with `out` empty.
int32_t CountListItems(const char *list);
int32_t GetListItem(const char *list, int32_t index, char *out, int32_t size);

// A value in the system's code page as UTF-8. 0, with `out` empty, if value or result have more than 259 bytes.
int32_t ToUtf8Value(const char *value, char (&out)[PrefValueSize]);
