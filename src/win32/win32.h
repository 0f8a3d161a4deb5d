// The platform as AcctKit sees it: the Win32 API. On Windows this is <windows.h> and friends. Elsewhere it declares
// just the calls that AcctKit, its host program and its tests make, each with what it does; src/win32/linux answers
// them on a machine folder. "Here" marks what Windows doesn't promise, on which the product must not rely. Whoever
// brings AcctKit to another platform reads this one file. If a call isn't here, none of them makes it.
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

#else

#include <cstddef>
#include <cstdint>

extern "C" {

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

// ---- Result codes ----

constexpr LONG ERROR_SUCCESS = 0;
constexpr LONG ERROR_FILE_NOT_FOUND = 2;
constexpr LONG ERROR_PATH_NOT_FOUND = 3;
constexpr LONG ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr LONG ERROR_ACCESS_DENIED = 5;
constexpr LONG ERROR_INVALID_HANDLE = 6;
constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr LONG ERROR_WRITE_PROTECT = 19;
constexpr LONG ERROR_WRITE_FAULT = 29;
constexpr LONG ERROR_READ_FAULT = 30;
constexpr LONG ERROR_SHARING_VIOLATION = 32;
constexpr LONG ERROR_FILE_EXISTS = 80;
constexpr LONG ERROR_INVALID_PARAMETER = 87;
constexpr LONG ERROR_DISK_FULL = 112;
constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
constexpr LONG ERROR_INVALID_NAME = 123;
constexpr LONG ERROR_MOD_NOT_FOUND = 126;
constexpr LONG ERROR_PROC_NOT_FOUND = 127;
constexpr LONG ERROR_BAD_EXE_FORMAT = 193;
constexpr LONG ERROR_ALREADY_EXISTS = 183;
constexpr LONG ERROR_MORE_DATA = 234;
constexpr LONG ERROR_NO_MORE_ITEMS = 259;
constexpr LONG ERROR_BADDB = 1009;
constexpr LONG ERROR_NO_UNICODE_TRANSLATION = 1113;
constexpr LONG ERROR_INVALID_WINDOW_HANDLE = 1400;
constexpr LONG ERROR_TLW_WITH_WSCHILD = 1406;
constexpr LONG ERROR_CANNOT_FIND_WND_CLASS = 1407;
constexpr LONG ERROR_CLASS_ALREADY_EXISTS = 1410;
constexpr LONG ERROR_INVALID_INDEX = 1413;
constexpr LONG ERROR_CONTROL_ID_NOT_FOUND = 1421;
constexpr LONG ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
constexpr LONG ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
constexpr LONG ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
constexpr LONG ERROR_NOT_ENOUGH_QUOTA = 1816;

DWORD GetLastError();
void SetLastError(DWORD code);

// ---- Registry ----
// Keys below the two roots. Names of keys and values match without regard to case and keep the case first written.
// Strings are code page 932 on this side. A call answers its result code and doesn't touch GetLastError. A 64-bit
// system answers as it does a 32-bit process, which is what ships.

inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001U));
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002U));

constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr REGSAM KEY_SET_VALUE = 0x0002;
constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_WRITE = 0x20006;
constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_MULTI_SZ = 7;

constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

// Opens an existing key. ERROR_FILE_NOT_FOUND for a missing one, ERROR_ACCESS_DENIED for a right that it doesn't give.
LSTATUS RegOpenKeyExA(HKEY key, const char *subkey, DWORD options, REGSAM access, HKEY *result);
// The same with every right that the key gives, at least to read.
LSTATUS RegOpenKeyA(HKEY key, const char *subkey, HKEY *result);
// Opens a key and makes every missing one on the way; `disposition` (may be null) tells which it was.
LSTATUS RegCreateKeyExA(HKEY key, const char *subkey, DWORD reserved, char *className, DWORD options, REGSAM access,
                        void *security, HKEY *result, DWORD *disposition);
// Reads a value; a null or empty name is the default value. A null `data` only asks for the size. Text comes with a
// terminator, which `size` counts, where one is stored; an unterminated text gets one where the buffer has room.
// ERROR_MORE_DATA and the size needed for a buffer that is too small, ERROR_FILE_NOT_FOUND for a missing value.
LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *reserved, DWORD *type, BYTE *data, DWORD *size);
// Writes a value. Text whose terminator stands just behind the `size` bytes given is stored with it. Here the value is
// in the hive's file when the call returns with ERROR_SUCCESS; Windows writes it out later.
LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD reserved, DWORD type, const BYTE *data, DWORD size);
LSTATUS RegDeleteValueA(HKEY key, const char *name);
// Name of the subkey at an index, in a stable order. `size` is in characters, counts the terminator going in and not
// coming back. ERROR_NO_MORE_ITEMS at the end.
LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *size, DWORD *reserved, char *className,
                      DWORD *classSize, FILETIME *lastWrite);
LSTATUS RegEnumKeyA(HKEY key, DWORD index, char *name, DWORD size);
LSTATUS RegCloseKey(HKEY key);

// ---- Files and folders ----
// Paths have a drive letter and backslashes, match without regard to case, and are code page 932 on this side.

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1));

