#include "platform/log_sinks.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
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

using Text = std::unique_ptr<char, decltype(&std::free)>;

// The bytes of the control character at the start of `text`; 0 when it is none. U+0080 to U+009F,
// which some terminals obey, are 0xC2 and a byte from 0x80 to 0x9F.
std::size_t control_length(const char* text, std::size_t length) {
  const auto byte = static_cast<unsigned char>(*text);
  if (byte == 0xC2 && length > 1 && (static_cast<unsigned char>(text[1]) & 0xE0) == 0x80) {
    return 2;
  }
  return byte < 0x20 || byte == 0x7F ? 1 : 0;
}

bool has_controls(const char* text, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    if (control_length(text + i, length - i) > 0) {
      return true;
    }
  }
  return false;
}

// Copies the text with each byte of a control character as \xNN, and ends it. `escaped` has room
// for four times the text. Returns the length.
std::size_t escape_controls(char* escaped, const char* text, std::size_t length) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::size_t size = 0;
  std::size_t controls = 0;
  for (std::size_t i = 0; i < length; ++i) {
    controls = std::max(controls, control_length(text + i, length - i));
    if (controls == 0) {
      escaped[size++] = text[i];
      continue;
    }
    --controls;
    const auto byte = static_cast<unsigned char>(text[i]);
    for (const char written : {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0x0F]}) {
      escaped[size++] = written;
    }
  }
  escaped[size] = '\0';
  return size;
}

// `line` has a terminator after its `length`, and loses it.
void write_line(int target, char* line, std::size_t length) {
  if (target == kSyslog) {
    syslog(LOG_DEBUG, "%s", line);
    return;
  }
  line[length] = '\n';
  // One write call for each line, so that lines of several writers do not mix.
  [[maybe_unused]] const ssize_t written = write(target, line, length + 1);
}

// `text` has a terminator after its `length`. A line feed that ends the message ends the line;
// inside a name it must not begin another one.
void write_record(int target, char* text, std::size_t length) {
  if (length > 0 && text[length - 1] == '\n') {
    text[--length] = '\0';
  }
  if (!has_controls(text, length)) {
    write_line(target, text, length);
  } else if (const Text escaped(static_cast<char*>(std::malloc(4 * length + 2)), std::free);
             escaped != nullptr) {
    write_line(target, escaped.get(), escape_controls(escaped.get(), text, length));
  }
}

__attribute__((format(printf, 1, 0))) void emit(const char* format, va_list arguments) {
  const int target = destination();
  if (target == kOff) {
    return;
  }
  va_list again;
  va_copy(again, arguments);
  char buffer[1024];
  const int length = std::vsnprintf(buffer, sizeof(buffer), format, arguments);
  if (length >= 0) {
    const auto size = static_cast<std::size_t>(length);
    if (size < sizeof(buffer)) {
      write_record(target, buffer, size);
    } else if (const Text text(static_cast<char*>(std::malloc(size + 1)), std::free);
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
