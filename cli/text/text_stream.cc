#include "cli/text/text_stream.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <iterator>

#include "base/control_characters.h"
#include "cli/command_error.h"
#include "cli/output.h"

namespace devcfg {
namespace {

std::size_t longest_growth(const std::vector<rule>& rules) {
  std::size_t longest = 0;
  for (const rule& each : rules) {
    longest = std::max(longest, strnlen(each.result, kRuleTextBytes));
  }
  return (kMaxFilterPasses + 1 + rules.size()) * longest;
}

void write_all(const char* bytes, std::size_t size) {
  if (std::fwrite(bytes, 1, size, stdout) != size) {
    throw CommandError("cannot write to standard output");
  }
}

void require_whole_input() {
  if (std::cin.bad()) {
    throw CommandError("cannot read standard input");
  }
}

}  // namespace

TextStream::TextStream(std::vector<rule> rules)
    : rules_(std::move(rules)), longest_growth_(longest_growth(rules_)), hits_(rules_.size()) {
  std::ios::sync_with_stdio(false);
}

void TextStream::filter_lines() {
  for (std::string line; std::getline(std::cin, line);) {
    write_filtered(line);
    if (!std::cin.eof()) {
      write_all("\n", 1);
    }
    std::fflush(stdout);  // the sender of a line may wait for its result
  }
  require_whole_input();
}

void TextStream::filter_whole() {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  require_whole_input();
  write_filtered(text);
}

void TextStream::write_filtered(const std::string& text) {
  ++texts_;
  if (text.find('\0') != std::string::npos) {
    throw CommandError("text " + std::to_string(texts_) +
                       " contains a NUL byte; texts are NUL-terminated");
  }
  const std::size_t capacity = text.size() + longest_growth_ + 1;
  if (buffer_.size() < capacity) {
    buffer_.resize(capacity);
  }
  std::memcpy(buffer_.data(), text.c_str(), text.size() + 1);
  const FilterOutcome outcome =
      do_filtering_bounded(rules_, buffer_.data(), buffer_.size(), report_);
  if (outcome == kFilterNoMemory) {
    throw CommandError("not enough memory to filter text " + std::to_string(texts_));
  }
  limited_texts_ += outcome == kFilterPassLimit ? 1 : 0;
  for (std::size_t i = 0; i < hits_.size(); ++i) {
    hits_[i] += report_.replacements[i];
  }
  write_all(buffer_.data(), std::strlen(buffer_.data()));
}

void TextStream::print_hits() const {
  std::fprintf(stderr, "%10s  rule\n", "hits");
  for (std::size_t i = 0; i < rules_.size(); ++i) {
    const std::string words = in_quotes(rules_[i].target) + " -> " + in_quotes(rules_[i].result);
    std::fprintf(stderr, "%10zu  %s\n", hits_[i],
                 base::escape_control_characters(words, base::LineFeeds::kKeep).c_str());
  }
}

}  // namespace devcfg
