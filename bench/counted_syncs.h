// Counts the calls of fsync and fdatasync in this process, whichever library makes them.
#pragma once

namespace bench {

int sync_count();

}  // namespace bench
