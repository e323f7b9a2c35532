// Search text as LIKE patterns and as an expression, against the plain steps.
// Input: the search text, then patterns that are in the list before.
#include <re2/re2.h>

#include "fuzz/fuzz.h"
#include "fuzz/plain_patterns.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> patterns = fuzz::texts_of(data, size, 1);
  const std::string input = patterns[0].c_str();
  patterns.erase(patterns.begin());
  std::vector<std::string> plain_patterns = patterns;
  fuzz::plain_like(input, plain_patterns);
  check_abnormal_char_for_special_for_SQL(input.c_str(), patterns);
  fuzz::require(patterns == plain_patterns, "the patterns are those of the steps");

  std::string expression;
  check_abnormal_char_for_special_for_mongo(input.c_str(), expression);
  fuzz::require(expression == fuzz::plain_regex(input), "so is the expression");
  // Braces are not escaped, and an engine may refuse them.
  fuzz::require(input.find_first_of("{}") != std::string::npos || RE2(expression, RE2::Latin1).ok(),
                "the expression compiles");
  return 0;
}
