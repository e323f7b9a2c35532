#include "search/search_regex.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/log_sinks.h"
#include "search/internal/search_text.h"

namespace {

constexpr const char* kName = "check_abnormal_char_for_special_for_mongo";  // in log lines

// How a byte is written: as the first sizes[0] of the two bytes, or the first sizes[1] when it is
// equal to the byte before it.
struct Encoding {
  char bytes[2];
  std::uint8_t sizes[2];
};
using EncodingTable = std::array<Encoding, 256>;

constexpr EncodingTable kPhraseEncodings = [] {
  EncodingTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = {{static_cast<char>(i), '\0'}, {1, 1}};
  }
  for (const char byte : std::string_view(".?^|+*\\[]()$")) {
    table[static_cast<unsigned char>(byte)] = {{'\\', byte}, {2, 2}};
  }
  return table;
}();

constexpr EncodingTable kTermEncodings = [] {
  EncodingTable table = kPhraseEncodings;
  table[' '] = {{'|', '\0'}, {1, 0}};
  table['+'] = {{'.', '*'}, {2, 0}};
  return table;
}();

constexpr std::string_view kHead = ".*|";
constexpr std::string_view kMiddle = "|.*|";
constexpr std::string_view kTail = "|.*";

// Appends to the output, which first gets room for two bytes for each byte of the input.
class ExpressionWriter {
 public:
  ExpressionWriter(std::string& output, std::size_t input_size) : output_(output) {
    const std::size_t old_size = output.size();
    output.resize(old_size + 2 * input_size);
    end_ = output.data() + old_size;
  }
  ~ExpressionWriter() { output_.resize(static_cast<std::size_t>(end_ - output_.data())); }
  ExpressionWriter(const ExpressionWriter&) = delete;
  ExpressionWriter& operator=(const ExpressionWriter&) = delete;

  void terms(std::string_view bytes, char previous) { write(bytes, previous, kTermEncodings); }
  void phrase(std::string_view bytes) { write(bytes, '\0', kPhraseEncodings); }

 private:
  // No branch depends on the text: two bytes are always stored, needed or not.
  void write(std::string_view bytes, char previous, const EncodingTable& table) {
    char* end = end_;
    for (const char byte : bytes) {
      const Encoding& encoding = table[static_cast<unsigned char>(byte)];
      std::memcpy(end, encoding.bytes, sizeof(encoding.bytes));
      end += encoding.sizes[byte == previous ? 1 : 0];
      previous = byte;
    }
    end_ = end;
  }

  std::string& output_;
  char* end_;
};

bool is_escaped(const std::string& text, std::size_t position) {
  std::size_t first = position;
  while (first > 0 && text[first - 1] == '\\') {
    --first;
  }
  return (position - first) % 2 == 1;
}

// Returns the position of the first «|.*|» from `start` on whose first bar is not escaped, or the
// output's size. Of its bytes the asterisk is the rarest in an expression.
std::size_t find_middle(const std::string& output, std::size_t start) {
  std::size_t asterisk = output.find('*', start);
  for (; asterisk != std::string::npos; asterisk = output.find('*', asterisk + 1)) {
    if (asterisk >= start + 2 && output.compare(asterisk - 2, kMiddle.size(), kMiddle) == 0 &&
        !is_escaped(output, asterisk - 2)) {
      return asterisk - 2;
    }
  }
  return output.size();
}

// Removes the first three bytes of each «|.*|». The next one cannot begin before the bar that is
// left, so one pass is enough; the bytes between two removals are moved once, when the second one
// is reached, and the two pieces of the output are logged as one.
void remove_middle_alternatives(std::string& output) {
  std::size_t done = 0;  // bytes of the new text, at the start of the output
  std::size_t rest = 0;  // position of the bytes that follow them
  for (std::size_t found = find_middle(output, 0); found < output.size();
       found = find_middle(output, rest)) {
    orvane_log_debug("[libzelip](%s:%d) tmp_str = [%s]\n", kName, __LINE__, kMiddle.data());
    std::memmove(output.data() + done, output.data() + rest, found - rest);
    done += found - rest;
    rest = found + kMiddle.size() - 1;
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
