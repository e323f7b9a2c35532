#include "textfilter/text_filter.h"

#include <cstring>

#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "textfilter/internal/rewriter.h"
#include "textfilter/rule_list.h"

namespace {

using orvaneip::BoundedText;
using orvaneip::RewriteEnd;
using orvaneip::RewriteResult;

constexpr const char* kFilteringName = "do_filtering";  // in log lines, also of other callers

// Returns how many replacements a rule may make after so many passes: at least one.
std::size_t replacement_limit(std::size_t passes) {
  return passes < kMaxFilterPasses ? orvaneip::kMaxRuleReplacements - passes : 1;
}

// Each replacement took a pass; so did a search that found nothing, or nothing that fits.
std::size_t passes_of(const RewriteResult& result) {
  const bool searched_once_more =
      result.end == RewriteEnd::kNoOccurrence || result.end == RewriteEnd::kCapacity;
  return result.replacements + (searched_once_more ? 1 : 0);
}

// Returns how many replacements were made.
std::size_t apply_rule(const rule& applied, BoundedText& text, FilterReport& report) {
  const RewriteResult result = orvaneip::rewrite(applied, replacement_limit(report.passes), text);
  report.passes += passes_of(result);
  if (result.end == RewriteEnd::kCapacity) {
    report.outcome = kFilterCapacity;
  } else if (result.end == RewriteEnd::kNoMemory) {
    report.outcome = kFilterNoMemory;
  } else if (result.end != RewriteEnd::kEndedText && report.passes > kMaxFilterPasses) {
    report.outcome = kFilterPassLimit;
    orvane_log_debug("[%s] Match more than 1000 times(!?)", kFilteringName);
  }
  return result.replacements;
}

bool ended_early(FilterOutcome outcome) {
  return outcome == kFilterCapacity || outcome == kFilterNoMemory;
}

FilterOutcome apply_rules(const std::vector<rule>& rules, BoundedText text, FilterReport& report) {
  report.outcome = kFilterFinished;
  for (std::size_t i = 0; i < rules.size() && !ended_early(report.outcome); ++i) {
    if (rules[i].target[0] != '\0') {
      report.replacements[i] = apply_rule(rules[i], text, report);
    }
  }
  return report.outcome;
}

void reset(FilterReport& report, std::size_t rule_count) {
  report.rules_result = kDevcfgOk;
  report.passes = 0;
  report.replacements.assign(rule_count, 0);
}

}  // namespace

FilterOutcome do_filtering_bounded(const std::vector<rule>& rules, char* text,
                                   std::size_t capacity_bytes, FilterReport& report) {
  reset(report, rules.size());
  const std::size_t length = text != nullptr ? strnlen(text, capacity_bytes) : capacity_bytes;
  if (length == capacity_bytes) {
    return report.outcome = kFilterRefused;
  }
  return apply_rules(rules, {text, length, capacity_bytes}, report);
}

FilterOutcome ft_filter_string_bounded(char* vault_id, char* text, std::size_t capacity_bytes,
                                       FilterReport& report) {
  std::vector<rule> rules;
  const int rules_result = get_rule_list(vault_id, rules);
  do_filtering_bounded(rules, text, capacity_bytes, report);
  report.rules_result = rules_result;
  return report.outcome;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface has it so
int do_filtering(std::vector<rule> rules, char*& text) {
  if (text == nullptr) {
    orvane_log_debug("[%s] There is no text", kFilteringName);
    return kDevcfgFiltered;
  }
  FilterReport report;
  reset(report, rules.size());
  const FilterOutcome outcome =
      apply_rules(rules, {text, std::strlen(text), kFilteredTextBytes}, report);
  if (outcome == kFilterCapacity) {
    orvane_log_debug("[%s] Stopped, the text would exceed %zu bytes", kFilteringName,
                     kFilteredTextBytes);
  } else if (outcome == kFilterNoMemory) {
    orvane_log_debug("[%s] Stopped, there is no memory for a rule", kFilteringName);
  }
  return kDevcfgFiltered;
}

int ft_filter_string(char* vault_id, char* text) {
  std::vector<rule> rules;
  get_rule_list(vault_id, rules);
  return do_filtering(std::move(rules), text);
}
