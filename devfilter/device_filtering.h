// Matching a text of a device against the device's filters.
//
// The first device whose `device_id` equals the argument (ASCII letters compare without case)
// decides: its filters are tried in order, and the rules of each in order; disabled ones are
// skipped. The first rule whose target equals the whole text applies:
//
//   type 0   result 1, the output holds the rule's result
//   type 1   result 2, the rule writes nothing
//   type 2   result 3, the output holds "\r\n"
//
// A rule of another type is skipped. The result is 0 when no rule applies. The first enabled rule
// of type 0 that is tried fills the whole output with zeros, whether or not it applies.
//
// `output_size_bytes` is the size of the buffer `output`. At most that size less 2 bytes and a
// terminator are written: a longer result is cut, and "\r\n" needs a size of 4. With a size below 1
// or a null argument the result is 0 and nothing is written. Text and output must not overlap.
// Nothing is allocated. Skipped filters and rules and an unknown device are logged in log_Debug.
#pragma once

#include <vector>

#include "devfilter/dev_filter.h"
#include "platform/export.h"

// Matches against a list that devcfg_get_filter_rules_list has read, without copying it: for
// programs with many texts.
ORVANEIP_API int devcfg_match_filters(const char* text, char* output, int output_size_bytes,
                                      const char* device_id,
                                      const std::vector<dev_filter>& devices);

// Does the same on a copy of the list, which takes far longer than the search. `text_length` is
// ignored: the text ends at its terminator.
ORVANEIP_API int devcfg_do_filtering(char* text, int text_length, char* output,
                                     int output_size_bytes, char* device_id,
                                     std::vector<dev_filter> devices);
