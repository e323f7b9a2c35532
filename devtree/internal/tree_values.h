// Reading values of a configuration tree into buffers of fixed size.
#pragma once

#include <cstddef>
#include <string>

#include "platform/config_tree.h"

namespace orvaneip {

// The default of reads: what they deliver where there is no value. As a node list, the empty list.
inline constexpr char kNoValue[] = "NULL";

// Reads the value at the path, or the default when it does not exist.
template <std::size_t kSize, typename... Names>
void read_value(void* tree, const char* default_value, char (&buffer)[kSize], Names... path) {
  buffer[0] = '\0';
  xmlcfg_get_str(tree, default_value, buffer, static_cast<int>(kSize), path..., nullptr);
}

// Returns true when there is a value at the path and it equals `value`.
template <typename... Names>
bool holds_value(void* tree, const std::string& value, Names... path) {
  std::string stored(value.size() + 2, '\0');
  const char* const other = value.empty() ? kNoValue : "";
  xmlcfg_get_str(tree, other, stored.data(), static_cast<int>(stored.size()), path..., nullptr);
  return stored.c_str() == value;
}

}  // namespace orvaneip
