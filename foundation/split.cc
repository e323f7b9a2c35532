#include "foundation/split.h"

#include <algorithm>
#include <iterator>

std::vector<std::string> split(const std::string& text, char delimiter) {
  std::vector<std::string> items;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(delimiter, start), text.size());
    items.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return items;
}

std::vector<std::string>& split(const std::string& text, char delimiter,
                                std::vector<std::string>& items) {
  std::vector<std::string> found = split(text, delimiter);
  items.insert(items.end(), std::make_move_iterator(found.begin()),
               std::make_move_iterator(found.end()));
  return items;
}
