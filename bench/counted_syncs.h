// Counts the file synchronisations of this process, whichever library makes them.
#pragma once

namespace bench {

int sync_count();

}  // namespace bench
