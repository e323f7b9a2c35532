// The platform's two log functions. Every message of the library goes to one of them.
//
// What the library relies on:
//  - `format` is a printf format for the arguments that follow. The function keeps neither.
//  - A message may end in a newline or not. A sink that writes lines writes one line either way.
//  - Any number of threads may call at once. Nothing is returned: a sink that cannot write drops
//    the message.
//
// The embedded platform writes to standard error, or to the destination that the environment
// variable ORVANE_LOG names when the first message arrives: `off`, `stderr`, `syslog`, or a file's
// path (appended to; created with mode kLogFileMode). Each message is one write of one line, of any
// length. Control characters inside a message, line feeds included, are written as \xNN, so that a
// name cannot forge a log line.
#pragma once

#include "platform/export.h"

// Mode of a log file that the embedded platform creates: its owner may read and write it.
inline constexpr unsigned int kLogFileMode = 0600;

extern "C" {

// Debug log: `CSqlite` and the device rule filters.
ORVANEIP_API void log_Debug(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Product log: everything else.
ORVANEIP_API void orvane_log_debug(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // extern "C"
