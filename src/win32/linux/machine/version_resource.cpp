// Version resources of program files: found in the resource section of a PE file, and queried as the system's tree of
// nodes. Files are anybody's, so every offset and size is checked against what there is.
#include "win32/win32.h"

#include "win32/linux/machine/byte_reader.h"
#include "win32/linux/machine/disk_file.h"
#include "win32/linux/machine/machine_folder.h"
#include "win32/linux/machine/paths.h"
#include "win32/linux/text/code_page.h"
#include "win32/linux/text/names.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace {

using machine::Aligned;

constexpr uint32_t VersionResourceType = 16;

// The number of `Number`'s size at an offset; nothing beyond the end.
template <typename Number> std::optional<Number> At(std::string_view bytes, size_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(Number))
    return std::nullopt;
  Number number;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

std::string_view Part(std::string_view bytes, size_t offset, size_t size) {
  return offset <= bytes.size() && size <= bytes.size() - offset ? bytes.substr(offset, size) : std::string_view();
}

// ---- The resource section of a PE file ----

struct PortableExecutable {
  std::string_view file;
  size_t sectionTable;
  uint16_t sectionCount;
  uint32_t resources; // virtual address of the resource directory

  // What stands at a virtual address, up to the end of its section in the file; empty if nothing does.
  std::string_view AtAddress(uint32_t address) const {
    constexpr size_t HeaderSize = 40;
    for (size_t index = 0; index < sectionCount; ++index) {
      const size_t header = sectionTable + index * HeaderSize;
      const auto begin = At<uint32_t>(file, header + 12);
      const auto size = At<uint32_t>(file, header + 16);
      const auto offset = At<uint32_t>(file, header + 20);
      if (!begin || !size || !offset || address < *begin || *offset > file.size())
        continue;
      const std::string_view section = file.substr(*offset, *size);
      if (address - *begin < section.size())
        return section.substr(address - *begin);
    }
    return {};
  }
};

std::optional<PortableExecutable> ReadHeaders(std::string_view file) {
  const auto newHeader = At<uint32_t>(file, 0x3C);
  if (!file.starts_with("MZ") || !newHeader || Part(file, *newHeader, 4) != std::string_view("PE\0\0", 4))
    return std::nullopt;
  const size_t coff = *newHeader + size_t{4};
  const size_t optional = coff + 20;
  const auto sectionCount = At<uint16_t>(file, coff + 2);
  const auto optionalSize = At<uint16_t>(file, coff + 16);
  const auto magic = At<uint16_t>(file, optional);
  if (!sectionCount || !optionalSize || !magic || (*magic != 0x10B && *magic != 0x20B))
    return std::nullopt;
  // The third data directory is the resources'; PE32+ has wider fields ahead of it.
  const auto resources = At<uint32_t>(file, optional + (*magic == 0x20B ? 112U : 96U) + size_t{16});
  if (!resources || *resources == 0)
    return std::nullopt;
  return PortableExecutable{file, optional + *optionalSize, *sectionCount, *resources};
}

// The entry of a resource directory with an id, or its first one; an offset within the resources, with its high bit set
// for a directory.
std::optional<uint32_t> DirectoryEntry(std::string_view resources, uint32_t directory, std::optional<uint32_t> id) {
  const auto named = At<uint16_t>(resources, directory + size_t{12});
  const auto numbered = At<uint16_t>(resources, directory + size_t{14});
  if (!named || !numbered)
    return std::nullopt;
  for (size_t index = 0; index < size_t{*named} + *numbered; ++index) {
    const size_t entry = directory + 16 + index * 8;
    const auto entryId = At<uint32_t>(resources, entry);
    if (!entryId)
      return std::nullopt;
    if (!id || *entryId == *id)
      return At<uint32_t>(resources, entry + 4);
  }
  return std::nullopt;
}

// The version resource of a program file: type 16, its first name, that one's first language.
std::string_view VersionResource(std::string_view file) {
  constexpr uint32_t IsDirectory = 0x80000000;
  const std::optional<PortableExecutable> program = ReadHeaders(file);
  if (!program)
    return {};
  const std::string_view resources = program->AtAddress(program->resources);
  std::optional<uint32_t> entry = IsDirectory;
  for (const std::optional<uint32_t> id : {std::optional<uint32_t>(VersionResourceType), {}, {}}) {
    if (!entry || (*entry & IsDirectory) == 0)
      return {};
    entry = DirectoryEntry(resources, *entry & ~IsDirectory, id);
  }
  if (!entry || (*entry & IsDirectory) != 0)
    return {};
  const auto address = At<uint32_t>(resources, *entry);
  const auto size = At<uint32_t>(resources, *entry + size_t{4});
  return address && size ? Part(program->AtAddress(*address), 0, *size) : std::string_view();
}

