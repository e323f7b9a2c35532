// Looking a device's text up among its filters.
//
// The filters of the first device whose `device_id` is `device_id`, ASCII letters of either case
// being equal, are tried in order, and the rules of each in order; those that are not enabled are
// passed over. The first rule whose target is exactly the text decides:
//
//   type 0   result 1, the output holds the rule's result
//   type 1   result 2, the rule writes nothing
//   type 2   result 3, the output holds "\r\n"
//
// A rule of another type is passed over. The result is 0 when no rule applies. The first enabled
// rule of type 0 that is tried fills the whole output with zeros, whether or not it applies.
//
// `output_size_bytes` is the size of the buffer `output`. Up to that size less 2 characters are
// written, and a terminator: a longer result is cut, and size 4 is the least for "\r\n". Below 1,
// or with a null argument, the result is 0 and nothing is written. Text and output must not
// overlap. Nothing is allocated. What is passed over, and an unknown device, is told in log_Debug.
#pragma once

#include <vector>

#include "devfilter/dev_filter.h"
#include "platform/export.h"

// On a list as devcfg_get_filter_rules_list reads it, without a copy: for callers with many texts.
ORVANEIP_API int devcfg_match_filters(const char* text, char* output, int output_size_bytes,
                                      const char* device_id,
                                      const std::vector<dev_filter>& devices);

// The same on a copy of the list, which takes far longer than the search. `text_length` is not
// looked at: the text ends at its terminator.
ORVANEIP_API int devcfg_do_filtering(char* text, int text_length, char* output,
                                     int output_size_bytes, char* device_id,
                                     std::vector<dev_filter> devices);
