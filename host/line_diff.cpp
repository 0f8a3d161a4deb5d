#include "line_diff.h"

#include <algorithm>
#include <cstdint>

namespace {

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    lines.push_back(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(text.size(), lines.back().size() + 1));
  }
  return lines;
}

// How many lines two lists have in common, in order, behind each pair of places in them.
class CommonLines {
public:
  CommonLines(const std::vector<std::string_view> &left, const std::vector<std::string_view> &right)
      : columns(right.size() + 1) {
    constexpr size_t MostPairs = 1 << 24;
    if (left.size() * right.size() > MostPairs)
      return;
    counts.resize((left.size() + 1) * columns);
    for (size_t row = left.size(); row-- > 0;)
      for (size_t column = right.size(); column-- > 0;)
        counts[row * columns + column] = left[row] == right[column]
                                             ? Behind(row + 1, column + 1) + 1
                                             : std::max(Behind(row + 1, column), Behind(row, column + 1));
  }

  // 0 everywhere in lists that are too long to count.
  uint32_t Behind(size_t row, size_t column) const { return counts.empty() ? 0 : counts[row * columns + column]; }

private:
  size_t columns;
  std::vector<uint32_t> counts;
};

} // namespace

std::vector<LineChange> CompareLines(std::string_view before, std::string_view after) {
  std::vector<std::string_view> left = LinesOf(before);
  std::vector<std::string_view> right = LinesOf(after);
  const auto same = std::ranges::mismatch(left, right).in1 - left.begin();
  left.erase(left.begin(), left.begin() + same);
  right.erase(right.begin(), right.begin() + same);
  while (!left.empty() && !right.empty() && left.back() == right.back()) {
    left.pop_back();
    right.pop_back();
  }

  const CommonLines common(left, right);
  std::vector<LineChange> changes;
  const auto first = static_cast<size_t>(same) + 1;
  size_t row = 0;
  size_t column = 0;
  while (row < left.size() || column < right.size()) {
    const bool bothLeft = row < left.size() && column < right.size();
    if (bothLeft && left[row] == right[column]) {
      ++row;
      ++column;
    } else if (column == right.size() ||
               (bothLeft && common.Behind(row + 1, column) >= common.Behind(row, column + 1))) {
      changes.push_back({false, first + row, left[row]});
      ++row;
    } else {
      changes.push_back({true, first + column, right[column]});
      ++column;
    }
  }
  return changes;
}
