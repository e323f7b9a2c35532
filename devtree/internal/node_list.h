// Node names, lists of them, and reading values into buffers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/config_tree.h"

namespace orvaneip {

// What a read that finds nothing delivers, and what stands for an empty list.
inline constexpr char kNone[] = "NULL";

inline constexpr std::size_t kNodeListBytes = 4096;
inline constexpr std::size_t kValueBytes = 128;

struct NodeName {
  char text[16];
};

// "device_%03d", cut to fit.
NodeName node_name(int number);

// The number after the first "_". Nothing when there is none that an int above or equal 0 holds.
std::optional<int> node_number(std::string_view name);

// Cuts `list` at "," in place. Empty names are left out.
std::vector<char*> cut_names(char* list);

// Reads the value at the path into a buffer of fixed size.
template <std::size_t kSize, typename... Names>
void read_value(void* tree, const char* default_value, char (&buffer)[kSize], Names... path) {
  buffer[0] = '\0';
  xmlcfg_get_str(tree, default_value, buffer, static_cast<int>(kSize), path..., nullptr);
}

// True when there is a value at the path, and it is `value`.
template <typename... Names>
bool holds_value(void* tree, const std::string& value, Names... path) {
  std::string stored(value.size() + 2, '\0');
  const char* const other = value.empty() ? kNone : "";
  xmlcfg_get_str(tree, other, stored.data(), static_cast<int>(stored.size()), path..., nullptr);
  return stored.c_str() == value;
}

}  // namespace orvaneip
