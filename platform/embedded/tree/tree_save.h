// Puts the text of a configuration tree in place of its file.
#pragma once

#include <sys/stat.h>

#include <string>

#include "platform/embedded/tree/xml/document_text.h"

namespace orvaneplatform {

// Replaces the file at `path`, which is no symbolic link, by one of this text, durably and in one
// step: PATH.saving is written, synchronised and renamed, and the folder synchronised. `old` gives
// the mode and the owner, which the new file has to get. The caller holds the lock of the file, so
// that a PATH.saving is what a writer left behind that was killed; it is removed. On failure false
// and a log line, the old file stands, and nothing is left beside it.
bool replace_file(const std::string& path, const TreeText& text, const struct stat& old);

}  // namespace orvaneplatform
