#include <gtest/gtest.h>

#include "orvaneip.h"
#include "tests/cli/command.h"

namespace {

using test::CommandVault;
using test::replaced;

// Two data sources; the rows below spoil it in one place each.
const std::string kDocument = R"({"vault_list":[
 {"vault_id":"a","vault_name":"A","description":"","type":"t","index":0,"enable":true,
  "last_recv_time":0,"filter":[{"type":7,"target":"x","result":"y","name":"z"}],
  "channel_guid_list":[{"channel_index":1,"guid":"g","name":"n"}]},
 {"vault_id":"b","vault_name":"B","description":"","type":"t","index":3,"enable":false,
  "last_recv_time":5,"filter":[],"channel_guid_list":[]}]})";

std::string refusal(const CommandVault& vault, const std::string& document) {
  const test::Outcome outcome = vault.devcfg({"import", "-"}, document);
  EXPECT_EQ(outcome.exit_status, 1) << document;
  EXPECT_EQ(outcome.output, "");
  return outcome.errors;
}

}  // namespace

TEST(Import, EachProblemIsToldWithItsPlace) {
  struct Row {
    const char* from;
    std::string to;
    const char* problem;
  };
  const Row kRows[] = {
      {"\"vault_list\"", "\"vault\"", "vault: unknown key\n  vault_list: missing"},
      {"{\"vault_list\":[\n", "{\"vault_list\":[[],\n", "vault_list[0]: not an object"},
      {"\"vault_id\":\"a\"", "\"vault_id\":\"\"", "vault_list[0].vault_id: empty"},
      {"\"vault_id\":\"b\"", "\"vault_id\":\"a\"", "vault_list[1].vault_id: \"a\" is used twice"},
      {"\"vault_id\":\"b\"", "\"vault_id\":12", "vault_list[1].vault_id: not a string"},
      {"\"vault_id\":\"b\"", "\"vault_id\":\"b\\u0000\"", "vault_list[1].vault_id: holds a NUL"},
      {"\"vault_name\":\"B\",", "", "vault_list[1].vault_name: missing"},
      {"\"description\":\"\"", "\"description\":null", "vault_list[0].description: not a string"},
      {"\"type\":\"t\"", "\"type\":[]", "vault_list[0].type: not a string"},
      {"\"index\":3", "\"index\":0", "vault_list[1].index: 0 is used twice"},
      {"\"index\":3", "\"index\":-1", "vault_list[1].index: not between 0 and 2147483647"},
      {"\"index\":3", "\"index\":2147483648", "vault_list[1].index: not between 0 and 2147483647"},
      {"\"index\":3", "\"index\":3.0", "vault_list[1].index: not an integer"},
      {"\"enable\":true", "\"enable\":1", "vault_list[0].enable: not true or false"},
      {":5,", ":-5,", "vault_list[1].last_recv_time: not between 0 and 9223372036854775807"},
      {":5,", ":9223372036854775808,", "vault_list[1].last_recv_time: not between 0 and"},
      {":5,", ":99999999999999999999999,", "vault_list[1].last_recv_time: not between 0 and"},
      {"\"filter\":[]", "\"filter\":{}", "vault_list[1].filter: not an array"},
      {"\"type\":7", "\"type\":-1", "vault_list[0].filter[0].type: -1 stands for no type"},
      {"\"result\":\"y\"", "\"result\":\"" + std::string(4096, 'y') + "\"",
       "vault_list[0].filter[0].result: longer than 4095 bytes"},
      {"\"channel_guid_list\":[]", "\"channel_guid_list\":1",
       "vault_list[1].channel_guid_list: not an array"},
      {"\"guid\":\"g\"", "\"guid\":\"\"",
       "vault_list[0].channel_guid_list: a channel has no \"guid\""},
      {"\"guid\":\"g\"", "\"guid\":\"g\",\"x\":1", "vault_list[0].channel_guid_list[0].x: unknown"},
      {"\"index\":3", "\"index\":3,\"status\":{}", "vault_list[1].status: unknown key"},
  };
  const CommandVault vault;
  const std::string before = vault.content();
  for (const Row& row : kRows) {
    const std::string errors = refusal(vault, replaced(kDocument, row.from, row.to));
    EXPECT_NE(errors.find(std::string(":\n  ") + row.problem), std::string::npos)
        << row.problem << "\n"
        << errors;
  }
  EXPECT_EQ(refusal(vault, "[]"),
            "devcfg: nothing was changed: standard input has a problem:\n"
            "  the document: not an object\n");
  EXPECT_EQ(vault.content(), before);
}

TEST(Import, AllProblemsAreToldAtOnce) {
  const CommandVault vault;
  std::string document = replaced(kDocument, "\"index\":3", "\"index\":0");
  document = replaced(document, "\"enable\":true", "\"enable\":\"yes\"");
  document = replaced(document, "\"type\":7", "\"type\":7.5");
  EXPECT_EQ(refusal(vault, document),
            "devcfg: nothing was changed: standard input has 3 problems:\n"
            "  vault_list[0].enable: not true or false\n"
            "  vault_list[0].filter[0].type: not an integer\n"
            "  vault_list[1].index: 0 is used twice\n");
}

