// Reading JSON documents that a person hands over.
#pragma once

#include <cstddef>
#include <string>

#include "cli/json.h"

namespace devcfg {

// A larger file is refused: the whole vault of 128 data sources is far below.
inline constexpr std::size_t kJsonFileBytes = std::size_t{16} << 20;

// Reads the file, or standard input when `name` is "-". Strict JSON, at most 32 levels deep.
// Refusal with the file's name when it cannot be read, is too large, or is no JSON: then with the
// line and column (in bytes, from 1). The document null is a null pointer.
Json read_json_file(const std::string& name);

// The name of the file in messages.
std::string shown_name(const std::string& name);

}  // namespace devcfg
