#include "textfilter/like_patterns.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/log_sinks.h"
#include "textfilter/distinct_terms.h"
#include "textfilter/search_text.h"

namespace {

constexpr std::string_view kWildcard = "%%";

// A word of search text has some seven letters. More room than this is made when it is needed.
std::size_t expected_terms(std::size_t bytes) { return std::min<std::size_t>(bytes / 8 + 1, 2048); }

constexpr auto kSpecial = [] {
  std::array<bool, 256> special{};
  special[' '] = special['+'] = special['\''] = true;
  return special;
}();

// A term is kept as a piece of the input for as long as it is one.
class PatternWriter {
 public:
  PatternWriter(std::vector<std::string>& patterns, std::size_t bytes)
      : patterns_(patterns, expected_terms(bytes)) {}

  void terms(std::string_view bytes, char previous) {
    for (const char *at = bytes.data(), *end = at + bytes.size(); at != end; ++at) {
      const char* plain = at;
      while (at != end && !kSpecial[static_cast<unsigned char>(*at)]) {
        ++at;
      }
      if (at != plain) {
        append({plain, static_cast<std::size_t>(at - plain)});
        previous = at[-1];
      }
      if (at == end) {
        return;
      }
      if (!orvaneip::repeats(*at, previous)) {
        write_special(*at);
      }
      previous = *at;
    }
  }

  void phrase(std::string_view bytes) {
    for (std::size_t quote; (quote = bytes.find('\'')) != std::string_view::npos;) {
      append(bytes.substr(0, quote));
      append("''");
      bytes.remove_prefix(quote + 1);
    }
    append(bytes);
  }

  void end_term() {
    std::string_view ended = term();
    if (ended.empty()) {
      return;
    }
    if (ended.ends_with(kWildcard)) {
      ended.remove_suffix(kWildcard.size());
    }
    patterns_.add(ended);
    piece_ = {};
    built_.clear();
  }

 private:
  std::string_view term() const { return built_.empty() ? piece_ : built_; }

  void write_special(char byte) {
    if (byte == ' ') {
      end_term();
    } else if (byte == '\'') {
      append("''");
    } else if (!term().empty()) {
      append(kWildcard);
    }
  }

  void append(std::string_view bytes) {
    if (built_.empty() && piece_.empty()) {
      piece_ = bytes;
    } else {
      append_to_built(bytes);
    }
  }

  // Out of line, since most terms are one piece.
  [[gnu::noinline]] void append_to_built(std::string_view bytes) {
    built_.append(piece_).append(bytes);
    piece_ = {};
  }

  orvaneip::DistinctTerms patterns_;
  std::string_view piece_;  // of the input; empty when the term is empty or `built_`
  std::string built_;
};

}  // namespace

void check_abnormal_char_for_special_for_SQL(const char* input,
                                             std::vector<std::string>& patterns) {
  const orvaneip::SearchText search = orvaneip::read_search_text(input);
  orvane_log_debug("[libzelip](%s:%d) tmp_input= [%s]\n", __func__, __LINE__, search.text.c_str());
  PatternWriter writer(patterns, search.text.size());
  write_search_text(search, orvaneip::LoneQuote::kDropped, writer);
  writer.end_term();
}
