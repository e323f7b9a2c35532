#include "foundation/logging.h"

#include <cstdarg>
#include <cstdio>

#include "platform/log_sinks.h"

namespace {

struct Message {
  char text[kLogMessageBytes] = {};
};

__attribute__((format(printf, 2, 0))) void format_message(Message& message, const char* format,
                                                          va_list arguments) {
  if (std::vsnprintf(message.text, sizeof(message.text), format, arguments) < 0) {
    message.text[0] = '\0';
  }
}

}  // namespace

void LogConsole(const char* format, ...) {
  Message message;
  va_list arguments;
  va_start(arguments, format);
  format_message(message, format, arguments);
  va_end(arguments);
  std::printf("%s\n", message.text);
}

void LogDebug(const char* format, ...) {
  Message message;
  va_list arguments;
  va_start(arguments, format);
  format_message(message, format, arguments);
  va_end(arguments);
  log_Debug("%s", message.text);
}
