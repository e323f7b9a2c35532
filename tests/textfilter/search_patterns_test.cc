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

// Whether the text contains a match of a pattern, which is put into the statement as it is.
bool like_finds(const std::string& search, const std::string& text) {
  static const test::BareSqlite database(":memory:");
  const std::string quoted = std::regex_replace(text, std::regex("'"), "''");
  std::string sql = "SELECT 0";
  for (const std::string& pattern : patterns_for(search)) {
    sql += " OR '" + quoted + "' LIKE '%" + pattern + "%'";
  }
  const auto result = database.query(sql);
  EXPECT_TRUE(result) << sql;
  return result && result->at(0, 0) == "1";
}

bool expression_finds(const std::string& search, const std::string& text) {
  const RE2 expression(expression_for(search), RE2::Latin1);
  EXPECT_TRUE(expression.ok()) << expression.pattern() << ": " << expression.error();
  return RE2::PartialMatch(text, expression);
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
      {"+ + + + a", {"a"}, ".*|a"},
      {"50%_off car car", {"50%_off", "car"}, "50%_off|car|car"},
      {"price $5 (net)", {"price", "$5", "(net)"}, "price|\\$5|\\(net\\)"},
      {"[x] c:\\dir {2}", {"[x]", "c:\\dir", "{2}"}, "\\[x\\]|c:\\\\dir|{2}"},
      {"%% a%%", {"", "a"}, "%%|a%%"},
      // The phrase, and a lone double quote.
      {"ab\"c d\"ef", {"abc def"}, "abc def"},
      {"x \"a.b c\" y", {"x", "a.b c", "y"}, "x|a\\.b c|y"},
      {"a  \"\"  b", {"a", "b"}, "a|b"},
      {"a \"+\" b", {"a", "+", "b"}, "a|\\+|b"},
      {"say \"it's\"", {"say", "it''s"}, "say|it's"},
      {"\"a+b\"", {"a+b"}, "a\\+b"},
      {"\"a|b\"", {"a|b"}, "a\\|b"},
      {"\"front door\" exit", {"front door", "exit"}, "front door|exit"},
      {"\"a b\" \"c d\"", {"a b\" \"c d"}, "a b\" \"c d"},
      {"\" a \"", {" a "}, " a "},
      {"say \"hi", {"say", "hi"}, "say|\"hi"},
      // Nothing in it; only the space is trimmed and separates; bytes that are no UTF-8.
      {"\"\"", {}, ""},
      {"   ", {}, ""},
      {"\ta\nb ", {"\ta\nb"}, "\ta\nb"},
      {"caf\xC3\xA9 \xFF.\xC3", {"caf\xC3\xA9", "\xFF.\xC3"}, "caf\xC3\xA9|\xFF\\.\xC3"},
      // A bar that the user typed is no end of an alternative; the one behind a backslash is.
      {"x|+", {"x|"}, "x\\|.*"},
      {"a\\ + b", {"a\\", "b"}, "a\\\\|b"},
      {"a\\|+ b", {"a\\|", "b"}, "a\\\\\\|.*|b"},
  };
  for (const auto& [input, patterns, expression] : kRows) {
    EXPECT_EQ(patterns_for(input), patterns) << input;
    EXPECT_EQ(expression_for(input), expression) << input;
  }
}

TEST(SearchPatterns, AreAppendedToWhatMayHoldTheInput) {
  EXPECT_EQ(patterns_for("c b a", {"a", "a"}), (Texts{"a", "a", "c", "b"}));
  EXPECT_EQ(expression_for("b", "a|.*"), "a|.*b");
  EXPECT_EQ(expression_for("", ".*|.*|a"), ".*|a");
  Texts patterns = {"a b c d e f g h i j k l m n o p"};
  check_abnormal_char_for_special_for_SQL(patterns[0].c_str(), patterns);
  check_abnormal_char_for_special_for_SQL(nullptr, patterns);
  EXPECT_EQ(patterns.size(), 17U);
  std::string expression = "a|.*";
  check_abnormal_char_for_special_for_mongo(nullptr, expression);
  EXPECT_EQ(expression, "a");
  expression = std::string(100, '.');
  check_abnormal_char_for_special_for_mongo(expression.c_str(), expression);
  EXPECT_EQ(expression.size(), 300U);
}

// The output is shown whole after each collapse.
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

// Lists long enough for each way of looking terms up, with terms of each length around a block.
TEST(SearchPatterns, EachTermOnce) {
  Texts held;
  std::string line;
  for (std::size_t i = 0; i < 3000; ++i) {
    const std::string term = std::string(i % 24, 'x') + std::to_string(i);
    held.insert(held.end(), i % 3 == 0 ? 2 : 0, term);
    line += term + " " + term + " ";
  }
  EXPECT_EQ(patterns_for(line + line, held).size(), held.size() + 2000);
}

// A phrase is found in real engines where it stands, and nowhere else.
TEST(SearchMeaning, APhraseIsASubstring) {
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
    const bool found = text.find(phrase) != std::string::npos;
    EXPECT_EQ(expression_finds("\"" + phrase + "\"", text), found) << phrase << " in " << text;
    EXPECT_EQ(like_finds("\"" + phrase + "\"", text), found) << phrase << " in " << text;
  }
  // Words are alternatives, "+" stands for anything between them; in LIKE, "%" and "_" do so too.
  const std::string found = "front of the door", missed = "door front", sum = "500 euro off";
  EXPECT_TRUE(like_finds("front+door x", found) && expression_finds("front+door x", found));
  EXPECT_FALSE(like_finds("front+door", missed) || expression_finds("front+door", missed));
  EXPECT_TRUE(like_finds("50%_off", sum) && !expression_finds("50%_off", sum));
}
