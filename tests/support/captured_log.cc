#include "tests/support/captured_log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <regex>
#include <utility>

#include "platform/log_sinks.h"

namespace {

struct Message {
  bool debug;
  std::string text;
};

std::mutex mutex;
std::vector<Message> messages;

void keep(bool debug, const char* format, va_list arguments) {
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) >= 0) {
    const std::lock_guard<std::mutex> lock(mutex);
    messages.push_back({debug, text});
    free(text);
  }
}

std::string without_line(const std::string& text) {
  if (text.find("](") == std::string::npos) {
    return text;
  }
  static const std::regex kLine(R"(^(\[[^\]]*\]\((?:\w+[:,])?)\d+\))");
  return std::regex_replace(text, kLine, "$1N)");
}

template <typename Wanted>
std::vector<std::string> take(Wanted wanted) {
  const std::lock_guard<std::mutex> lock(mutex);
  std::vector<std::string> taken;
  for (const Message& message : std::exchange(messages, {})) {
    if (wanted(message)) {
      taken.push_back(without_line(message.text));
    }
  }
  return taken;
}

}  // namespace

void log_Debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keep(true, format, arguments);
  va_end(arguments);
}

void orvane_log_debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keep(false, format, arguments);
  va_end(arguments);
}

namespace test {

std::vector<std::string> take_log() {
  return take([](const Message&) { return true; });
}
std::vector<std::string> take_product_log() {
  return take([](const Message& message) { return !message.debug; });
}
std::vector<std::string> take_debug_log() {
  return take([](const Message& message) { return message.debug; });
}

}  // namespace test