TEST(Import, ConflictsWithTheStoredAreRefusedUnlessReplaced) {
  const CommandVault vault;
  ASSERT_EQ(vault.devcfg({"import", "-"}, kDocument).exit_status, 0);
  const std::string before = vault.content();
  const std::string other = replaced(kDocument, "\"vault_id\":\"a\"", "\"vault_id\":\"c\"");
  EXPECT_EQ(refusal(vault, other),
            "devcfg: nothing was changed: standard input has 3 problems:\n"
            "  vault_list[0].index: 0 is the index of the stored \"a\"\n"
            "  vault_list[1].vault_id: \"b\" is stored already\n"
            "  vault_list[1].index: 3 is the index of the stored \"b\"\n");
  test::check_steps(vault, {{{"import", "-", "--replace", "--dry-run"},
                             other,
                             0,
                             "remove a  A    0     1        1\n"
                             "remove b  B    3     0        0\n"
                             "add    c  A    0     1        1\n"
                             "add    b  B    3     0        0\n"
                             "dry run: nothing was changed\n",
                             ""}});
  EXPECT_EQ(vault.content(), before);
  test::check_steps(
      vault, {{{"import", "-", "--replace"}, other, 0, "2 data sources removed, 2 added", ""},
              {{"show", "a"}, "", 1, "", "no data source"}});
  EXPECT_EQ(vault.content(), replaced(before, "\"vault_id\": \"a\"", "\"vault_id\": \"c\""));
}

TEST(Import, AddsToWhatIsStored) {
  const CommandVault vault;
  test::check_steps(vault, {{{"add", "--type", "t", "--name", "0"}, "", 0, "ID", ""},
                            {{"add", "--type", "t", "--name", "1"}, "", 0, "ID", ""}});
  const std::string moved = replaced(kDocument, "\"index\":0", "\"index\":2");
  test::check_steps(vault, {{{"import", "-"}, moved, 0, "0 data sources removed, 2 added", ""},
                            {{"list"}, "", 0, "\n2     a ", ""},
                            {{"import", "-", "--replace"}, R"({"vault_list":[]})", 0, "4 ", ""},
                            {{"list"}, "", 0, "no data sources", ""}});
}

TEST(Import, RoundTripReproducesTheVaultByteForByte) {
  struct Row {
    const char* from;
    std::string to;
  };
  const Row kTexts[] = {
      {"\"vault_name\":\"A\"", "\"vault_name\":\"" + std::string(10'240, 'n') + "\""},
      {"\"vault_name\":\"B\"",
       R"("vault_name":"'; DROP TABLE \"x\" -- 100%s%n \\ / \ud83d\ude00 Zoë")"},
      {"\"description\":\"\"", R"("description":"\u0001\t\r\n\u001b[31m\u007f )"
                               "\x80\xff broken\""},
      {"\"target\":\"x\"", "\"target\":\"" + std::string(4095, 'x') + "\""},
      {"\"type\":7", "\"type\":-2147483648"},
      {"\"channel_index\":1", "\"channel_index\":2147483647"},
      {"\"index\":3", "\"index\":2147483647"},
      {":5,", ":9223372036854775807,"},
  };
  std::string document = kDocument;
  for (const Row& row : kTexts) {
    document = replaced(document, row.from, row.to);
  }
  const CommandVault first;
  ASSERT_EQ(first.devcfg({"import", "-"}, document).errors, "");
  const std::string exported = first.content();
  EXPECT_NE(exported.find(std::string(10'240, 'n')), std::string::npos);
  EXPECT_NE(exported.find("\x80\xff broken"), std::string::npos);
  EXPECT_NE(exported.find("\"last_recv_time\": 9223372036854775807"), std::string::npos);
  const CommandVault second;
  ASSERT_EQ(second.devcfg({"import", "-"}, exported).errors, "");
  EXPECT_EQ(second.content(), exported);
}

TEST(Import, ListsThatWereStoredWithoutADataSourceDoNotJoinIn) {
  const CommandVault vault;
  setenv("ORVANE_VAULT", vault.database().c_str(), 1);
  CDataSource store;
  ASSERT_EQ(store.init(), 0);
  metadata_vault::Filter filter;
  filter.vault_id = "a";
  metadata_vault::Channel channel;
  channel.vault_id = "a";
  ASSERT_EQ(store.insert_filter(filter), 0);
  ASSERT_EQ(store.insert_channel(channel), 0);
  const CommandVault clean;
  for (const CommandVault* each : {&vault, &clean}) {
    ASSERT_EQ(each->devcfg({"import", "-"}, kDocument).errors, "");
  }
  EXPECT_EQ(vault.content(), clean.content());
}
