#include "devfilter/device_filtering.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/log_sinks.h"

namespace {

constexpr char kFunction[] = "devcfg_do_filtering";
constexpr int kNoRule = 0;

enum RuleType { kReplace = 0, kRecognise = 1, kBreakLine = 2 };

char lower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte; }

// Without the locale that strcasecmp looks at.
bool equal_but_for_case(const char* one, const char* other) {
  while (*one != '\0' && (*one == *other || lower(*one) == lower(*other))) {
    ++one;
    ++other;
  }
  return lower(*one) == lower(*other);
}

// How a text begins: its first bytes, up to its terminator, as a number that most other texts are
// told apart by.
class Beginning {
 public:
  explicit Beginning(const char* text) {
    const std::size_t counted = std::min(strnlen(text, sizeof(bytes_)) + 1, sizeof(bytes_));
    std::memcpy(&bytes_, text, counted);
    std::memset(&counted_, 0xFF, counted);
  }

  // `field` is a whole field of a record, so that the bytes are there.
  bool is_that_of(const char (&field)[kRuleTextBytes]) const {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, field, sizeof(bytes));
    return ((bytes ^ bytes_) & counted_) == 0;
  }

 private:
  std::uint64_t bytes_ = 0;
  std::uint64_t counted_ = 0;
};

// One text on its way through the rules of a device.
class Search {
 public:
  Search(const char* text, char* output, int output_size_bytes, const char* device_id)
      : text_(text),
        beginning_(text),
        output_(output),
        output_size_(static_cast<std::size_t>(output_size_bytes)),
        device_id_(device_id) {}

  int try_filter(const filter& tried) {
    if (tried.enable == 0) {
      log_Debug(
          "[libdevcfg] %s() pchDevId=[%s],chFilterName=[%s], nEnable=[%d]. This filter is "
          "disabled.",
          kFunction, device_id_, tried.name, tried.enable);
      return kNoRule;
    }
    for (const rule& next : tried.rule_list) {
      if (const int result = try_rule(next); result != kNoRule) {
        return result;
      }
    }
    return kNoRule;
  }

 private:
  // Most rules of a search are enabled and do not apply: for them this costs a comparison.
  int try_rule(const rule& tried) {
    if (tried.enable == 0 || !is_known(tried.type)) [[unlikely]] {
      tell_passed_over(tried);
      return kNoRule;
    }
    if (tried.type == kReplace && !cleared_) {
      clear_output();
    }
    if (!beginning_.is_that_of(tried.target) || std::strcmp(tried.target, text_) != 0) [[likely]] {
      return kNoRule;
    }
    return apply(tried);
  }

  static bool is_known(std::int32_t type) { return static_cast<std::uint32_t>(type) <= kBreakLine; }

  [[gnu::noinline]] void tell_passed_over(const rule& tried) const {
    if (tried.enable == 0) {
      log_Debug(
          "DevId=[%s],RuleName=[%s], Type=[%d], enable=[%d],target=[%s],Result=[%s]. This rule is "
          "disabled.",
          device_id_, tried.name, tried.type, tried.enable, tried.target, tried.result);
    } else {
      log_Debug("[libdevcfg] pchDevId=[%s],unknown type=[%d]", device_id_, tried.type);
    }
  }

  [[gnu::noinline]] int apply(const rule& found) {
    switch (found.type) {
      case kReplace:
        return write(found.result, 1);
      case kRecognise:
        return 2;
      default:
        return write("\r\n", 3);
    }
  }

  // Once is enough: until a rule applies nothing else writes.
  [[gnu::noinline]] void clear_output() {
    std::memset(output_, 0, output_size_);
    cleared_ = true;
  }

  // Up to output size less 2 characters and a terminator.
  int write(const char* replacement, int result) {
    if (output_size_ > 1) {
      const std::size_t length = strnlen(replacement, output_size_ - 2);
      std::memcpy(output_, replacement, length);
      output_[length] = '\0';
    }
    return result;
  }

  const char* text_;
  const Beginning beginning_;
  char* output_;
  std::size_t output_size_;
  const char* device_id_;
  bool cleared_ = false;
};

}  // namespace

int devcfg_match_filters(const char* text, char* output, int output_size_bytes,
                         const char* device_id, const std::vector<dev_filter>& devices) {
  if (devices.empty() || text == nullptr || output == nullptr || output_size_bytes < 1 ||
      device_id == nullptr) {
    return kNoRule;
  }
  const auto device = std::find_if(devices.begin(), devices.end(), [&](const dev_filter& entry) {
    return equal_but_for_case(entry.device_id, device_id);
  });
  if (device == devices.end()) {
    log_Debug("[libdevcfg] %s() No filter rules for device_id=[%s]", kFunction, device_id);
    return kNoRule;
  }
  Search search(text, output, output_size_bytes, device_id);
  for (const filter& next : device->filter_list) {
    if (const int result = search.try_filter(next); result != kNoRule) {
      return result;
    }
  }
  return kNoRule;
}

// NOLINTBEGIN(performance-unnecessary-value-param): the copy is the interface's
int devcfg_do_filtering(char* text, int /*text_length*/, char* output, int output_size_bytes,
                        char* device_id, std::vector<dev_filter> devices) {
  return devcfg_match_filters(text, output, output_size_bytes, device_id, devices);
}
// NOLINTEND(performance-unnecessary-value-param)
