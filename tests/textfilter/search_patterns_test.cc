#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

namespace {

using Texts = std::vector<std::string>;

Texts patterns_for(const std::string& input, Texts held = {}) {
  check_abnormal_char_for_special_for_SQL(input.c_str(), held);
  return held;
}

std::string expression_for(const std::string& input, std::string held = "") {
  check_abnormal_char_for_special_for_mongo(input.c_str(), held);
  return held;
}

}  // namespace

TEST(SearchPatterns, Table) {
  struct Row {
    std::string input;
    Texts patterns;
    std::string expression;
  };
  const Row kRows[] = {
      {"camera", {"camera"}, "camera"},
      {"  front door  ", {"front", "door"}, "front|door"},
      {"front  door", {"front", "door"}, "front|door"},
      {"a+b", {"a%%b"}, "a.*b"},
      {"a++b", {"a%%b"}, "a.*b"},
      {"a + b", {"a", "b"}, "a|b"},
      {"+a", {"a"}, ".*a"},
      {"a+", {"a"}, "a.*"},
      {"a+ +b", {"a", "b"}, "a.*|.*b"},
      {"+ a", {"a"}, "a"},
      {"a +", {"a"}, "a"},
      {"+ a +", {"a"}, "a"},
      {"+", {}, ".*"},
      {"+ +", {}, ".*"},
      {"+ \"\"", {}, ".*|"},
      {"+ + + + a", {"a"}, ".*|a"},
      {"it's", {"it''s"}, "it's"},
      {"50%_off", {"50%_off"}, "50%_off"},
      {"car car", {"car"}, "car|car"},
      {"a.b", {"a.b"}, "a\\.b"},
      {"price $5 (net)", {"price", "$5", "(net)"}, "price|\\$5|\\(net\\)"},
      {"a|b", {"a|b"}, "a\\|b"},
      {"[x]", {"[x]"}, "\\[x\\]"},
      {"c:\\dir", {"c:\\dir"}, "c:\\\\dir"},
      {"x{2}", {"x{2}"}, "x{2}"},
      {"a-b/c", {"a-b/c"}, "a-b/c"},
      {"%%", {""}, "%%"},
      {"a%%", {"a"}, "a%%"},
      {"%%%", {"%"}, "%%%"},
      // The phrase, and a lone double quote.
      {"\"front door\" exit", {"front door", "exit"}, "front door|exit"},
      {"ab\"c d\"ef", {"abc def"}, "abc def"},
      {"x+\"y z\"", {"x%%y z"}, "x.*y z"},
      {"x \"a.b c\" y", {"x", "a.b c", "y"}, "x|a\\.b c|y"},
      {"a  \"\"  b", {"a", "b"}, "a|b"},
      {"\"a+b\"", {"a+b"}, "a\\+b"},
      {"\"a|b\"", {"a|b"}, "a\\|b"},
      {"a \"+\" b", {"a", "+", "b"}, "a|\\+|b"},
      {"say \"it's\"", {"say", "it''s"}, "say|it's"},
      {"\"a b\" \"c d\"", {"a b\" \"c d"}, "a b\" \"c d"},
      {"\" a \"", {" a "}, " a "},
      {"\"%%\"", {""}, "%%"},
      {"say \"hi", {"say", "hi"}, "say|\"hi"},
      {"a\"b", {"ab"}, "a\"b"},
      // Nothing in it; only the space is trimmed and separates; bytes that are no UTF-8.
      {"\"\"", {}, ""},
      {"", {}, ""},
      {"   ", {}, ""},
      {"\ta\nb ", {"\ta\nb"}, "\ta\nb"},
      {"caf\xC3\xA9 \xFF.\xC3", {"caf\xC3\xA9", "\xFF.\xC3"}, "caf\xC3\xA9|\xFF\\.\xC3"},
      // A bar that the user typed is no end of an alternative; the one behind a backslash is.
      {"x|+", {"x|"}, "x\\|.*"},
      {"a|+ b", {"a|", "b"}, "a\\|.*|b"},
      {"a\\ + b", {"a\\", "b"}, "a\\\\|b"},
      {"a\\ +", {"a\\"}, "a\\\\"},
      {"a\\|+ b", {"a\\|", "b"}, "a\\\\\\|.*|b"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(patterns_for(row.input), row.patterns) << row.input;
    EXPECT_EQ(expression_for(row.input), row.expression) << row.input;
  }
}

TEST(SearchPatterns, AreAppended) {
  EXPECT_EQ(patterns_for("b a", {"a"}), (Texts{"a", "b"}));
  EXPECT_EQ(patterns_for("c", {"a", "a"}), (Texts{"a", "a", "c"}));
  EXPECT_EQ(expression_for("b", "a|.*"), "a|.*b");
  EXPECT_EQ(expression_for("", ".*|.*|a"), ".*|a");
}

// The output is shown whole after each collapse.
TEST(SearchPatterns, Traces) {
  test::take_log();
  patterns_for("  it's %s ");
  EXPECT_EQ(test::take_log(),
            Texts{"[libzelip](check_abnormal_char_for_special_for_SQL:N) tmp_input= [it's %s]\n"});
  expression_for(" + a|+ b + + %s ");
  std::string log;
  for (const std::string& line : test::take_log()) {
    log += line;
  }
  const std::regex tag(R"(\[libzelip\]\(check_abnormal_char_for_special_for_mongo:N\) )");
  EXPECT_EQ(std::regex_replace(log, tag, ""), R"(tmp_input= [+ a|+ b + + %s]
start_double_quotes= -1
end_double_quotes= -1
res = [.*|a\|.*|b|.*|.*|%s]
head = [.*|]
tmp_str = [|.*|]
output = [a\|.*|b|.*|%s]
tmp_str = [|.*|]
output = [a\|.*|b|%s]
tail = [|%s]
final res = [a\|.*|b|%s]
)");
}

TEST(SearchPatterns, NullIsAnEmptyText) {
  Texts patterns = {"a"};
  std::string expression = "a|.*";
  check_abnormal_char_for_special_for_SQL(nullptr, patterns);
  check_abnormal_char_for_special_for_mongo(nullptr, expression);
  EXPECT_EQ(patterns, Texts{"a"});
  EXPECT_EQ(expression, "a");
}

TEST(SearchPatterns, InputMayBePartOfTheOutput) {
  Texts patterns = {"a b c d e f g h i j k l m n o p"};
  check_abnormal_char_for_special_for_SQL(patterns[0].c_str(), patterns);
  EXPECT_EQ(patterns.size(), 17U);
  EXPECT_EQ(patterns[16], "p");
  std::string expression(100, '.');
  check_abnormal_char_for_special_for_mongo(expression.c_str(), expression);
  EXPECT_EQ(expression.size(), 300U);
}

// Lists long enough for each way of looking terms up, with terms of each length around a block.
TEST(SearchPatterns, EachTermOnce) {
  Texts held;
  std::string line;
  for (std::size_t i = 0; i < 3000; ++i) {
    const std::string term = std::string(i % 24, 'x') + std::to_string(i);
    if (i % 3 == 0) {
      held.insert(held.end(), {term, term});
    }
    line += term + " " + term + " ";
  }
  const std::size_t before = held.size();
  EXPECT_EQ(patterns_for(line + line, held).size(), before + 2000);
}
