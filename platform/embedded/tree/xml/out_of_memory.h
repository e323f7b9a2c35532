// How pugixml reports that there is no memory.
#pragma once

#include <new>

namespace orvaneplatform {

// Throws std::bad_alloc unless `done`, the result of a change by pugixml: it is false when memory
// ran out, and the change may be half made.
inline void throw_if_out_of_memory(bool done) {
  if (!done) {
    throw std::bad_alloc();
  }
}

}  // namespace orvaneplatform
