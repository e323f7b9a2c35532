#define PCRE2_CODE_UNIT_WIDTH 8
#include <gtest/gtest.h>
#include <pcre2.h>
#include <re2/re2.h>

#include <random>
#include <regex>

#include "orvaneip.h"
#include "tests/support/bare_sqlite.h"
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

// Whether the text contains a match of a pattern, which is put into the statement as it is.
bool like_finds(const std::string& search, const std::string& text) {
  static const test::BareSqlite database(":memory:");
  std::string sql = "SELECT 0";
  for (const std::string& pattern : patterns_for(search)) {
    sql += " OR '" + std::regex_replace(text, std::regex("'"), "''") + "' LIKE '%" + pattern + "%'";
  }
  const auto result = database.query(sql);
  EXPECT_TRUE(result) << sql;
  return result && result->at(0, 0) == "1";
}

PCRE2_SPTR bytes(const std::string& text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

bool pcre2_finds(const std::string& expression, const std::string& text) {
  int error = 0;
  PCRE2_SIZE offset = 0;
  pcre2_code* code =
      pcre2_compile(bytes(expression), expression.size(), 0, &error, &offset, nullptr);
  EXPECT_NE(code, nullptr) << expression << " fails at " << offset;
  pcre2_match_data* match = pcre2_match_data_create(1, nullptr);
  const int result = pcre2_match(code, bytes(text), text.size(), 0, 0, match, nullptr);
  pcre2_match_data_free(match);
  pcre2_code_free(code);
  return result >= 0;
}

// In two engines, which have to agree.
bool expression_finds(const std::string& search, const std::string& text) {
  const std::string expression = expression_for(search);
  const RE2 re2(expression, RE2::Latin1);
  EXPECT_TRUE(re2.ok()) << expression << ": " << re2.error();
  const bool found = RE2::PartialMatch(text, re2);
  EXPECT_EQ(pcre2_finds(expression, text), found) << expression;
  return found;
}

std::string random_line(std::mt19937& random, const std::string& alphabet) {
  std::string line(1 + random() % 12, ' ');
  std::generate(line.begin(), line.end(), [&] { return alphabet[random() % alphabet.size()]; });
  return line;
}

}  // namespace

TEST(SearchPatterns, Table) {
  // The search text, the patterns, the expression.
  const std::tuple<std::string, Texts, std::string> kRows[] = {
      {"  front  door  ", {"front", "door"}, "front|door"},
      {"a++b", {"a%%b"}, "a.*b"},
      {"a + b", {"a", "b"}, "a|b"},
      {"a+ +b", {"a", "b"}, "a.*|.*b"},
      {"+ a +", {"a"}, "a"},
      {"+", {}, ".*"},
      {"+ \"\"", {}, ".*|"},
      {"+ + + + a", {"a"}, ".*|a"},
      {"50%_off car car", {"50%_off", "car"}, "50%_off|car|car"},
      {"price $5 (net)", {"price", "$5", "(net)"}, "price|\\$5|\\(net\\)"},
      {"[x] c:\\dir x{2} a-b/c",
       {"[x]", "c:\\dir", "x{2}", "a-b/c"},
       "\\[x\\]|c:\\\\dir|x{2}|a-b/c"},
      {"%% a%%", {"", "a"}, "%%|a%%"},
      {"%%%", {"%"}, "%%%"},
      // The phrase, and a lone double quote.
      {"ab\"c d\"ef", {"abc def"}, "abc def"},
      {"x+\"y z\"", {"x%%y z"}, "x.*y z"},
      {"x \"a.b c\" y", {"x", "a.b c", "y"}, "x|a\\.b c|y"},
      {"a  \"\"  b", {"a", "b"}, "a|b"},
      {"a \"+\" b", {"a", "+", "b"}, "a|\\+|b"},
      {"say \"it's\"", {"say", "it''s"}, "say|it's"},
      {"\"a b\" \"c d\"", {"a b\" \"c d"}, "a b\" \"c d"},
      {"\" a \"", {" a "}, " a "},
      {"\"%%\"", {""}, "%%"},
      {"say \"hi", {"say", "hi"}, "say|\"hi"},
      {"a\"b", {"ab"}, "a\"b"},
      // Nothing in it; only the space is trimmed and separates; bytes that are no UTF-8.
      {"\"\"", {}, ""},
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
  EXPECT_EQ(patterns[16], "p");
  std::string expression(100, '.');
  check_abnormal_char_for_special_for_mongo(expression.c_str(), expression);
  EXPECT_EQ(expression.size(), 300U);
  expression = "a|.*";
  check_abnormal_char_for_special_for_mongo(nullptr, expression);
  EXPECT_EQ(expression, "a");
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

// What the patterns find in real engines.
TEST(SearchMeaning, FindsWhatItShould) {
  // In LIKE, in expressions or in both: the search text, texts that are found, texts that are not.
  const std::tuple<std::string, const char*, Texts, Texts> kRows[] = {
      {"both", "front door", {"the front", "a door"}, {"gate", ""}},
      {"both", "front+door", {"front door", "frontdoor", "front of the door"}, {"door front"}},
      {"both", "\"front door\"", {"the front door"}, {"front  door", "front"}},
      {"both", "it's", {"it's"}, {"its", "it''s"}},
      {"both", "\"a+b\"", {"a+b"}, {"ab", "aab"}},
      {"both", "c:\\dir", {"c:\\dir"}, {"c:dir"}},
      {"both", "a+ +b", {"only a", "only b"}, {"c"}},
      {"like", "50%_off", {"50 %off", "500 euro off"}, {"50off"}},
      {"expression", "50%_off", {"50%_off"}, {"50 off"}},
      {"expression", "a.b [x]", {"a.b", "[x]"}, {"axb", "x"}},
      {"expression", "$5 (net)?", {"$5", "(net)?"}, {"5", "net"}},
      {"expression", "a|b", {"a|b"}, {"a", "b"}},
      {"expression", "x|+", {"x|", "x|y"}, {"x", "y"}},
      {"expression", "x\\ +", {"x\\"}, {"x", "y"}},
  };
  for (const auto& [where, search, found, not_found] : kRows) {
    for (const std::string& text : found) {
      EXPECT_TRUE(where == "expression" || like_finds(search, text)) << search << " in " << text;
      EXPECT_TRUE(where == "like" || expression_finds(search, text)) << search << " in " << text;
    }
    for (const std::string& text : not_found) {
      EXPECT_FALSE(where != "expression" && like_finds(search, text)) << search << " in " << text;
      EXPECT_FALSE(where != "like" && expression_finds(search, text)) << search << " in " << text;
    }
  }
}

// Braces are left out: they pass as they are, and an engine may refuse them.
TEST(SearchMeaning, EveryExpressionCompilesAndAPhraseFindsItself) {
  std::mt19937 random(47);
  for (int i = 0; i < 2000; ++i) {
    expression_finds(random_line(random, " +\"\\|.*?^[]()$-a'%\xC3\xFF\t"), "text");
    const std::string phrase = random_line(random, " +\\|.*?^[]()$-a'\xC3\xFF\n");
    EXPECT_TRUE(expression_finds("\"" + phrase + "\"", "(" + phrase + ")")) << phrase;
    EXPECT_TRUE(like_finds("\"" + phrase + "\"", "(" + phrase + ")")) << phrase;
  }
}
