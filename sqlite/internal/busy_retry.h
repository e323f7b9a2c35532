// The retries of CSqlite while another connection holds the database.
#pragma once

#include <sqlite3.h>
#include <unistd.h>

#include <optional>

#include "foundation/logging.h"
#include "sqlite/csqlite.h"

namespace orvaneip {

inline bool is_busy(int result) {
  const int primary = result & 0xFF;
  return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

// Calls `attempt` until it returns an outcome, and returns that; std::nullopt means busy or locked.
// Returns true when kSqliteBusyAttempts were not enough, as the interface requires.
template <typename Attempt>
bool retry_while_busy(Attempt attempt) {
  for (int count = 0; count < kSqliteBusyAttempts; ++count) {
    if (const std::optional<bool> outcome = attempt()) {
      return *outcome;
    }
    LogDebug("[CSqlite] ExecSQL Busy or Locked, count= %d\n", count);
    usleep(kSqliteBusyPauseUs);
  }
  return true;
}

}  // namespace orvaneip
