// The two log functions that the library exports for the programs that load it.
#pragma once

#include <cstddef>

#include "platform/export.h"

// Size of the buffer that a message is formatted into, on the caller's stack: a longer message is
// cut to kLogMessageBytes - 1 characters.
inline constexpr std::size_t kLogMessageBytes = 8192;

// Writes the formatted message and one line feed to standard output. Thread-safe.
ORVANEIP_API void LogConsole(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Hands the formatted message to the platform's log_Debug, unchanged. Thread-safe.
ORVANEIP_API void LogDebug(const char* format, ...) __attribute__((format(printf, 1, 2)));
