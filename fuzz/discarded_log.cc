// Log lines are made, so that their arguments are read as a sink reads them, and dropped.
#include <cstdarg>
#include <cstdio>

#include "platform/log_sinks.h"

static __attribute__((format(printf, 1, 0))) void drop(const char* format, va_list arguments) {
  char line[256];
  std::vsnprintf(line, sizeof(line), format, arguments);
}

void log_Debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  drop(format, arguments);
  va_end(arguments);
}

void orvane_log_debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  drop(format, arguments);
  va_end(arguments);
}
