// The platform as AcctKit sees it: the Win32 API. On Windows this is <windows.h> and friends. Elsewhere it declares
// just the calls that AcctKit and its host program make, each with what it guarantees and what the caller owes it;
// src/win32/linux implements them on a machine folder. A sentence with "here" holds for this layer alone, and the
// product must not rely on it. A port of AcctKit to another platform needs this file and win32_ui.h, and nothing else.
//
// One thing here isn't of the Win32 API: PlatformCall, the mark of where a call of the product begins and ends, which
// is empty on Windows.
//
// What holds for all calls:
// - Texts are terminated and code page 932, except those of WCHAR. Pointers must not be null unless the call allows it.
// - A call may come from any thread. What a handle stands for belongs to one thread at a time.
// - A call that fails says so and has changed nothing. machine::TakeFault has the reason for the user; GetLastError has
//   a code after FindFirstFileA alone.
// - Arguments without a name here are ignored; Windows wants 0 for them.
#pragma once

#ifdef _WIN32

#include <windows.h>

#include <mbstring.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

// Macros of the multi-byte header whose names the standard library has for its own.
#undef _M1
#undef _M2

struct PlatformCall {
  struct Pause {
    Pause() {} // so that one that is only there to be there doesn't count as unused
  };
  bool Commit() { return true; }
  static void Report(const char *, const char *) {}
};

#else

#include <cstddef>
#include <cstdint>
#include <memory>

// ---- Types ----

using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using UINT = uint32_t;
using LONG = int32_t;
using LSTATUS = int32_t;
using HRESULT = int32_t;
using BOOL = int32_t;
using INT_PTR = intptr_t;
using ULONG_PTR = uintptr_t;
using DWORD_PTR = uintptr_t;
using WCHAR = char16_t; // a UTF-16 code unit, as on Windows; not wchar_t, which has 32 bits here
using REGSAM = DWORD;

using HANDLE = void *;
using HWND = struct HWND__ *;
using HICON = struct HICON__ *;
using HINSTANCE = void *;
using HMODULE = HINSTANCE;
using HKEY = struct HKEY__ *;
using FARPROC = INT_PTR (*)();

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr int MAX_PATH = 260;

// ---- Where a call of the product begins and ends ----

namespace machine {
class Transaction;
class TransactionPause;
} // namespace machine

// What is called of the platform while one lives is one change of the machine: others see all of it or nothing, also
// after a kill or a power cut, and nobody else writes meanwhile. Calls nest, and the outermost counts.
class PlatformCall {
public:
  PlatformCall();
  // Takes back what was written, unless Commit was called.
  ~PlatformCall();
  // Ends the call. False if something was written and couldn't be put on disk: then nothing of it is there.
  bool Commit();

  // Ends the calls of this thread for as long as it lives: code of others runs, which may take long, or call the
  // product itself. What was written is put on disk before. Windows that wait for the user do that by themselves.
  class Pause {
  public:
    Pause();
    ~Pause();

  private:
    std::unique_ptr<machine::TransactionPause> pause;
  };

  // Says that a client's file stays as it is though it was to be written, in English, for a user who asks.
  static void Report(const char *path, const char *reason);

private:
  std::unique_ptr<machine::Transaction> transaction;
};

// ---- Registry ----
// Keys below the two roots, as a 32-bit process has them, which is what ships. Names of keys and values match without
// regard to case and keep the case first written. A path is names with backslashes between them; an empty or null one
// is the key itself. Every key that is opened or made is closed again.
//
// The calls return one of these codes, or another one where no caller needs to tell the reasons apart. Here, a change
// is on disk when the call returns with ERROR_SUCCESS, or else at the end of the PlatformCall around it; Windows writes
// it out later.

constexpr LSTATUS ERROR_SUCCESS = 0;
constexpr LSTATUS ERROR_FILE_NOT_FOUND = 2; // no such key or value
constexpr LSTATUS ERROR_PATH_NOT_FOUND = 3;
constexpr LSTATUS ERROR_NO_MORE_FILES = 18;
constexpr LSTATUS ERROR_ACCESS_DENIED = 5; // the key doesn't give the right, or wasn't opened with it
constexpr LSTATUS ERROR_MORE_DATA = 234;   // the buffer is too small
constexpr LSTATUS ERROR_NO_MORE_ITEMS = 259;
constexpr LSTATUS ERROR_BADDB = 1009; // the registry is damaged, or can't be read or written

inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001U));
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002U));

constexpr REGSAM KEY_SET_VALUE = 0x0002;
constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;

constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

// Opens an existing key. Here, a key gives the rights to write unless the mode of its hive's file denies them.
LSTATUS RegOpenKeyExA(HKEY key, const char *subkey, DWORD, REGSAM access, HKEY *result);
// The same with every right that the key gives, at least to read.
LSTATUS RegOpenKeyA(HKEY key, const char *subkey, HKEY *result);
// Opens a key and makes every missing one on the way; `disposition` (may be null) tells which it was.
LSTATUS RegCreateKeyExA(HKEY key, const char *subkey, DWORD, char *, DWORD options, REGSAM access, void *, HKEY *result,
                        DWORD *disposition);
// Reads a value; a null or empty name is the default value. `type`, `data` and `size` may be null, `size` not with
// `data`; without `data` only the size is told. Text comes with a terminator, which `size` counts, where one is stored;
// an unterminated text gets one, not counted, where the buffer has room. ERROR_MORE_DATA tells the size that is needed
// and leaves the buffer alone.
LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *, DWORD *type, BYTE *data, DWORD *size);
// Writes `size` bytes. For a text the next byte must be readable too; if it is the terminator, it is stored as well.
LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD, DWORD type, const BYTE *data, DWORD size);
LSTATUS RegDeleteValueA(HKEY key, const char *name);
// The name of the subkey at an index; the order stays while no key is made. `size` is the buffer's size in bytes on
// input, and the name's length without its terminator on output.
LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *size, DWORD *, char *, DWORD *, FILETIME *);
LSTATUS RegEnumKeyA(HKEY key, DWORD index, char *name, DWORD size);
LSTATUS RegCloseKey(HKEY key);

// ---- Files and folders ----
// Paths have a drive letter and backslashes and match without regard to case.

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1));

struct WIN32_FIND_DATAA {
  DWORD dwFileAttributes; // FILE_ATTRIBUTE_DIRECTORY or FILE_ATTRIBUTE_ARCHIVE
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  char cFileName[MAX_PATH];
  char cAlternateFileName[14];
};

// Opens a file, or makes it, in a folder that is there; INVALID_HANDLE_VALUE if it can't be had. Share mode 0 keeps
// every other open of the file out until CloseHandle, so that two programs don't mix their changes to one file; it
// fails while somebody else has the file open. Here, what is written takes the old file's place at CloseHandle, whole
// or not at all, or else at the end of the PlatformCall around it; Windows changes the old file at once, and a write
// that fails leaves what it had written.
HANDLE CreateFileA(const char *path, DWORD access, DWORD share, void *, DWORD disposition, DWORD, HANDLE);
// Continues where the call before ended. At the end of the file, TRUE and fewer bytes than asked for.
BOOL ReadFile(HANDLE file, void *buffer, DWORD size, DWORD *read, void *);
// The low half of the size in bytes; INVALID_FILE_SIZE for no open file. `high` may be null.
DWORD GetFileSize(HANDLE file, DWORD *high);
BOOL WriteFile(HANDLE file, const void *data, DWORD size, DWORD *written, void *);
// Here, FALSE if what was written couldn't be put in place; the old file then stands as it was.
BOOL CloseHandle(HANDLE file);
// Finds the file or folder that a path names; the last part may have the wildcards * and ?, and the first that matches
// counts. The search is ended by FindClose. INVALID_HANDLE_VALUE if nothing is found; GetLastError tells then whether
// there is nothing for certain (ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, on
// Windows also ERROR_NO_MORE_FILES) or something kept the system from looking.
HANDLE FindFirstFileA(const char *path, WIN32_FIND_DATAA *data);
DWORD GetLastError();
BOOL FindClose(HANDLE search);
// Makes one level. FALSE if the name is taken or the folder above is missing.
BOOL CreateDirectoryA(const char *path, void *);
// The folder of the system, without a backslash at its end. The length without the terminator; for a buffer that is too
// small, the size needed, terminator included, and nothing is written.
UINT GetWindowsDirectoryA(char *buffer, UINT size);
// The path of the running program (null module). `size` is at least 1; a path that doesn't fit is cut, and the result
// is `size` then. Windows 98 leaves the terminator out of a cut path.
DWORD GetModuleFileNameA(HMODULE, char *buffer, DWORD size);

