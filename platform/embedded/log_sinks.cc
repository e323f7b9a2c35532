#include "platform/log_sinks.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

constexpr int kOff = -1;
constexpr int kSyslog = -2;

// A file descriptor, kOff or kSyslog.
int open_destination() {
  const char* setting = std::getenv("ORVANE_LOG");
  const std::string_view name = setting != nullptr ? setting : "";
  if (name.empty() || name == "stderr") {
    return STDERR_FILENO;
  }
  if (name == "off") {
    return kOff;
  }
  if (name == "syslog") {
    return kSyslog;
  }
  const int file = open(setting, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  return file >= 0 ? file : STDERR_FILENO;
}

// Settled by the first message of the process.
int destination() {
  static const int opened = open_destination();
  return opened;
}

void write_line(int file, const char* text, std::size_t length) {
  // One write call for each line, so that lines of several writers do not mix.
  [[maybe_unused]] const ssize_t written = write(file, text, length);
}

// `text` has room for one more byte after its `length`.
void write_record(int target, char* text, std::size_t length) {
  if (target == kSyslog) {
    syslog(LOG_DEBUG, "%s", text);
    return;
  }
  if (length == 0 || text[length - 1] != '\n') {
    text[length++] = '\n';
  }
  write_line(target, text, length);
}

__attribute__((format(printf, 1, 0))) void emit(const char* format, va_list arguments) {
  const int target = destination();
  if (target == kOff) {
    return;
  }
  va_list again;
  va_copy(again, arguments);
  char buffer[1024];
  const int length = std::vsnprintf(buffer, sizeof(buffer) - 1, format, arguments);
  if (length >= 0) {
    const auto size = static_cast<std::size_t>(length);
    if (size < sizeof(buffer) - 1) {
      write_record(target, buffer, size);
    } else if (const std::unique_ptr<char, decltype(&std::free)> text(
                   static_cast<char*>(std::malloc(size + 2)), std::free);
               text != nullptr) {
      std::vsnprintf(text.get(), size + 1, format, again);
      write_record(target, text.get(), size);
    }
  }
  va_end(again);
}

}  // namespace

void log_Debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  emit(format, arguments);
  va_end(arguments);
}

void orvane_log_debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  emit(format, arguments);
  va_end(arguments);
}
