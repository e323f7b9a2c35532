// What the patterns find in real engines.
#define PCRE2_CODE_UNIT_WIDTH 8
#include <gtest/gtest.h>
#include <pcre2.h>
#include <re2/re2.h>
#include <sqlite3.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace {

struct Row {
  const char* search;
  std::vector<std::string> found;
  std::vector<std::string> not_found;
};

// Whether the text contains a match of a pattern, which is put into the statement as it is.
bool like_finds(const std::string& search, const std::string& text) {
  std::vector<std::string> patterns;
  check_abnormal_char_for_special_for_SQL(search.c_str(), patterns);
  sqlite3* database = nullptr;
  sqlite3_open(":memory:", &database);
  int found = 0;
  for (const std::string& pattern : patterns) {
    const std::string sql = "SELECT ?1 LIKE '%" + pattern + "%'";
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sql;
    sqlite3_bind_text(statement, 1, text.c_str(), -1, SQLITE_STATIC);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
    found |= sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
  }
  sqlite3_close(database);
  return found != 0;
}

bool pcre2_finds(const std::string& expression, const std::string& text) {
  int error = 0;
  PCRE2_SIZE offset = 0;
  const std::unique_ptr<pcre2_code, decltype(&pcre2_code_free)> code(
      pcre2_compile(reinterpret_cast<PCRE2_SPTR>(expression.data()), expression.size(), 0, &error,
                    &offset, nullptr),
      pcre2_code_free);
  if (code == nullptr) {
    ADD_FAILURE() << expression << " fails at " << offset;
    return false;
  }
  const std::unique_ptr<pcre2_match_data, decltype(&pcre2_match_data_free)> match(
      pcre2_match_data_create_from_pattern(code.get(), nullptr), pcre2_match_data_free);
  return pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                     match.get(), nullptr) >= 0;
}

// In two engines, which have to agree.
bool expression_finds(const std::string& search, const std::string& text) {
  std::string expression;
  check_abnormal_char_for_special_for_mongo(search.c_str(), expression);
  const RE2 re2(expression, RE2::Latin1);
  EXPECT_TRUE(re2.ok()) << expression << ": " << re2.error();
  const bool found = RE2::PartialMatch(text, re2);
  EXPECT_EQ(pcre2_finds(expression, text), found) << expression;
  return found;
}

void expect_found(bool (*finds)(const std::string&, const std::string&),
                  const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    for (const std::string& text : row.found) {
      EXPECT_TRUE(finds(row.search, text)) << row.search << " in " << text;
    }
    for (const std::string& text : row.not_found) {
      EXPECT_FALSE(finds(row.search, text)) << row.search << " in " << text;
    }
  }
}

std::string random_line(std::mt19937& random, const std::string& bytes) {
  std::string line(1 + random() % 12, ' ');
  for (char& byte : line) {
    byte = bytes[random() % bytes.size()];
  }
  return line;
}

}  // namespace

TEST(SearchMeaning, FindsWhatItShould) {
  const std::vector<Row> rows = {
      {"front door", {"the front", "a door"}, {"gate", ""}},
      {"front+door", {"front door", "frontdoor", "front of the door"}, {"door front", "front"}},
      {"\"front door\"", {"the front door"}, {"front  door", "frontdoor", "front"}},
      {"it's", {"it's"}, {"its", "it''s"}},
      {"x + gate", {"gate"}, {"door"}},
      {"\"a+b\"", {"a+b"}, {"ab", "aab"}},
      {"c:\\dir", {"c:\\dir"}, {"c:dir"}},
      {"a+ +b", {"only a", "only b"}, {"c"}},
  };
  expect_found(like_finds, rows);
  expect_found(expression_finds, rows);
  expect_found(like_finds, {{"50%_off", {"50 %off", "500 euro off"}, {"50off"}}});
  expect_found(expression_finds, {{"50%_off", {"50%_off"}, {"50 off"}},
                                  {"a.b [x]", {"a.b", "[x]"}, {"axb", "x"}},
                                  {"$5 (net)?", {"$5", "(net)?"}, {"5", "net"}},
                                  {"a|b", {"a|b"}, {"a", "b"}},
                                  {"x|+", {"x|", "x|y"}, {"x", "y"}},
                                  {"x\\ +", {"x\\"}, {"x", "y"}}});
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
