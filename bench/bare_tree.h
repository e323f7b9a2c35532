// The same work on the same file with other means: what the configuration tree is measured against.
#pragma once

#include <string>

namespace bench {

// Loads the device tree with libxml2 and walks once through its nodes to read all their values.
// Their joined length in bytes.
std::size_t libxml2_read_all(const std::string& path);

// Parses the file with pugixml's own defaults. True when it is well-formed.
bool pugixml_parse(const std::string& path);

// Writes a new file beside `path`, synchronises it, renames it to `path` and synchronises the
// folder.
bool plain_replace(const std::string& folder, const std::string& path, const std::string& bytes);

}  // namespace bench
