// Untrusted version resources, in a program file and as a block that GetFileVersionInfoA filled. The answer to a query
// lies within the block. The input is the file if it begins like a program, otherwise the resource.
#include "clients/file_queries.h"
#include "win32/win32.h"

#include "fuzzing.h"
#include "support/scratch_machine.h"

#include <cstring>
#include <memory>

namespace {

const ScratchMachine Machine;
constexpr const char *FileName = "program.exe";
constexpr const char *Path = "C:\\program.exe";

// The header in the block before the resource, and the room for texts after it.
constexpr size_t HeaderSize = sizeof(DWORD);
size_t BlockSize(size_t resourceSize) { return HeaderSize + 2 * ((resourceSize + 3) & ~size_t{3}); }

std::string Answer(BYTE *block, size_t blockSize, const char *query) {
  void *value = nullptr;
  UINT size = 0;
  if (!VerQueryValueA(block, query, &value, &size))
    return "nothing";
  const auto *const begin = static_cast<const char *>(value);
  const std::string answer(begin, size); // ASan watches the ends of the block
  // Either bytes of the resource, or a text converted into the room after it, or an empty text anywhere.
  const auto *const resource = reinterpret_cast<const char *>(block) + HeaderSize;
  DWORD length = 0;
  std::memcpy(&length, block, sizeof length);
  const bool isResource = begin >= resource && begin + size <= resource + length;
  const bool isConverted = begin >= resource + length && begin + size <= resource + blockSize - HeaderSize;
  REQUIRE(isResource || isConverted || answer == std::string(1, '\0'));
  return answer;
}

// Texts that were converted for one query don't disturb another.
void Query(BYTE *block, size_t blockSize, FuzzedDataProvider &input) {
  const std::string anything = "\\" + input.ConsumeRandomLengthString(40);
  const char *const queries[] = {"\\",
                                 "",
                                 "\\VarFileInfo\\Translation",
                                 "\\StringFileInfo",
                                 "\\StringFileInfo\\041104b0",
                                 "\\StringFileInfo\\041104b0\\ProductVersion",
                                 "\\StringFileInfo\\041104B0\\filedescription",
                                 anything.c_str()};
  std::vector<std::string> answers;
  for (const char *query : queries)
    answers.push_back(Answer(block, blockSize, query));
  for (size_t index = 0; index < std::size(queries); ++index)
    REQUIRE(Answer(block, blockSize, queries[index]) == answers[index]);
}

void QueryFile(const std::string &file, FuzzedDataProvider &input) {
  Machine.PutFile(FileName, file);
  DWORD handle = 1;
  const DWORD size = GetFileVersionInfoSizeA(Path, &handle);
  REQUIRE(handle == 0);
  std::string version = "as it was";
  const int32_t found = GetProductVersion(Path, version);
  REQUIRE(found == 1 || version == "as it was");
  BYTE none = 0;
  if (size == 0) {
    REQUIRE(found == 0 && !GetFileVersionInfoA(Path, 0, 1, &none));
    return;
  }
  // A block that is too small holds the beginning of the resource.
  for (const DWORD room : {size, size - 1, size / 2}) {
    const std::unique_ptr<BYTE[]> block(new BYTE[room]);
    if (GetFileVersionInfoA(Path, 0, room, block.get()))
      Query(block.get(), room, input);
    else
      REQUIRE(room < size);
  }
}

void QueryBlock(const std::string &resource, FuzzedDataProvider &input) {
  const size_t size = BlockSize(resource.size());
  const auto length = static_cast<DWORD>(resource.size());
  const std::unique_ptr<BYTE[]> block(new BYTE[size]());
  std::memcpy(block.get(), &length, sizeof length);
  std::memcpy(block.get() + HeaderSize, resource.data(), resource.size());
  Query(block.get(), size, input);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string bytes(data, data + size);
  FuzzedDataProvider input(data, size);
  if (bytes.starts_with("MZ"))
    QueryFile(bytes, input);
  else
    QueryBlock(bytes, input);
  return 0;
}
