// Wrong usage of the program: told in one line that names the argument, with exit status 2.
#pragma once

#include <stdexcept>
#include <string>

class UsageError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};
