#include "utf8.h"

#include "usage.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

std::string ReadFile(const std::string &path) {
  constexpr std::streamsize Most = 1 << 20;
  std::ifstream file(std::filesystem::path(reinterpret_cast<const char8_t *>(path.c_str())), std::ios::binary);
  std::string text(static_cast<size_t>(Most) + 1, '\0');
  file.read(text.data(), Most + 1);
  if (file.bad() || (!file && !file.eof()))
    throw UsageError(path + ": the file can't be read");
  if (file.gcount() > Most)
    throw UsageError(path + ": the file has more than a megabyte");
  text.resize(static_cast<size_t>(file.gcount()));
  return text;
}

} // namespace

void ForEachLine(const std::string &path, const std::function<void(const std::string &line, size_t number)> &take) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  const std::string text = ReadFile(path);
  std::string_view left = text;
  if (left.starts_with(ByteOrderMark))
    left.remove_prefix(ByteOrderMark.size());
  for (size_t number = 1; !left.empty(); ++number) {
    std::string line(left.substr(0, left.find('\n')));
    left.remove_prefix(std::min(left.size(), line.size() + 1));
    if (line.ends_with('\r'))
      line.pop_back();
    try {
      if (!IsUtf8(line) || line.find('\0') != std::string::npos)
        throw UsageError("the line is no text in UTF-8");
      take(line, number);
    } catch (const UsageError &error) {
      throw UsageError(path + ':' + std::to_string(number) + ": " + error.what());
    }
  }
}
