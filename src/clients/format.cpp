#include "clients/format.h"

std::string FormatTexts(std::string_view format, std::initializer_list<std::string_view> texts) {
  std::string result;
  for (const std::string_view text : texts) {
    const size_t end = format.find("%s");
    result.append(format.substr(0, end)).append(text);
    format.remove_prefix(end + 2);
  }
  return result.append(format);
}

std::string Below(std::string_view parent, std::string_view name) {
  return std::string(parent).append("\\").append(name);
}
