// The command line as main receives it.
#pragma once

#include <string>
#include <vector>

namespace devcfg {

// Set before anything is parsed. Where several values are allowed, the parser reads an argument
// "[a]" as the list of "a": a command to which that matters reads the argument here.
inline std::vector<std::string> raw_arguments;

}  // namespace devcfg
