// Rewriting a text by rules.
//
// The rules are applied first to last, each to what the ones before it left. A rule replaces the
// first occurrence of its target by its result, and looks again from the start of the text, until
// there is none. So a result is searched too: a rule whose result contains its target goes on until
// one of these ends it:
//  - A replacement that ends the text is the rule's last.
//  - Every search is a pass, the last one without an occurrence too, counted over all rules of a
//    call. Once the counter has passed 999, "[%s] Match more than 1000 times(!?)" is logged, and
//    every later rule has one pass, after which it is logged again, unless that pass ended the
//    text.
//  - The filtered text, terminator included, is not to exceed the capacity: the replacement that
//    would do so is not made, and the whole call ends there.
// The outcome is that of these steps; the cost is not: it grows with the text, and hardly with the
// number of replacements. The text always holds the outcome of the last whole replacement.
//
// Bytes are compared, case matters, and nothing in a result is special. `type`, `enable` and `name`
// of a rule are not looked at. A rule with an empty target is skipped, without a pass. A target or
// result that lacks its terminator is cut to kRuleTextBytes - 1 bytes.
//
// A rule that can meet its own result again and grows the text is worked on in memory of its own,
// up to the capacity. Where that is not to be had, the rule is not begun, and the whole call ends
// there.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/export.h"
#include "textfilter/rule.h"

// Passes of one call after which each further rule has one pass. So a call makes at most
// kFilterPassMax + 1 replacements, and one more for each further rule. (kFilterPassLimit is the
// outcome of a call that exceeded it.)
inline constexpr std::size_t kFilterPassMax = 999;

// What the functions without a capacity hold a filtered text to, in bytes, terminator included.
inline constexpr std::size_t kFilteredTextBytes = 4'194'304;

enum FilterOutcome : int {
  kFilterFinished = 0,   // every rule was applied
  kFilterPassLimit = 1,  // every rule was applied, in more than 999 passes: some may not have ended
  kFilterCapacity = 2,   // the next replacement would have exceeded the capacity: nothing after it
  kFilterRefused = 3,   // the text is null, or not terminated within the capacity: nothing was done
  kFilterNoMemory = 4,  // a rule found no memory to work in: neither it nor a later one was applied
};

// What became of a text. It may be used for any number of calls; each overwrites it.
struct FilterReport {
  FilterOutcome outcome = kFilterFinished;
  int rules_result = 0;    // of get_rule_list, by ft_filter_string_bounded; otherwise 0
  std::size_t passes = 0;  // the pass counter at the end
  std::vector<std::size_t> replacements;  // one number for each rule
};

// Filters the text in the buffer `text` of `capacity_bytes`. Returns `report.outcome`. This is the
// function for a list of rules that is used again, or a text of more than kFilteredTextBytes.
ORVANEIP_API FilterOutcome do_filtering_bounded(const std::vector<rule>& rules, char* text,
                                                std::size_t capacity_bytes, FilterReport& report);

// The same with the filters of the vault `vault_id`: with those that get_rule_list reads, whatever
// it returns (`report.rules_result`).
ORVANEIP_API FilterOutcome ft_filter_string_bounded(char* vault_id, char* text,
                                                    std::size_t capacity_bytes,
                                                    FilterReport& report);

// Filters the text in the buffer `text`, whose capacity is not known: it must hold every text on
// the way, or kFilteredTextBytes. The bound is one on what a replacement makes: a longer text is
// left as it is, unless the replacement brings it within the bound. What stopped the call is
// logged. Returns kDevcfgFiltered, always. `text` itself is not changed; null is logged.
ORVANEIP_API int do_filtering(std::vector<rule> rules, char*& text);

// The same with the filters of the vault `vault_id`, as ft_filter_string_bounded takes them. A
// vault that is null, empty or unknown leaves the text as it is.
ORVANEIP_API int ft_filter_string(char* vault_id, char* text);
