// What the bytes of a file contain, found in one fast pass, so that slower checks can be left out.
#pragma once

#include <string_view>

namespace orvaneplatform {

struct ByteSummary {
  bool control = false;    // a control character that XML does not allow
  bool non_ascii = false;  // a byte of 0x80 or above
  bool ampersand = false;
  bool quote = false;   // '"' or "'"
  bool markup = false;  // "<!" or "<?"
  int depth_bound = 0;  // at least the depth of nesting; more by the elements without an end tag
};
ByteSummary summarize(std::string_view bytes);

}  // namespace orvaneplatform
