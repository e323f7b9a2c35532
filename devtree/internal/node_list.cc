#include "devtree/internal/node_list.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace orvaneip {

NodeName node_name(int number) {
  NodeName name{};
  std::snprintf(name.text, sizeof(name.text), "device_%03d", number);
  return name;
}

std::optional<int> node_number(std::string_view name) {
  const std::size_t mark = name.find('_');
  int number = 0;
  if (mark == std::string_view::npos) {
    return std::nullopt;
  }
  const char* end = name.data() + name.size();
  const auto [rest, error] = std::from_chars(name.data() + mark + 1, end, number);
  return error == std::errc() && number >= 0 ? std::optional(number) : std::nullopt;
}

std::vector<char*> split_in_place(char* list) {
  std::vector<char*> names;
  char* rest = nullptr;
  for (char* name = strtok_r(list, ",", &rest); name != nullptr;
       name = strtok_r(nullptr, ",", &rest)) {
    names.push_back(name);
  }
  return names;
}

}  // namespace orvaneip
