// Writes a configuration tree back.
#pragma once

#include <pugixml.hpp>
#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/embedded/tree_file.h"

namespace orvaneplatform {

// The document as the bytes of its file. Quotation marks in its attributes become references.
std::string tree_text(TreeFile& tree);

// One element with everything under it, as bytes.
std::string element_text(pugi::xml_node element);

// Replaces the file at `path`, which is no symbolic link, by one of these bytes, durably and in one
// step: PATH.saving is written, synchronised and renamed, and the folder synchronised. `old` gives
// the mode and the owner, which the new file has to get. The caller holds the lock of the file, so
// that a PATH.saving is what a writer left behind that was killed; it is removed. On failure false
// and a log line, the old file stands, and nothing is left beside it.
bool replace_file(const std::string& path, std::string_view bytes, const struct stat& old);

}  // namespace orvaneplatform
