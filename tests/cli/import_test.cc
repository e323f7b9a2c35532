#include <algorithm>

#include "orvaneip.h"
#include "tests/cli/command.h"

namespace {

using test::CommandVault;
using test::replaced;

// Two data sources, ' for "; the rows below spoil it in one place each.
const std::string kDocument = R"({'vault_list':[
 {'vault_id':'a','vault_name':'A','description':'','type':'t','index':0,'enable':true,
  'last_recv_time':0,'filter':[{'type':7,'target':'x','result':'y','name':'z'}],
  'channel_guid_list':[{'channel_index':1,'guid':'g','name':'n'}]},
 {'vault_id':'b','vault_name':'B','description':'','type':'t','index':3,'enable':false,
  'last_recv_time':5,'filter':[],'channel_guid_list':[]}]})";

std::string json(std::string text) {
  std::replace(text.begin(), text.end(), '\'', '"');
  return text;
}

}  // namespace

TEST(Import, EachProblemIsToldWithItsPlace) {
  const std::string kRows[][3] = {
      {"'vault_list'", "'vault'", "vault: unknown key\n  vault_list: missing"},
      {"'vault_id':'a'", "'vault_id':''", "vault_list[0].vault_id: empty"},
      {"'vault_id':'b'", "'vault_id':'a'", "vault_list[1].vault_id: \"a\" is used twice"},
      {"'description':''", "'description':null", "vault_list[0].description: not a string"},
      {"'vault_name':'B',", "", "vault_list[1].vault_name: missing"},
      {"'index':3", "'index':3.0", "vault_list[1].index: not an integer"},
      {":5,", ":-5,", "vault_list[1].last_recv_time: not between 0 and 9223372036854775807"},
      {"'index':3", "'index':2147483648", "vault_list[1].index: not between 0 and 2147483647"},
      {":5,", ":9223372036854775808,", "vault_list[1].last_recv_time: not between 0 and"},
      {"'filter':[]", "'filter':{}", "vault_list[1].filter: not an array"},
      {"'type':7", "'type':-1", "vault_list[0].filter[0].type: -1 stands for no type"},
      {"'y'", "'" + std::string(4096, 'y') + "'",
       "vault_list[0].filter[0].result: longer than 4095 bytes"},
      {"'guid':'g'", "'guid':''", "vault_list[0].channel_guid_list: a channel has no \"guid\""},
      {"'index':3", "'index':3,'status':{}", "vault_list[1].status: unknown key"},
  };
  const CommandVault vault;
  const std::string before = vault.content();
  for (const auto& [from, to, problem] : kRows) {
    vault.check({{"import -", 1, ":\n  " + problem, json(replaced(kDocument, from, to))}});
  }
  std::string bad = replaced(replaced(kDocument, "true", "'yes'"), ":7", ":7.5");
  bad = replaced(bad, "'index':3", "'index':0");
  const std::string begin = "devcfg: nothing was changed: standard input has ";
  vault.check({{"import -", 1, begin + "a problem:\n  the document: not an object\n", "[]"},
               {"import -", 1,
                begin + "3 problems:\n  vault_list[0].enable: not true or false\n"
                        "  vault_list[0].filter[0].type: not an integer\n"
                        "  vault_list[1].index: 0 is used twice\n",
                json(bad)}});
  EXPECT_EQ(vault.content(), before);
}

TEST(Import, ConflictsWithTheStoredAreRefusedUnlessReplaced) {
  const CommandVault vault;
  vault.check({{"import -", 0, "2 added", json(kDocument)}});
  const std::string before = vault.content();
  const std::string other = json(replaced(kDocument, "'vault_id':'a'", "'vault_id':'c'"));
  const std::string free = json(replaced(kDocument, "'index':0", "'index':2"));
  vault.check({{"import -", 1,
                "devcfg: nothing was changed: standard input has 3 problems:\n"
                "  vault_list[0].index: 0 is the index of the stored \"a\"\n"
                "  vault_list[1].vault_id: \"b\" is stored already\n"
                "  vault_list[1].index: 3 is the index of the stored \"b\"\n",
                other},
               {"import - --replace --dry-run", 0,
                "remove a  A    0     1        1\nremove b  B    3     0        0\n"
                "add    c  A    0     1        1\nadd    b  B    3     0        0\n"
                "dry run: nothing was changed\n",
                other}});
  EXPECT_EQ(vault.content(), before);
  vault.check({{"import - --replace", 0, "2 data sources removed, 2 added", other},
               {"show a", 1, "no data source"}});
  EXPECT_EQ(vault.content(), replaced(before, "\"vault_id\": \"a\"", "\"vault_id\": \"c\""));
  vault.check({{"remove b", 0, "removed b"},
               {"import -", 0, "0 data sources removed, 2 added", free},
               {"list", 0, "\n2     a "},
               {"import - --replace", 0, "3 ", R"({"vault_list":[]})"},
               {"list", 0, "no data sources"}});
}

TEST(Import, RoundTripReproducesTheVaultByteForByteWhateverListsWereLeftOver) {
  const std::string kTexts[][2] = {
      {R"("vault_name":"A")", R"("vault_name":")" + std::string(10'240, 'n') + '"'},
      {R"("vault_name":"B")",
       R"("vault_name":"'; DROP TABLE \"x\" -- 100%s%n \\ / \ud83d\ude00 Zoë")"},
      {R"("description":"")", R"("description":"\u0001\t\r\n\u001b[31m\u007f )"
                              "\x80\xff broken\""},
      {R"("target":"x")", R"("target":")" + std::string(4095, 'x') + '"'},
      {R"("type":7)", R"("type":-2147483648)"},
      {R"("channel_index":1)", R"("channel_index":2147483647)"},
      {R"("index":3)", R"("index":2147483647)"},
      {":5,", ":9223372036854775807,"},
  };
  std::string document = json(kDocument);
  for (const auto& [from, to] : kTexts) {
    document = replaced(document, from, to);
  }
  const CommandVault first;
  first.check({{"import -", 0, "2 added", document}});
  const std::string exported = first.content();
  for (const std::string& part : {std::string(10'240, 'n'), std::string("\x80\xff broken"),
                                  std::string("\"last_recv_time\": 9223372036854775807")}) {
    test::expect_part(exported, part);
  }
  const test::Outcome list = first.devcfg("list --json");
  test::expect_part(list.output, "\uFFFD\uFFFD broken");
  test::expect_part(list.errors, "U+FFFD");
  const CommandVault second;
  setenv("ORVANE_VAULT", second.database().c_str(), 1);
  CDataSource store;
  ASSERT_EQ(store.init(), 0);  // lists that belong to no data source
  ASSERT_EQ(store.insert_filter({"", "a", 1, "", "", ""}), 0);
  ASSERT_EQ(store.insert_channel({"", "a", 1, "", ""}), 0);
  second.check({{"import -", 0, "2 added", exported}});
  EXPECT_EQ(second.content(), exported);
}
