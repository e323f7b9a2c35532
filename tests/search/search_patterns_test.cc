#include <re2/re2.h>

#include <random>
#include <regex>

#include "tests/support/bare_sqlite.h"
#include "tests/support/library.h"

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

// Returns whether real engines find the patterns and the expression in the text. The patterns are
// put into the statement as they are.
std::pair<bool, bool> found(const std::string& search, const std::string& text) {
  static const test::BareSqlite database(":memory:");
  std::string sql = "SELECT 0";
  for (const std::string& pattern : patterns_for(search)) {
    sql += " OR '" + std::regex_replace(text, std::regex("'"), "''") + "' LIKE '%" + pattern + "%'";
  }
  const auto result = database.query(sql);
  const RE2 expression(expression_for(search), RE2::Latin1);
  EXPECT_TRUE(result && expression.ok()) << sql << expression.error();
  return {result && result->at(0, 0) == "1", RE2::PartialMatch(text, expression)};
}

}  // namespace

TEST(SearchPatterns, Table) {
  // The search text, the patterns, the expression.
  const std::tuple<std::string, Texts, std::string> kRows[] = {
      {"  front  door  ", {"front", "door"}, "front|door"},
      {"camera", {"camera"}, "camera"},
      {"front  door", {"front", "door"}, "front|door"},
      {"a+b", {"a%%b"}, "a.*b"},
      {"+ a", {"a"}, "a"},
      {"a +", {"a"}, "a"},
      {"a.b|c", {"a.b|c"}, "a\\.b\\|c"},
      {"it's", {"it''s"}, "it's"},
      {"", {}, ""},
      {"a++b", {"a%%b"}, "a.*b"},
      {"a + b", {"a", "b"}, "a|b"},
      {"+ +", {}, ".*"},
      {"+a", {"a"}, ".*a"},
      {"a+", {"a"}, "a.*"},
      {"a+ +b", {"a", "b"}, "a.*|.*b"},
      {"+ a +", {"a"}, "a"},
      {"+", {}, ".*"},
      {"+ \"\"", {}, ".*|"},
      {"50%_off car car", {"50%_off", "car"}, "50%_off|car|car"},
      {"price $5 (net)", {"price", "$5", "(net)"}, "price|\\$5|\\(net\\)"},
      {"[x] c:\\dir {2}", {"[x]", "c:\\dir", "{2}"}, "\\[x\\]|c:\\\\dir|{2}"},
      {"%% a%%", {"", "a"}, "%%|a%%"},
      // The phrase, and a lone double quote.
      {"ab\"c d\"ef", {"abc def"}, "abc def"},
      {"x \"a.b c\" y", {"x", "a.b c", "y"}, "x|a\\.b c|y"},
      {"a \"+\" b", {"a", "+", "b"}, "a|\\+|b"},
      {"say \"it's\"", {"say", "it''s"}, "say|it's"},
      {"\"a+b\"", {"a+b"}, "a\\+b"},
      {"\"a|b\"", {"a|b"}, "a\\|b"},
      {"\"front door\" exit", {"front door", "exit"}, "front door|exit"},
      {"\"a b\" \"c d\"", {"a b\" \"c d"}, "a b\" \"c d"},
      {"say \"hi", {"say", "hi"}, "say|\"hi"},
      {"\"\"", {}, ""},
      {"   ", {}, ""},
      // A bar that the user typed does not end an alternative.
      {"*+ + *", {"*"}, "\\*.*|\\*"},
      {"x|+", {"x|"}, "x\\|.*"},
  };
  for (const auto& [input, patterns, expression] : kRows) {
    EXPECT_EQ(patterns_for(input), patterns) << input;
    EXPECT_EQ(expression_for(input), expression) << input;
  }
}

TEST(SearchPatterns, AreAppendedToAnOutputThatMayContainTheInput) {
  EXPECT_EQ(patterns_for("c b a", {"a", "a"}), (Texts{"a", "a", "c", "b"}));
  EXPECT_EQ(expression_for("b", "a|.*"), "a|.*b");
  EXPECT_EQ(expression_for("", ".*|.*|a"), ".*|a");
  Texts patterns = {"a b c d e f g h i j k l m n o p"};
  check_abnormal_char_for_special_for_SQL(patterns[0].c_str(), patterns);
  check_abnormal_char_for_special_for_SQL(nullptr, patterns);
  EXPECT_EQ(patterns.size(), 17U);
  std::string expression(100, '.');
  check_abnormal_char_for_special_for_mongo(expression.c_str(), expression);
  check_abnormal_char_for_special_for_mongo(nullptr, expression);
  EXPECT_EQ(expression.size(), 300U);
}

// The whole output is logged after each collapse.
TEST(SearchPatterns, Traces) {
  const std::string kTag = "[libzelip](check_abnormal_char_for_special_for_mongo:N) ";
  test::take_log();
  patterns_for("  it's %s ");
  EXPECT_EQ(test::take_log(),
            Texts{"[libzelip](check_abnormal_char_for_special_for_SQL:N) tmp_input= [it's %s]\n"});
  expression_for(" + a|+ b + + %s ");
  std::string log;
  for (const std::string& line : test::take_log()) {
    log += line.starts_with(kTag) ? line.substr(kTag.size()) : line;
  }
  EXPECT_EQ(log, R"(tmp_input= [+ a|+ b + + %s]
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

// A phrase is found in the texts that contain it, and in no others.
TEST(SearchMeaning, APhraseIsASubstringAndWordsAreAlternatives) {
  std::mt19937 random(47);
  const auto text_of = [&random](std::size_t size) {
    std::string text(size, ' ');
    for (char& byte : text) {
      byte = " +\\|.*?^[]()$-a'\n"[random() % 17];
    }
    return text;
  };
  for (int i = 0; i < 4000; ++i) {
    const std::string phrase = text_of(1 + random() % 4);
    const std::string text = text_of(20) + (i % 2 == 0 ? phrase : "");
    const bool holds = text.find(phrase) != std::string::npos;
    EXPECT_EQ(found("\"" + phrase + "\"", text), std::pair(holds, holds))
        << phrase << " in " << text;
  }
  // "+" matches anything between them; in LIKE, "%" and "_" are wildcards too.
  EXPECT_EQ(found("front+door x", "front of the door"), std::pair(true, true));
  EXPECT_EQ(found("front+door", "door front"), std::pair(false, false));
  EXPECT_EQ(found("50%_off", "500 euro off"), std::pair(true, false));
}
