// Rules on a text, against the plain steps.
// Input: how much the text may grow in bytes, the text, and a target and a result for each rule.
#include <cstring>
#include <memory>

#include "bench/literal_filter.h"
#include "fuzz/fuzz.h"

// Returns a buffer of exactly the capacity, so that ASan detects each byte beyond it.
static std::unique_ptr<char[]> buffer_of(const std::string& text, std::size_t capacity) {
  auto buffer = std::make_unique<char[]>(capacity);
  std::strcpy(buffer.get(), text.c_str());
  return buffer;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> texts = fuzz::texts_of(data, size, 2);
  std::vector<rule> rules;
  for (std::size_t i = 2; i + 1 < texts.size() && rules.size() < 8; i += 2) {
    rules.push_back(bench::make_rule(texts[i], texts[i + 1]));
  }
  const std::size_t room = std::strtoul(texts[0].c_str(), nullptr, 10) % 5'000;
  const std::size_t capacity = texts[1].size() + 1 + room;
  const auto expected = buffer_of(texts[1], capacity);
  const bench::LiteralOutcome steps = bench::filter_literally(rules, expected.get(), capacity);
  const auto filtered = buffer_of(texts[1], capacity);
  FilterReport report;
  do_filtering_bounded(rules, filtered.get(), capacity, report);
  fuzz::require(std::strcmp(filtered.get(), expected.get()) == 0, "the text is that of the steps");
  fuzz::require(report.outcome == (steps.met_capacity         ? kFilterCapacity
                                   : steps.limit_messages > 0 ? kFilterPassLimit
                                                              : kFilterFinished) &&
                    report.passes == steps.passes && report.replacements == steps.replacements,
                "and so is the report");
  return 0;
}
