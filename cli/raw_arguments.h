// The command line as main got it.
#pragma once

#include <string>
#include <vector>

namespace devcfg {

// Set before anything is parsed. CLI11 takes an argument "[a]" for a list of one, "a", wherever
// several values may stand: a command for which that is not the same looks here.
inline std::vector<std::string> raw_arguments;

}  // namespace devcfg
