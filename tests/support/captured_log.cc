#include "tests/support/captured_log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <regex>
#include <utility>

#include "platform/log_sinks.h"

namespace {

enum Sink { kProduct = 1, kDebug = 2 };

std::mutex mutex;
std::vector<std::pair<Sink, std::string>> messages;

std::vector<std::string> take(int sinks) {
  static const std::regex kLine(R"(^(\[[^\]]*\]\((?:\w+[:,])?)\d+\))");
  const std::lock_guard<std::mutex> lock(mutex);
  std::vector<std::string> taken;
  for (const auto& [sink, text] : std::exchange(messages, {})) {
    const bool has_tag = text.find("](") != std::string::npos;  // the regular expression is slow
    if ((sinks & sink) != 0) {
      taken.push_back(has_tag ? std::regex_replace(text, kLine, "$1N)") : text);
    }
  }
  return taken;
}

}  // namespace

#define SINK(name, sink)                             \
  void name(const char* format, ...) {               \
    va_list arguments;                               \
    va_start(arguments, format);                     \
    char* text = nullptr;                            \
    if (vasprintf(&text, format, arguments) >= 0) {  \
      const std::lock_guard<std::mutex> lock(mutex); \
      messages.emplace_back(sink, text);             \
    }                                                \
    free(text);                                      \
    va_end(arguments);                               \
  }
SINK(log_Debug, kDebug)
SINK(orvane_log_debug, kProduct)

std::vector<std::string> test::take_log() { return take(kProduct | kDebug); }
std::vector<std::string> test::take_product_log() { return take(kProduct); }
std::vector<std::string> test::take_debug_log() { return take(kDebug); }
