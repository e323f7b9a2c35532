// Limits and waits of the vault database.
#pragma once

#include <cstddef>
#include <cstdint>

// Sizes in bytes, terminator included, of the buffers that receive the name and the description of
// a data source. A longer text is cut to fit.
inline constexpr std::size_t kVaultNameBytes = 65;
inline constexpr std::size_t kDescriptionBytes = 513;

namespace metadata_vault {

// The type of a filter that has none: the reading of rules ends there.
inline constexpr std::int32_t kNoFilterType = -1;

// The largest number of data sources in a vault database. Stored vault databases enforce it
// themselves: it must not change.
inline constexpr int kMaxDataSources = 128;

// How long a writer of the embedded vault database waits for another writer before it fails with
// kVaultBusy, in milliseconds.
inline constexpr int kLockWaitMs = 10'000;

}  // namespace metadata_vault
