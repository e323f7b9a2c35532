// How long a connection waits for a lock of the vault's file that another one holds.
#pragma once

#include <chrono>
#include <thread>

#include "platform/vault_limits.h"

namespace orvaneplatform {

// The pause between two attempts to take a lock. The wait that SQLite offers pauses for up to 100
// ms and so hardly ever meets the moment between two changes of a writer that makes many.
inline constexpr int kLockPauseMs = 2;

// The wait for one lock, from its first refusal on.
class LockWait {
 public:
  // Pauses before the next attempt; false, at once, when kLockWaitMs have passed.
  bool pause() {
    if (std::chrono::steady_clock::now() >= deadline_) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(kLockPauseMs));
    return true;
  }

 private:
  std::chrono::steady_clock::time_point deadline_ =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(metadata_vault::kLockWaitMs);
};

}  // namespace orvaneplatform
