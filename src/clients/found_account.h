// The answer of a search for an account, as MailClient and NewsClient promise it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// 1 with the key of the account that was found and the question about it, or 0 with both as they were.
inline int32_t AnswerFound(const std::optional<std::string> &found, const std::string &question, std::string &key,
                           std::string &message) {
  if (!found)
    return 0;
  key = *found;
  message = question;
  return 1;
}
