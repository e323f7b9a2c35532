#include "search/like_patterns.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include "platform/log_sinks.h"
#include "search/internal/distinct_terms.h"
#include "search/internal/search_text.h"

namespace {

constexpr std::string_view kWildcard = "%%";
constexpr std::string_view kQuotes = "''";

// Returns how many terms there are at most: each ends at a space, or at the end.
std::size_t max_terms(std::string_view text) {
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), ' '));
}

constexpr auto kSpecial = [] {
  std::array<bool, 256> special{};
  special[' '] = special['+'] = special['\''] = true;
  return special;
}();

// A term that is equal to a piece of the input is kept as this piece; any other one is written to a
// buffer, which all terms use in turn. A byte of input becomes at most two.
class PatternWriter {
 public:
  PatternWriter(std::vector<std::string>& patterns, std::string_view text)
      : patterns_(patterns, max_terms(text)),
        buffer_(std::make_unique_for_overwrite<char[]>(2 * text.size())),
        end_(buffer_.get()) {}

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
      append_two(kQuotes);
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
    end_ = buffer_.get();
  }

 private:
  std::string_view term() const {
    return piece_.empty() ? std::string_view(buffer_.get(), written()) : piece_;
  }

  std::size_t written() const { return static_cast<std::size_t>(end_ - buffer_.get()); }

  void write_special(char byte) {
    if (byte == ' ') {
      end_term();
    } else if (byte == '\'') {
      append_two(kQuotes);
    } else if (!term().empty()) {
      append_two(kWildcard);
    }
  }

  void append(std::string_view bytes) {
    if (term().empty()) {
      piece_ = bytes;
    } else {
      write_piece();
      end_ = std::copy_n(bytes.data(), bytes.size(), end_);
    }
  }

  void append_two(std::string_view bytes) {
    write_piece();
    end_ = std::copy_n(bytes.data(), 2, end_);
  }

  void write_piece() {
    if (!piece_.empty()) {
      end_ = std::copy_n(piece_.data(), piece_.size(), end_);
      piece_ = {};
    }
  }

  orvaneip::DistinctTerms patterns_;
  std::string_view piece_;  // the term so far; empty when the term is in the buffer, or is empty
  std::unique_ptr<char[]> buffer_;
  char* end_;  // of the written part of the term
};

}  // namespace

void check_abnormal_char_for_special_for_SQL(const char* input,
                                             std::vector<std::string>& patterns) {
  const orvaneip::SearchText search = orvaneip::read_search_text(input);
  orvane_log_debug("[libzelip](%s:%d) tmp_input= [%s]\n", __func__, __LINE__, search.text.c_str());
  PatternWriter writer(patterns, search.text);
  write_search_text(search, orvaneip::LoneQuote::kDropped, writer);
  writer.end_term();
}
