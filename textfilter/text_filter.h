// Rewriting a text by rules.
//
// The rules are applied first to last, each to the text that the ones before it left. A rule
// replaces the first occurrence of its target by its result, and searches again from the start of
// the text, until there is no occurrence. So a result is searched too: a rule whose result contains
// its target goes on until one of these ends it:
//  - A replacement that ends the text is the rule's last.
//  - Every search is a pass, the last one without an occurrence too, counted over all rules of a
//    call. Once the counter exceeds kMaxFilterPasses, "[%s] Match more than 1000 times(!?)" is
//    logged, and every later rule has one pass, after which it is logged again, unless that pass
//    ended the text.
//  - The filtered text, terminator included, must not exceed the capacity: the replacement that
//    would do so is not made, and the whole call ends there.
// The outcome is that of these steps, but not the cost: it grows with the text, and hardly with the
// number of replacements. The text always holds the outcome of the last whole replacement.
//
// Bytes are compared, case matters, and no byte of a result has a special meaning. `type`, `enable`
// and `name` of a rule are ignored. A rule with an empty target is skipped, without a pass. A
// target or result that lacks its terminator is cut to kRuleTextBytes - 1 bytes.
//
// A rule that can meet its own result again and grows the text works on a copy of the text, with
// room for the growth up to the capacity. When there is no memory for the copy, the rule is not
// begun, and the whole call ends there.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/export.h"
#include "textfilter/rule.h"

// Passes of one call after which each further rule has one pass. So a call makes at most
// kMaxFilterPasses + 1 replacements, and one more for each further rule. (kFilterPassLimit is the
// outcome of a call that exceeded it.)
inline constexpr std::size_t kMaxFilterPasses = 999;

// The limit of a filtered text in the functions without a capacity, in bytes, terminator included.
inline constexpr std::size_t kFilteredTextBytes = 4'194'304;

enum FilterOutcome : int {
  kFilterFinished = 0,   // every rule was applied
  kFilterPassLimit = 1,  // every rule was applied, in more than kMaxFilterPasses passes:
                         // occurrences may be left
  kFilterCapacity = 2,   // the next replacement would have exceeded the capacity: the call ended
  kFilterRefused = 3,   // the text is null, or not terminated within the capacity: nothing was done
  kFilterNoMemory = 4,  // no memory for the copy of a rule: neither it nor a later one was applied
};

// The report of one call. It may be used for any number of calls; each overwrites it.
struct FilterReport {
  FilterOutcome outcome = kFilterFinished;
  int rules_result = 0;    // the result of get_rule_list in ft_filter_string_bounded; otherwise 0
  std::size_t passes = 0;  // the pass counter at the end
  std::vector<std::size_t> replacements;  // of each rule
};

// Filters the text in the buffer `text` of `capacity_bytes`. Returns `report.outcome`. Use this
// function for a list of rules that is used again, or a text of more than kFilteredTextBytes.
ORVANEIP_API FilterOutcome do_filtering_bounded(const std::vector<rule>& rules, char* text,
                                                std::size_t capacity_bytes, FilterReport& report);

// Filters the text in the same way by the filters of the vault `vault_id`: by those that
// get_rule_list reads, whatever it returns (`report.rules_result`).
ORVANEIP_API FilterOutcome ft_filter_string_bounded(char* vault_id, char* text,
                                                    std::size_t capacity_bytes,
                                                    FilterReport& report);

// Filters the text in the buffer `text`, whose capacity is not known: it must hold every
// intermediate text, or kFilteredTextBytes. Only the outcome of a replacement is limited: a text
// that is longer before is left as it is, unless the replacement brings it within the limit. Why a
// call ended early is logged. Always returns kDevcfgFiltered. `text` itself is not changed; null is
// logged.
ORVANEIP_API int do_filtering(std::vector<rule> rules, char*& text);

// Filters the text in the same way by the filters of the vault `vault_id`, as
// ft_filter_string_bounded reads them. When `vault_id` is null, empty or unknown, the text is left
// as it is.
ORVANEIP_API int ft_filter_string(char* vault_id, char* text);
