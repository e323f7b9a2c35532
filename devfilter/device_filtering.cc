#include "devfilter/device_filtering.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/ascii_case.h"
#include "platform/log_sinks.h"

namespace {

constexpr char kFunction[] = "devcfg_do_filtering";
constexpr int kNoRule = 0;

enum RuleType { kReplace = 0, kRecognise = 1, kBreakLine = 2 };

// The first bytes of a text, up to its terminator, as a number: most texts that differ have
// different keys.
class PrefixKey {
 public:
  explicit PrefixKey(const char* text) {
    const std::size_t size = std::min(strnlen(text, sizeof(bytes_)) + 1, sizeof(bytes_));
    std::memcpy(&bytes_, text, size);
    std::memset(&mask_, 0xFF, size);
  }

  // Takes a whole field of a record, so that all bytes of a key can be read.
  bool matches(const char (&field)[kRuleTextBytes]) const {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, field, sizeof(bytes));
    return ((bytes ^ bytes_) & mask_) == 0;
  }

 private:
  std::uint64_t bytes_ = 0;
  std::uint64_t mask_ = 0;
};

// Both return true when the field, which may lack its terminator, contains exactly the text.
bool holds_text(const char (&field)[kRuleTextBytes], std::string_view text) {
  return text.size() <= sizeof(field) && std::memcmp(field, text.data(), text.size()) == 0 &&
         (text.size() == sizeof(field) || field[text.size()] == '\0');
}

bool holds_id(const char (&field)[kFilterDeviceIdBytes], std::string_view id) {  // ignoring case
  return id.size() <= sizeof(field) && base::equal_ignoring_case({field, id.size()}, id) &&
         (id.size() == sizeof(field) || field[id.size()] == '\0');
}

// The search for a text among the rules of a device.
class Search {
 public:
  Search(const char* text, char* output, int output_size_bytes, const char* device_id)
      : text_(text, strnlen(text, kRuleTextBytes + 1)),
        key_(text),
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
      log_skipped(tried);
      return kNoRule;
    }
    if (tried.type == kReplace && !cleared_) {
      clear_output();
    }
    if (!key_.matches(tried.target) || !holds_text(tried.target, text_)) [[likely]] {
      return kNoRule;
    }
    return apply(tried);
  }

  static bool is_known(std::int32_t type) { return static_cast<std::uint32_t>(type) <= kBreakLine; }

  [[gnu::noinline]] void log_skipped(const rule& tried) const {
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
        return write({found.result, strnlen(found.result, kRuleTextBytes)}, 1);
      case kRecognise:
        return 2;
      default:
        return write("\r\n", 3);
    }
  }

  // Called once for a search: nothing else writes before a rule applies.
  [[gnu::noinline]] void clear_output() {
    std::memset(output_, 0, output_size_);
    cleared_ = true;
  }

  // Writes at most the output's size less 2 bytes, and a terminator.
  int write(std::string_view replacement, int result) {
    if (output_size_ > 1) {
      output_[replacement.copy(output_, output_size_ - 2)] = '\0';
    }
    return result;
  }

  const std::string_view text_;  // cut where it is too long for any rule
  const PrefixKey key_;
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
  const std::string_view id = device_id;
  const auto device = std::find_if(devices.begin(), devices.end(), [&](const dev_filter& entry) {
    return holds_id(entry.device_id, id);
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

// NOLINTBEGIN(performance-unnecessary-value-param): the interface takes a copy
int devcfg_do_filtering(char* text, int /*text_length*/, char* output, int output_size_bytes,
                        char* device_id, std::vector<dev_filter> devices) {
  return devcfg_match_filters(text, output, output_size_bytes, device_id, devices);
}
// NOLINTEND(performance-unnecessary-value-param)
