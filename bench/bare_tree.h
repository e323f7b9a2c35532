// The references of the configuration tree: the same work on the same file without the library.
#pragma once

#include <string>

namespace bench {

// Loads the device tree with libxml2 and reads all values of its nodes in one walk. Returns the sum
// of their lengths in bytes.
std::size_t libxml2_read_all(const std::string& path);

// Parses the file with pugixml's defaults. Returns true when it is well-formed.
bool pugixml_parse(const std::string& path);

// Writes a new file beside `path`, syncs it, renames it to `path` and syncs the directory. Returns
// false when a step fails.
bool plain_replace(const std::string& directory, const std::string& path, const std::string& bytes);

}  // namespace bench
