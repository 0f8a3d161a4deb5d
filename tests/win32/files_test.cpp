// The results of the file calls: dispositions, sharing, folders, searches, names.
#include "support/handles.h"
#include "support/test_machine.h"

#include <vector>

namespace {

using FilesTest = MachineTest;

const std::string Scratch = "C:\\acctkit-test";
constexpr LONG NoError = ERROR_SUCCESS;

HANDLE Open(const std::string &path, DWORD access, DWORD share, DWORD disposition) {
  SetLastError(99);
  return CreateFileA(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

LONG LastError() { return static_cast<LONG>(GetLastError()); }

TEST_F(FilesTest, Dispositions) {
  const struct {
    DWORD disposition;
    LONG missing, existing, folder; // the result of GetLastError; a file is opened on 0 and ERROR_ALREADY_EXISTS
    const char *content;            // of the existing file, after it was opened
  } cases[] = {
      {OPEN_EXISTING, ERROR_FILE_NOT_FOUND, NoError, ERROR_ACCESS_DENIED, "old"},
      {OPEN_ALWAYS, NoError, ERROR_ALREADY_EXISTS, ERROR_ACCESS_DENIED, "old"},
      {CREATE_ALWAYS, NoError, ERROR_ALREADY_EXISTS, ERROR_ACCESS_DENIED, ""},
  };
  PutFile(Scratch + "\\file", "");
  for (const auto &test : cases) {
    SCOPED_TRACE(test.disposition);
    const std::string name = "\\new" + std::to_string(test.disposition);
    const auto open = [&](const std::string &path) {
      TestFile file(Open(Scratch + path, GENERIC_READ | GENERIC_WRITE, 0, test.disposition));
      const LONG error = LastError();
      EXPECT_EQ(static_cast<bool>(file), error == NoError || error == ERROR_ALREADY_EXISTS) << path;
      return error;
    };
    EXPECT_EQ(open(name), test.missing);
    EXPECT_EQ(GetFile(Scratch + name).has_value(), test.missing == NoError);
    PutFile(Scratch + "\\old", "old");
    EXPECT_EQ(open("\\old"), test.existing);
    EXPECT_EQ(GetFile(Scratch + "\\old"), test.content);
    EXPECT_EQ(open(""), test.folder);
    EXPECT_EQ(open("\\none\\file"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(open("\\file\\below"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(open("\\a*b"), ERROR_INVALID_NAME);
  }
}

TEST_F(FilesTest, ShareModeZeroKeepsEveryOtherOpenOut) {
  constexpr DWORD All = FILE_SHARE_READ | FILE_SHARE_WRITE;
  const struct {
    DWORD firstAccess, firstShare, secondAccess, secondShare;
    LONG error;
  } cases[] = {
      {GENERIC_READ, 0, GENERIC_READ, All, ERROR_SHARING_VIOLATION},
      {GENERIC_READ, All, GENERIC_READ, 0, ERROR_SHARING_VIOLATION},
      {GENERIC_READ, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ, NoError},
      {GENERIC_WRITE, All, GENERIC_READ | GENERIC_WRITE, All, NoError},
  };
  PutFile(Scratch + "\\file", "text");
  for (const auto &test : cases)
    for (const DWORD disposition : {OPEN_EXISTING, OPEN_ALWAYS, CREATE_ALWAYS}) {
      SCOPED_TRACE(::testing::Message() << (&test - cases) << " " << disposition);
      if (disposition == CREATE_ALWAYS && test.error == NoError)
        continue; // overwriting isn't allowed in every share mode
      TestFile first(Open(Scratch + "\\file", test.firstAccess, test.firstShare, disposition));
      ASSERT_TRUE(first);
      const TestFile second(Open(Scratch + "\\FILE", test.secondAccess, test.secondShare, disposition));
      EXPECT_EQ(static_cast<bool>(second), test.error == NoError);
      if (!second) {
        EXPECT_EQ(LastError(), test.error);
      }
      EXPECT_TRUE(first.Close());
    }
}

TEST_F(FilesTest, ReadsAndWrites) {
  const std::string path = Scratch + "\\file";
  PutFile(path, "abcdef");
  char bytes[8] = "";
  DWORD count = 9;
  TestFile file(Open(path, GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING));
  EXPECT_TRUE(ReadFile(file.Get(), bytes, 2, &count, nullptr));
  EXPECT_TRUE(WriteFile(file.Get(), "XY", 2, &count, nullptr)); // at the position after the read
  EXPECT_TRUE(ReadFile(file.Get(), bytes + 2, 6, &count, nullptr));
  EXPECT_EQ(count, 2U);
  EXPECT_STREQ(bytes, "abef");
  EXPECT_TRUE(ReadFile(file.Get(), bytes, 8, &count, nullptr)); // at the end
  EXPECT_EQ(count, 0U);
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(GetFile(path), "abXYef");
}

TEST_F(FilesTest, MakesOneFolderAtATime) {
  PutFile(Scratch + "\\file", "");
  const std::pair<LONG, std::vector<const char *>> cases[] = {
      {NoError, {"\\new", "\\behind\\", "\\\x95\x5c", "\\\x95\x5c\\\x83\x5c\\"}},
      {ERROR_ALREADY_EXISTS, {"", "\\NEW", "\\new\\", "\\file"}},
      {ERROR_PATH_NOT_FOUND, {"\\one\\two", "\\file\\below"}},
      {ERROR_INVALID_NAME, {"\\a?b"}},
  };
  for (const auto &[error, paths] : cases)
    for (const char *path : paths) {
      SetLastError(0);
      EXPECT_EQ(CreateDirectoryA((Scratch + path).c_str(), nullptr), error == NoError ? TRUE : FALSE) << path;
      EXPECT_EQ(LastError(), error) << path;
    }
}

TEST_F(FilesTest, FindsFiles) {
  PutFile(Scratch + "\\Folder\\Text File.TXT", "12345");
  PutFile(Scratch + "\\Folder\\\x95\x5c.dat", "");
  PutFile(Scratch + "\\Folder\\\x82\x60", "");
  const std::pair<const char *, std::vector<const char *>> found[] = {
      {"Folder", {"\\folder"}},
      {"Text File.TXT",
       {"\\FOLDER\\text file.txt", "/folder/TEXT FILE.txt", "\\Folder\\..\\folder\\.\\text file.txt",
        "\\Folder\\text file.txt. ", "\\Folder\\*.txt", "\\Folder\\text?file.*"}},
      {"\x95\x5c.dat", {"\\Folder\\\x95\x5c.dat", "\\Folder\\?.dat"}},
      {"\x82\x60", {"\\Folder\\\x82\x81"}},
  };
  for (const auto &[name, paths] : found)
    for (const char *path : paths) {
      WIN32_FIND_DATAA data = {};
      const HANDLE search = FindFirstFileA((Scratch + path).c_str(), &data);
      ASSERT_NE(search, INVALID_HANDLE_VALUE) << path;
      EXPECT_STREQ(data.cFileName, name) << path;
      EXPECT_EQ(data.nFileSizeLow, std::string(name) == "Text File.TXT" ? 5U : 0U) << path;
      EXPECT_EQ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, std::string(name) == "Folder");
      EXPECT_TRUE(FindClose(search));
    }
  const std::pair<LONG, std::vector<const char *>> missing[] = {
      {ERROR_FILE_NOT_FOUND, {"\\Folder\\*.none", "\\Folder\\none", "\\Folder\\", "\\Folder\\\x95\x7c.dat"}},
      {ERROR_PATH_NOT_FOUND, {"\\none\\file", "\\none\\*"}},
  };
  for (const auto &[error, paths] : missing)
    for (const char *path : paths) {
      WIN32_FIND_DATAA data;
      EXPECT_EQ(FindFirstFileA((Scratch + path).c_str(), &data), INVALID_HANDLE_VALUE) << path;
      EXPECT_EQ(LastError(), error) << path;
    }
}

// The results depend only on the sizes, so they are the same everywhere, whatever the path is.
TEST_F(FilesTest, BuffersForPaths) {
  char windows[MAX_PATH];
  const UINT length = GetWindowsDirectoryA(windows, sizeof windows);
  const std::string path(windows);
  EXPECT_EQ(length, path.size());
  EXPECT_FALSE(path.ends_with('\\'));

  char program[MAX_PATH];
  const DWORD size = GetModuleFileNameA(nullptr, program, sizeof program);
  const std::string programPath(program);
  ASSERT_EQ(size, programPath.size());
  EXPECT_EQ(programPath.substr(1, 2), ":\\");
  EXPECT_EQ(GetModuleFileNameA(nullptr, program, size + 1), size);
  EXPECT_EQ(GetModuleFileNameA(nullptr, program, size), size);
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  // Windows terminates a cut path since Vista; older systems and Wine fill the buffer to its end.
  EXPECT_EQ(std::string(program, size - 1), programPath.substr(0, size - 1));
}

} // namespace
