#include "search/search_regex.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/log_sinks.h"
#include "textfilter/internal/target_search.h"
#include "search/internal/search_text.h"

namespace {

constexpr const char* kName = "check_abnormal_char_for_special_for_mongo";  // in log lines

// How a byte is written: the first sizes[0] of the two bytes; sizes[1] when it is the same as the
// byte before it.
struct Written {
  char bytes[2];
  std::uint8_t sizes[2];
};
using WritingTable = std::array<Written, 256>;

constexpr WritingTable kInPhrase = [] {
  WritingTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = {{static_cast<char>(i), '\0'}, {1, 1}};
  }
  for (const char byte : std::string_view(".?^|+*\\[]()$")) {
    table[static_cast<unsigned char>(byte)] = {{'\\', byte}, {2, 2}};
  }
  return table;
}();

constexpr WritingTable kInTerms = [] {
  WritingTable table = kInPhrase;
  table[' '] = {{'|', '\0'}, {1, 0}};
  table['+'] = {{'.', '*'}, {2, 0}};
  return table;
}();

constexpr std::string_view kHead = ".*|";
constexpr std::string_view kMiddle = "|.*|";
constexpr std::string_view kTail = "|.*";

// Writes behind what the output holds; room for two bytes for each byte of the input is made first.
class ExpressionWriter {
 public:
  ExpressionWriter(std::string& output, std::size_t input_size) : output_(output) {
    const std::size_t held = output.size();
    output.resize(held + 2 * input_size);
    end_ = output.data() + held;
  }
  ~ExpressionWriter() { output_.resize(static_cast<std::size_t>(end_ - output_.data())); }
  ExpressionWriter(const ExpressionWriter&) = delete;
  ExpressionWriter& operator=(const ExpressionWriter&) = delete;

  void terms(std::string_view bytes, char previous) { write(bytes, previous, kInTerms); }
  void phrase(std::string_view bytes) { write(bytes, '\0', kInPhrase); }

 private:
  // Without a branch that depends on the text. Two bytes are stored for each, needed or not.
  void write(std::string_view bytes, char previous, const WritingTable& table) {
    char* end = end_;
    for (const char byte : bytes) {
      const Written& written = table[static_cast<unsigned char>(byte)];
      std::memcpy(end, written.bytes, sizeof(written.bytes));
      end += written.sizes[byte == previous ? 1 : 0];
      previous = byte;
    }
    end_ = end;
  }

  std::string& output_;
  char* end_;
};

bool is_escaped(const std::string& text, std::size_t place) {
  std::size_t first = place;
  while (first > 0 && text[first - 1] == '\\') {
    --first;
  }
  return (place - first) % 2 == 1;
}

// The place of the first «|.*|» from `start` on, or the output's size.
std::size_t find_middle(const orvaneip::TargetSearch& middle, const std::string& output,
                        std::size_t start) {
  const std::string_view rest = std::string_view(output).substr(start);
  for (const char *place = rest.data(), *end = place + rest.size();; ++place) {
    place = middle.find_in({place, static_cast<std::size_t>(end - place)});
    if (place == nullptr) {
      return output.size();
    }
    const auto found = static_cast<std::size_t>(place - output.data());
    if (!is_escaped(output, found)) {
      return found;
    }
  }
}

// Removes the first three bytes of each «|.*|». The next one cannot begin before the bar that is
// left, so one pass does it; what is between two removals is moved once, when the second one is
// reached, and the log is given the two pieces of the output.
void remove_middle_alternatives(std::string& output) {
  const orvaneip::TargetSearch middle(kMiddle);
  std::size_t done = 0;  // bytes of the new text, in place
  std::size_t rest = 0;  // where what follows them is
  for (std::size_t place = find_middle(middle, output, 0); place < output.size();
       place = find_middle(middle, output, rest)) {
    orvane_log_debug("[libzelip](%s:%d) tmp_str = [%s]\n", kName, __LINE__, kMiddle.data());
    std::memmove(output.data() + done, output.data() + rest, place - rest);
    done += place - rest;
    rest = place + kMiddle.size() - 1;
    orvane_log_debug("[libzelip](%s:%d) output = [%.*s%s]\n", kName, __LINE__,
                     static_cast<int>(std::min<std::size_t>(done, INT_MAX)), output.data(),
                     output.data() + rest);
  }
  output.erase(done, rest - done);
}

void tidy(std::string& output) {
  if (output.size() <= kHead.size()) {
    return;
  }
  orvane_log_debug("[libzelip](%s:%d) head = [%.3s]\n", kName, __LINE__, output.data());
  if (output.starts_with(kHead)) {
    output.erase(0, kHead.size());
  }
  remove_middle_alternatives(output);
  if (output.size() <= kTail.size()) {
    return;
  }
  const std::size_t tail = output.size() - kTail.size();
  orvane_log_debug("[libzelip](%s:%d) tail = [%s]\n", kName, __LINE__, output.data() + tail);
  if (output.ends_with(kTail) && !is_escaped(output, tail)) {
    output.resize(tail);
  }
}

}  // namespace

void check_abnormal_char_for_special_for_mongo(const char* input, std::string& output) {
  const orvaneip::SearchText search = orvaneip::read_search_text(input);
  orvane_log_debug("[libzelip](%s:%d) tmp_input= [%s]\n", kName, __LINE__, search.text.c_str());
  orvane_log_debug("[libzelip](%s:%d) start_double_quotes= %d\n", kName, __LINE__,
                   static_cast<int>(search.first_quote));
  orvane_log_debug("[libzelip](%s:%d) end_double_quotes= %d\n", kName, __LINE__,
                   static_cast<int>(search.last_quote));
  {
    ExpressionWriter writer(output, search.text.size());
    write_search_text(search, orvaneip::LoneQuote::kText, writer);
  }
  orvane_log_debug("[libzelip](%s:%d) res = [%s]\n", kName, __LINE__, output.c_str());
  tidy(output);
  orvane_log_debug("[libzelip](%s:%d) final res = [%s]\n", kName, __LINE__, output.c_str());
}
