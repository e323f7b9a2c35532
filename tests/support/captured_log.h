// The messages of the library, kept instead of printed: the test program's own log sinks come
// before the platform's.
#pragma once

#include <string>
#include <vector>

namespace test {

// Returns the messages of orvane_log_debug and log_Debug since the last call. A line
// number in a tag, "(name:123)" or "(name,123)" or "[name](123)", reads "(name:N)" and so on.
std::vector<std::string> take_log();

// Returns those of one sink, and drops the others.
std::vector<std::string> take_product_log();  // orvane_log_debug
std::vector<std::string> take_debug_log();    // log_Debug

}  // namespace test