std::string ReadVersionResource(const char *path) {
  const std::filesystem::path found = machine::FindFile(path);
  if (found.empty())
    return {};
  const machine::DiskFile file = machine::ReadDiskFile(found);
  if (file.Exists())
    return std::string(VersionResource(file.bytes));
  machine::RecordFault(found.string() + ": " + std::strerror(file.error));
  return {};
}

// ---- The tree of nodes ----

// A node: sizes of itself and of its value, whether that is text, its key in UTF-16, then value and children, each on a
// boundary of four bytes.
struct Node {
  size_t offset;
  size_t size;
  size_t valueOffset;
  size_t valueSize; // in bytes
  bool text;
  std::u16string key;
};

std::optional<Node> ReadNode(std::string_view block, size_t offset, size_t end) {
  const auto size = At<uint16_t>(block, offset);
  const auto valueSize = At<uint16_t>(block, offset + 2);
  const auto type = At<uint16_t>(block, offset + 4);
  if (!size || !valueSize || !type || *size < 6 || offset + *size > std::min(end, block.size()))
    return std::nullopt;
  Node node{offset, *size, 0, 0, *type == 1, {}};
  const size_t nodeEnd = offset + *size;
  size_t at = offset + 6;
  for (;; at += 2) {
    const auto unit = At<char16_t>(block, at);
    if (!unit || at + 2 > nodeEnd)
      return std::nullopt;
    if (*unit == 0)
      break;
    node.key += *unit;
  }
  node.valueOffset = std::min(Aligned(at + 2), nodeEnd);
  node.valueSize = std::min<size_t>(size_t{*valueSize} * (node.text ? 2 : 1), nodeEnd - node.valueOffset);
  return node;
}

std::optional<Node> FindChild(std::string_view block, const Node &parent, std::u16string_view key) {
  const size_t end = parent.offset + parent.size;
  for (size_t at = Aligned(parent.valueOffset + parent.valueSize); at < end;) {
    std::optional<Node> child = ReadNode(block, at, end);
    if (!child)
      return std::nullopt;
    if (text::SameName(child->key, key))
      return child;
    at = Aligned(at + child->size);
  }
  return std::nullopt;
}

std::optional<Node> FindNode(std::string_view block, std::u16string_view path) {
  std::optional<Node> node = ReadNode(block, 0, block.size());
  for (auto key = text::TakeName(path); node && !key.empty(); key = text::TakeName(path))
    node = FindChild(block, *node, key);
  return node;
}

// ---- The caller's block ----

// Ahead of the resource in the caller's block stands its size; behind it there is as much room for a converted text.
constexpr size_t BlockHeader = sizeof(DWORD);

// The text of a node in code page 932, up to its first terminator.
std::string TextOf(std::string_view block, const Node &node) {
  const std::u16string stored = text::WideOf(block.substr(node.valueOffset, node.valueSize));
  return text::FromWide(std::u16string_view(stored).substr(0, stored.find(u'\0')));
}

} // namespace

DWORD GetFileVersionInfoSizeA(const char *path, DWORD *handle) {
  if (handle != nullptr)
    *handle = 0;
  const std::string resource = ReadVersionResource(path);
  return resource.empty() ? 0 : static_cast<DWORD>(BlockHeader + 2 * Aligned(resource.size()));
}

BOOL GetFileVersionInfoA(const char *path, DWORD, DWORD size, void *data) {
  const std::string resource = ReadVersionResource(path);
  if (resource.empty())
    return FALSE;
  if (size < BlockHeader)
    return FALSE;
  // A block that is too small gets as much as leaves room for converted texts.
  const size_t room = (size - BlockHeader) / 2 & ~size_t{3};
  const auto length = static_cast<DWORD>(std::min(resource.size(), room));
  std::memset(data, 0, size);
  std::memcpy(data, &length, sizeof length);
  std::memcpy(static_cast<char *>(data) + BlockHeader, resource.data(), length);
  return TRUE;
}

BOOL VerQueryValueA(const void *data, const char *query, void **value, UINT *size) {
  DWORD length = 0;
  std::memcpy(&length, data, sizeof length);
  // The block is the caller's to write to; the call's signature only doesn't say so.
  char *const begin = static_cast<char *>(const_cast<void *>(data)) + BlockHeader;
  const std::string_view block(begin, length);
  const std::optional<Node> node = FindNode(block, text::ToWide(query));
  if (!node)
    return FALSE;
  if (!node->text) {
    *value = begin + node->valueOffset;
    *size = static_cast<UINT>(node->valueSize);
    return TRUE;
  }
  // A text is converted into the room behind the resource, at the place that mirrors its own; code page 932 never needs
  // more bytes than UTF-16.
  const std::string converted = TextOf(block, *node);
  if (!converted.empty() && converted.size() >= node->valueSize)
    return FALSE;
  char *const room = begin + Aligned(length) + node->valueOffset;
  if (!converted.empty())
    std::memcpy(room, converted.c_str(), converted.size() + 1);
  *value = converted.empty() ? const_cast<char *>("") : room;
  *size = static_cast<UINT>(converted.size() + 1);
  return TRUE;
}
