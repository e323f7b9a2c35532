// Filters standard input to standard output by a list of rules.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace devcfg {

// Filters texts in turn and counts the replacements.
class TextStream {
 public:
  explicit TextStream(std::vector<rule> rules);

  void filter_lines();  // each line is a text, without its line feed
  void filter_whole();  // all of the input is one text

  // Prints the replacements of each rule on standard error.
  void print_hits() const;

  // Returns the number of texts in which the pass limit ended a rule.
  std::size_t limited_texts() const { return limited_texts_; }

 private:
  void write_filtered(const std::string& text);

  std::vector<rule> rules_;
  std::size_t longest_growth_;  // bytes that a text can grow by at most
  std::vector<char> buffer_;
  FilterReport report_;
  std::vector<std::size_t> hits_;
  std::size_t texts_ = 0;
  std::size_t limited_texts_ = 0;
};

}  // namespace devcfg
