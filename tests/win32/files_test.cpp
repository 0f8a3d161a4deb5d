// The results of the file calls: dispositions, sharing, folders, searches, names.
#include "support/test_machine.h"

#include "stores/file_handle.h"

#include <tuple>
#include <vector>

namespace {

using FilesTest = MachineTest;

const std::string Scratch = "C:\\acctkit-test";
HANDLE Open(const std::string &path, DWORD access, DWORD share, DWORD disposition) {
  return CreateFileA(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

TEST_F(FilesTest, Dispositions) {
  // Whether a file is made, and what a file that was there holds then.
  const std::tuple<DWORD, bool, const char *> cases[] = {
      {OPEN_EXISTING, false, "old"}, {OPEN_ALWAYS, true, "old"}, {CREATE_ALWAYS, true, ""}};
  PutFile(Scratch + "\\file", "");
  for (const auto &[disposition, makes, content] : cases) {
    SCOPED_TRACE(disposition);
    const std::string name = "\\new" + std::to_string(disposition);
    const auto opens = [&](const std::string &path) {
      return static_cast<bool>(FileHandle(Open(Scratch + path, GENERIC_READ | GENERIC_WRITE, 0, disposition)));
    };
    EXPECT_EQ(opens(name), makes);
    EXPECT_EQ(GetFile(Scratch + name).has_value(), makes);
    PutFile(Scratch + "\\old", "old");
    EXPECT_TRUE(opens("\\old"));
    EXPECT_EQ(GetFile(Scratch + "\\old"), content);
    for (const char *path : {"", "\\none\\file", "\\file\\below", "\\a*b"})
      EXPECT_FALSE(opens(path)) << path;
  }
}

TEST_F(FilesTest, ShareModeZeroKeepsEveryOtherOpenOut) {
  constexpr DWORD All = FILE_SHARE_READ | FILE_SHARE_WRITE;
  const std::tuple<DWORD, DWORD, DWORD, DWORD, bool> cases[] = {
      {GENERIC_READ, 0, GENERIC_READ, All, false},
      {GENERIC_READ, All, GENERIC_READ, 0, false},
      {GENERIC_READ, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ, true},
      {GENERIC_WRITE, All, GENERIC_READ | GENERIC_WRITE, All, true},
  };
  PutFile(Scratch + "\\file", "text");
  for (const auto &[firstAccess, firstShare, secondAccess, secondShare, opens] : cases)
    for (const DWORD disposition : {OPEN_EXISTING, OPEN_ALWAYS, CREATE_ALWAYS}) {
      SCOPED_TRACE(::testing::Message() << firstAccess << ' ' << firstShare << ' ' << disposition);
      if (disposition == CREATE_ALWAYS && opens)
        continue; // overwriting isn't allowed in every share mode
      FileHandle first(Open(Scratch + "\\file", firstAccess, firstShare, disposition));
      ASSERT_TRUE(first);
      const FileHandle second(Open(Scratch + "\\FILE", secondAccess, secondShare, disposition));
      EXPECT_EQ(static_cast<bool>(second), opens);
      EXPECT_TRUE(first.Close());
    }
}

TEST_F(FilesTest, ReadsAndWrites) {
  const std::string path = Scratch + "\\file";
  PutFile(path, "abcdef");
  char bytes[8] = "";
  DWORD count = 9;
  FileHandle file(Open(path, GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING));
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
  for (const char *path : {"\\new", "\\behind\\", "\\\x95\x5c", "\\\x95\x5c\\\x83\x5c\\"})
    EXPECT_TRUE(CreateDirectoryA((Scratch + path).c_str(), nullptr)) << path;
  for (const char *path : {"", "\\NEW", "\\new\\", "\\file", "\\one\\two", "\\file\\below", "\\a?b"})
    EXPECT_FALSE(CreateDirectoryA((Scratch + path).c_str(), nullptr)) << path;
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
  for (const char *path :
       {"\\Folder\\*.none", "\\Folder\\none", "\\Folder\\", "\\Folder\\\x95\x7c.dat", "\\none\\file", "\\none\\*"}) {
    WIN32_FIND_DATAA data;
    EXPECT_EQ(FindFirstFileA((Scratch + path).c_str(), &data), INVALID_HANDLE_VALUE) << path;
  }
}

} // namespace
