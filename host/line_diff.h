// The lines in which two texts differ.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

struct LineChange {
  bool isNew = false;    // else it is gone
  size_t number = 0;     // from 1, in the text that has the line
  std::string_view line; // into that text, without its line feed
};

// In the order of the texts, what is gone before what is new in its place. As few lines as can be, unless the texts are
// so large that finding those would take long.
std::vector<LineChange> CompareLines(std::string_view before, std::string_view after);
