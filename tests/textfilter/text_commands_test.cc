// The commands that show what the library does with texts.
#include <gtest/gtest.h>
#include <json-c/json.h>

#include <string>
#include <vector>

#include "orvaneip.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace {

void store(std::string vault_id, const char* filters) {
  json_object* list = json_tokener_parse(filters);
  ASSERT_EQ(devcfg_modify_filter(vault_id.data(), list), 0);
  json_object_put(list);
}

}  // namespace

TEST(TextCommands, Table) {
  const test::TempVault vault;
  store("v", R"([{"type":0,"target":"cat","result":"dog"},{"type":0,"target":"x","result":"xx"}])");
  store("broken",
        R"([{"type":0,"target":"a","result":"b"},{"type":-1,"target":"b","result":"c"}])");
  struct Row {
    std::vector<std::string> arguments;
    std::string input;
    int exit_status;
    std::string output;
    std::string errors;  // part of them
  };
  const std::string large(5'000'000, '.');
  const Row kRows[] = {
      {{"filter-text", "v"}, "a cat\ncat\n\nx", 0, "a dog\ndog\n\nxx", ""},
      {{"filter-text", "v", "--whole"}, "x\nx", 0, std::string(1000, 'x') + "\nx", "999 passes"},
      {{"filter-text", "v", "--whole"}, large + "cat", 0, large + "dog", ""},
      {{"filter-text", "v", "--hits"}, "cat cat\ncat", 0, "dog dog\ndog", "3  \"cat\" -> \"dog\""},
      {{"filter-text", "v"}, std::string("cat\na\0b", 7), 1, "dog\n", "text 2 holds a NUL"},
      {{"filter-text", "broken"}, "ab\n", 1, "bb\n", "only the first 1 filters"},
      {{"filter-text", "none"}, "cat", 1, "", "no data source \"none\""},
      {{"filter-text", ""}, "cat", 1, "", "the ID is empty"},
      {{"filter-text"}, "", 2, "", "ID is required"},
      {{"search", "like", "it's+a \"b c\""}, "", 0, "it''s%%a\nb c\n", ""},
      {{"search", "like", "--json", "a b"}, "", 0, "[\n  \"a\",\n  \"b\"\n]\n", ""},
      {{"search", "regex", "a.b + c"}, "", 0, "a\\.b|c\n", ""},
      {{"metadata", "remove", "m"}, "", 1, "", "\"m\" was not removed"},
  };
  for (const Row& row : kRows) {
    const test::Outcome outcome = test::run(ORVANEIP_DEVCFG, row.arguments, row.input);
    EXPECT_EQ(outcome.exit_status, row.exit_status) << outcome.errors;
    EXPECT_TRUE(outcome.output == row.output) << outcome.output.substr(0, 200);
    EXPECT_NE(outcome.errors.find(row.errors), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.errors.empty(), row.errors.empty()) << outcome.errors;
  }
}

TEST(TextCommands, AVaultThatCannotBeReadIsTold) {
  const test::TempVault vault;
  test::write_file(vault.database(), "no database at all, but a text that is long enough for one");
  const test::Outcome outcome = test::run(ORVANEIP_DEVCFG, {"filter-text", "v"}, "cat");
  EXPECT_EQ(outcome.exit_status, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_NE(outcome.errors.find("the vault database cannot be read"), std::string::npos);
}
