// Limits and waits of the vault database.
#pragma once

namespace metadata_vault {

// The largest number of data sources in a vault database. Stored vault databases enforce it
// themselves: it must not change.
inline constexpr int kMaxDataSources = 128;

// How long a writer of the embedded vault database waits for another writer before it fails with
// kVaultBusy, in milliseconds.
inline constexpr int kLockWaitMs = 10'000;

}  // namespace metadata_vault
