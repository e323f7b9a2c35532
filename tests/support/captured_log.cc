#include "tests/support/captured_log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <regex>
#include <utility>

#include "platform/log_sinks.h"

namespace {

enum Sink { kProduct, kDebug, kBoth };

std::mutex mutex;
std::vector<std::pair<Sink, std::string>> messages;

void keep(Sink sink, const char* format, va_list arguments) {
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) >= 0) {
    const std::lock_guard<std::mutex> lock(mutex);
    messages.emplace_back(sink, text);
    free(text);
  }
}

std::vector<std::string> take(Sink wanted) {
  static const std::regex kLine(R"(^(\[[^\]]*\]\((?:\w+[:,])?)\d+\))");
  const std::lock_guard<std::mutex> lock(mutex);
  std::vector<std::string> taken;
  for (const auto& [sink, text] : std::exchange(messages, {})) {
    if (wanted == kBoth || wanted == sink) {
      const bool has_tag = text.find("](") != std::string::npos;
      taken.push_back(has_tag ? std::regex_replace(text, kLine, "$1N)") : text);
    }
  }
  return taken;
}

}  // namespace

void log_Debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keep(kDebug, format, arguments);
  va_end(arguments);
}

void orvane_log_debug(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keep(kProduct, format, arguments);
  va_end(arguments);
}

namespace test {

std::vector<std::string> take_log() { return take(kBoth); }
std::vector<std::string> take_product_log() { return take(kProduct); }
std::vector<std::string> take_debug_log() { return take(kDebug); }

}  // namespace test
