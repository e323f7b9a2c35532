#include "platform/log_sinks.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "base/control_characters.h"

namespace {

constexpr int kOff = -1;
constexpr int kSyslog = -2;

// Returns a file descriptor, kOff or kSyslog.
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
  const int file = open(setting, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kLogFileMode);
  return file >= 0 ? file : STDERR_FILENO;
}

// Opened by the first message of the process.
int destination() {
  static const int kDestination = open_destination();
  return kDestination;
}

void write_line(int target, std::string line) {
  if (target == kSyslog) {
    syslog(LOG_DEBUG, "%s", line.c_str());
    return;
  }
  line += '\n';
  // One write call for each line, so that lines of several writers do not mix.
  [[maybe_unused]] const ssize_t written = write(target, line.data(), line.size());
}

// A line feed at the end of the message ends the line; anywhere else it must not begin another one.
void write_message(int target, std::string_view message) {
  if (message.ends_with('\n')) {
    message.remove_suffix(1);
  }
  write_line(target, base::escape_control_characters(message, base::LineFeeds::kEscape));
}

__attribute__((format(printf, 1, 0))) void emit(const char* format, va_list arguments) {
  const int target = destination();
  char* text = nullptr;
  const int length = target != kOff ? vasprintf(&text, format, arguments) : -1;
  if (length < 0) {
    return;
  }
  const std::unique_ptr<char, decltype(&std::free)> owner(text, std::free);
  try {
    write_message(target, {text, static_cast<std::size_t>(length)});
  } catch (const std::bad_alloc&) {
    // A message that there is no memory for is dropped.
  }
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
