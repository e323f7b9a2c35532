// Search text as LIKE patterns and as an expression, against the plain steps; the expression has to
// compile.
// Input: the search text, an expression that is held already, then patterns that are held already.
#include <re2/re2.h>

#include "fuzz/fuzz.h"
#include "fuzz/plain_patterns.h"
#include "orvaneip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Texts texts = fuzz::texts_of(data, size, 2);
  const std::string input = texts[0].c_str();
  fuzz::Texts patterns(texts.begin() + 2, texts.end());
  fuzz::Texts plain_patterns = patterns;
  fuzz::plain_like(input, plain_patterns);
  check_abnormal_char_for_special_for_SQL(input.c_str(), patterns);
  fuzz::require(patterns == plain_patterns, "the patterns are those of the steps");

  std::string expression = texts[1];
  std::string plain = texts[1];
  fuzz::plain_regex(input, plain);
  check_abnormal_char_for_special_for_mongo(input.c_str(), expression);
  fuzz::require(expression == plain, "the expression is that of the steps");
  // Braces pass as they are, and an engine may refuse them.
  if (texts[1].empty() && input.find_first_of("{}") == std::string::npos) {
    const RE2 compiled(expression, RE2::Latin1);
    fuzz::require(compiled.ok(), "the expression compiles");
  }
  return 0;
}
