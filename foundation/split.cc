#include "foundation/split.h"

#include <sstream>

std::vector<std::string>& split(const std::string& text, char delimiter,
                                std::vector<std::string>& items) {
  std::stringstream stream(text);
  for (std::string item; std::getline(stream, item, delimiter);) {
    items.push_back(item);
  }
  return items;
}

std::vector<std::string> split(const std::string& text, char delimiter) {
  std::vector<std::string> items;
  split(text, delimiter, items);
  return items;
}
