// Writing a file in one step.
#pragma once

#include <string>

namespace devcfg {

// Writes `bytes` to the file `name` with mode 0600, durably: whoever opens it, also after a crash,
// finds what was there before or all of the new content. Symbolic links are followed. Refusal, and
// nothing left behind, when that is not possible or `name` is something else than a regular file.
void write_file_atomically(const std::string& name, const std::string& bytes);

}  // namespace devcfg
