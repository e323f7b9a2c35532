// Limits and waits of the configuration tree.
#pragma once

#include <cstddef>

// A larger file is neither opened nor written: 64 MiB.
inline constexpr std::size_t kMaxTreeFileBytes = std::size_t{64} << 20;

// The number of elements that may be nested, in a file and in a path.
inline constexpr std::size_t kMaxTreeDepth = 256;

// How long opening a file for change waits for another writer of it, in milliseconds.
inline constexpr int kTreeLockWaitMs = 10'000;
