// What CSqlite does about a database that another connection holds.
#pragma once

#include <sqlite3.h>
#include <unistd.h>

#include <optional>

#include "foundation/logging.h"

namespace orvaneip {

inline constexpr int kBusyAttempts = 100'000;
inline constexpr useconds_t kBusyPauseUs = 10;

inline bool is_busy(int result) {
  const int primary = result & 0xFF;
  return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

// Calls `attempt`, which returns its outcome as std::optional<bool>, until it is not empty (busy or
// locked). Attempts that are used up count as success: so the interface has it.
template <typename Attempt>
bool retry_while_busy(Attempt attempt) {
  for (int count = 0; count < kBusyAttempts; ++count) {
    if (const std::optional<bool> outcome = attempt()) {
      return *outcome;
    }
    LogDebug("[CSqlite] ExecSQL Busy or Locked, count= %d\n", count);
    usleep(kBusyPauseUs);
  }
  return true;
}

}  // namespace orvaneip