// Reads a value of an INI file, whose lines `name=value` stand below headings `[section]`. Sections and keys match
// without regard to case, the first of several counts. Blanks around names and values don't count, nor does one pair of
// quotes around a value; lines that begin with a semicolon are comments. `defaultText` stands in for what is missing.
// The result is the length; what doesn't fit is cut to size - 1, and `size` is at least 1. The file's text is code page
// 932, or UTF-16 behind a byte order mark. Here a file of more than 256 KB counts as missing.
DWORD GetPrivateProfileStringA(const char *section, const char *key, const char *defaultText, char *buffer, DWORD size,
                               const char *path);

// The version resource of a program file goes into a block of the size that the first call tells, 0 if there is none.
DWORD GetFileVersionInfoSizeA(const char *path, DWORD *handle);
BOOL GetFileVersionInfoA(const char *path, DWORD, DWORD size, void *data);
// Looks up "\StringFileInfo\LANGUAGE\NAME" or "\VarFileInfo\Translation" in such a block. `value` points into it;
// `size` is in characters with the terminator for a text, else in bytes.
BOOL VerQueryValueA(const void *data, const char *query, void **value, UINT *size);

// ---- Shell ----

constexpr HRESULT S_OK = 0;
constexpr int CSIDL_APPDATA = 0x001A;
constexpr UINT SHGFI_ICON = 0x100;

struct ITEMIDLIST;
struct SHFILEINFOA {
  HICON hIcon;
  int iIcon;
  DWORD dwAttributes;
  char szDisplayName[MAX_PATH];
  char szTypeName[80];
};

// The folder where programs keep what they know of the user (CSIDL_APPDATA), as the registry names it. S_OK and a list,
// which is freed with CoTaskMemFree, or another code and null.
HRESULT SHGetSpecialFolderLocation(HWND, int folder, ITEMIDLIST **list);
// `path` has MAX_PATH bytes.
BOOL SHGetPathFromIDListA(const ITEMIDLIST *list, char *path);
void CoTaskMemFree(void *memory);
// SHGFI_ICON: the file's icon, to be freed with DestroyIcon; 0 for a file that isn't there.
DWORD_PTR SHGetFileInfoA(const char *path, DWORD attributes, SHFILEINFOA *info, UINT infoSize, UINT flags);
BOOL DestroyIcon(HICON icon);

// ---- Modules ----

// Loads a library of the machine, whose name gets ".dll" if it has no dot; null if it can't be loaded. Here it is a
// shared object. It stays until FreeLibrary was called as often.
HMODULE LoadLibraryA(const char *path);
FARPROC GetProcAddress(HMODULE module, const char *name);
BOOL FreeLibrary(HMODULE module);

struct MEMORY_BASIC_INFORMATION {
  void *AllocationBase; // the handle of the module
};
// What an address within a module belongs to. The size of the record, 0 for an address that lies in no module.
size_t VirtualQuery(const void *address, MEMORY_BASIC_INFORMATION *information, size_t size);

// ---- Text ----
// The system's code page is 932.

constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_ERR_INVALID_CHARS = 8;

// Both convert a text of a length, or a terminated one for -1, whose terminator the result counts; a buffer size
// of 0 only asks for the size. 0 for a result that doesn't fit. What the other encoding lacks becomes its replacement
// character; with MB_ERR_INVALID_CHARS the first call returns 0 for invalid bytes.
int MultiByteToWideChar(UINT codePage, DWORD flags, const char *text, int length, WCHAR *wide, int size);
int WideCharToMultiByte(UINT codePage, DWORD, const WCHAR *wide, int length, char *text, int size, const char *,
                        BOOL *);

// Whether a byte begins a character of two bytes.
BOOL IsDBCSLeadByte(BYTE byte);

// Comparison and character classes of the multi-byte run-time library. Case is that of the Latin letters, half-width
// and full-width.
int _mbsicmp(const unsigned char *left, const unsigned char *right);
int _ismbcalpha(unsigned int character);
int _ismbcdigit(unsigned int character);

// Compares texts in dictionary order.
int lstrcmpA(const char *left, const char *right);

#endif
