// The two log functions that the library exports for the programs that load it.
#pragma once

#include <cstddef>

#include "platform/export.h"

// Size in bytes of the buffer, on the caller's stack, that a message is formatted into. A longer
// message is cut to kLogMessageBytes - 1 bytes.
inline constexpr std::size_t kLogMessageBytes = 8192;

// Writes the formatted message and one line feed to standard output. Thread-safe.
ORVANEIP_API void LogConsole(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Passes the formatted message unchanged to the platform's log_Debug. Thread-safe.
ORVANEIP_API void LogDebug(const char* format, ...) __attribute__((format(printf, 1, 2)));
