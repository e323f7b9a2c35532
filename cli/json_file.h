// Reads JSON documents given by the user.
#pragma once

#include <cstddef>
#include <string>

#include "cli/json.h"

namespace devcfg {

// A larger file is rejected; the document of a full vault is far smaller.
inline constexpr std::size_t kMaxJsonFileMib = 16;
// Deeper documents are rejected.
inline constexpr int kMaxJsonDepth = 32;

// Reads the file, or standard input when `name` is "-", as strict JSON. Throws CommandError with
// the file's name when it cannot be read, is too large or is not JSON: then with the line and
// column (in bytes, from 1). Returns a null pointer for the document null.
Json read_json_file(const std::string& name);

// Returns the name of the file as messages show it.
std::string shown_name(const std::string& name);

}  // namespace devcfg
