// The platform's two log functions. Every message of the library goes to one of them.
//
// What the library relies on:
//  - `format` is a printf format, expanded with the arguments that follow; neither is kept.
//  - A message ends in a newline or it does not; a sink that writes lines ends each one once.
//  - Any number of threads may call at once. Nothing is returned: a sink that cannot write drops
//    the message.
//
// The embedded platform writes to standard error, or to where the environment variable ORVANE_LOG
// says when the first message arrives: `off`, `stderr`, `syslog`, or a file's path (appended to,
// created with mode 0600). Each message is one write of one line, of any length: control characters
// inside it, line feeds included, are written as \xNN, so that no name can forge a line.
#pragma once

#include "platform/export.h"

extern "C" {

// Debug log: `CSqlite` and the device rule filters.
ORVANEIP_API void log_Debug(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Product log: everything else.
ORVANEIP_API void orvane_log_debug(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // extern "C"