struct WIN32_FIND_DATAA {
  DWORD dwFileAttributes;
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

// Share mode 0 keeps every other open of the file out (ERROR_SHARING_VIOLATION) until CloseHandle. CREATE_ALWAYS and
// OPEN_ALWAYS leave ERROR_ALREADY_EXISTS in GetLastError, with success, where the file was there. Here, what is written
// to a file opened with CREATE_ALWAYS takes the old file's place at CloseHandle, whole or not at all; Windows cuts the
// old file at once, and a write that fails leaves what it had written.
HANDLE CreateFileA(const char *path, DWORD access, DWORD share, void *security, DWORD disposition, DWORD attributes,
                   HANDLE templateFile);
BOOL ReadFile(HANDLE file, void *buffer, DWORD size, DWORD *read, void *overlapped);
// The low half of the size in bytes; INVALID_FILE_SIZE for no open file. `high` may be null.
DWORD GetFileSize(HANDLE file, DWORD *high);
BOOL WriteFile(HANDLE file, const void *data, DWORD size, DWORD *written, void *overlapped);
// Here, FALSE if what was written to a CREATE_ALWAYS file couldn't be put in place; the old file then stands as it was.
BOOL CloseHandle(HANDLE handle);
// Tells whether a path names an existing file or folder; wildcards in the last part match as on Windows.
HANDLE FindFirstFileA(const char *path, WIN32_FIND_DATAA *data);
BOOL FindClose(HANDLE search);
// Makes one level: ERROR_PATH_NOT_FOUND if the parent is missing, ERROR_ALREADY_EXISTS if the name is taken.
BOOL CreateDirectoryA(const char *path, void *security);
// Both answer the length without the terminator. A buffer that is too small gets nothing and the size needed,
// terminator included, from the first, and a cut path and its own size from the second.
UINT GetWindowsDirectoryA(char *buffer, UINT size);
DWORD GetModuleFileNameA(HMODULE module, char *buffer, DWORD size);

// Reads a value of a profile file, whose lines `name=value` stand below headings `[section]`; a file name without a
// folder is one of the Windows directory. Sections and keys match without regard to case, the first of several counts.
// Blanks around names and values don't count, nor does one pair of quotes around a value; lines that begin with a
// semicolon are comments. `defaultText`, without blanks at its end, stands in for what is missing. A null section or
// key gives the names of all sections, or of the section's keys, each terminated. The result is the length without the
// last terminator; what doesn't fit is cut to size - 1, a list of names to size - 2 with two terminators. Text is code
// page 932, or UTF-16 behind a byte order mark.
DWORD GetPrivateProfileStringA(const char *section, const char *key, const char *defaultText, char *buffer, DWORD size,
                               const char *path);

// Version resource of a program file; the query path is "\StringFileInfo\...", "\VarFileInfo\Translation" or "\".
DWORD GetFileVersionInfoSizeA(const char *path, DWORD *handle);
BOOL GetFileVersionInfoA(const char *path, DWORD handle, DWORD size, void *data);
// `value` points into `data`; `size` is in characters with the terminator for a text, else in bytes.
BOOL VerQueryValueA(const void *data, const char *query, void **value, UINT *size);

// ---- Shell ----

constexpr HRESULT S_OK = 0;
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);
constexpr int CSIDL_PROGRAMS = 0x0002;
constexpr int CSIDL_APPDATA = 0x001A;
constexpr UINT SHGFI_ICON = 0x100;

struct SHITEMID {
  WORD cb;
  BYTE abID[1];
};
struct ITEMIDLIST {
  SHITEMID mkid;
};
struct SHFILEINFOA {
  HICON hIcon;
  int iIcon;
  DWORD dwAttributes;
  char szDisplayName[MAX_PATH];
  char szTypeName[80];
};

// The user's shell folders, from the registry; the list is freed with CoTaskMemFree.
HRESULT SHGetSpecialFolderLocation(HWND owner, int folder, ITEMIDLIST **list);
BOOL SHGetPathFromIDListA(const ITEMIDLIST *list, char *path);
void CoTaskMemFree(void *memory);
// SHGFI_ICON: the file's icon, to be freed with DestroyIcon; 0 for a file that isn't there.
DWORD_PTR SHGetFileInfoA(const char *path, DWORD attributes, SHFILEINFOA *info, UINT infoSize, UINT flags);
BOOL DestroyIcon(HICON icon);

// ---- Modules ----

HMODULE LoadLibraryA(const char *path);
FARPROC GetProcAddress(HMODULE module, const char *name);
BOOL FreeLibrary(HMODULE module);

struct MEMORY_BASIC_INFORMATION {
  void *AllocationBase; // the handle of the module
};
// What an address within a module belongs to. The size of the record, 0 for an address that lies in no module.
size_t VirtualQuery(const void *address, MEMORY_BASIC_INFORMATION *information, size_t size);

// ---- Text ----
// The system's code page is 932. Lengths of -1 mean terminated text, and the result then counts the terminator; a
// buffer size of 0 only asks for the size. 0 and ERROR_INSUFFICIENT_BUFFER for a result that doesn't fit.

constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_ERR_INVALID_CHARS = 8;

int MultiByteToWideChar(UINT codePage, DWORD flags, const char *text, int length, WCHAR *wide, int size);
int WideCharToMultiByte(UINT codePage, DWORD flags, const WCHAR *wide, int length, char *text, int size,
                        const char *defaultChar, BOOL *usedDefaultChar);

// Whether a byte begins a character of two bytes.
BOOL IsDBCSLeadByte(BYTE byte);

// Comparison and character classes of the multi-byte run-time library. Case is that of the Latin letters, half-width
// and full-width.
int _mbscmp(const unsigned char *left, const unsigned char *right);
int _mbsicmp(const unsigned char *left, const unsigned char *right);
int _ismbcalpha(unsigned int character);
int _ismbcdigit(unsigned int character);

// Compares texts as a dictionary has them in order.
int lstrcmpA(const char *left, const char *right);

} // extern "C"

#endif
