#include <algorithm>

#include "tests/cli/command.h"
#include "tests/support/bare_sqlite.h"

namespace {

using test::CommandVault;
using test::replaced;

// Two data sources, with ' for "; each row below makes one value invalid.
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

TEST(Import, ReportsEachProblemWithItsPosition) {
  const std::string kRows[][3] = {
      {"'vault_list'", "'vault'", "vault: unknown key\n  vault_list: missing"},
      {"'vault_id':'b'", "'vault_id':'a'", "vault_list[1].vault_id: \"a\" is used twice"},
      {"'vault_name':'B',", "", "vault_list[1].vault_name: missing"},
      {"'index':3", "'index':3.0", "vault_list[1].index: not an integer"},
      {":5,", ":9223372036854775808,", "vault_list[1].last_recv_time: not between 0 and"},
      {"'filter':[]", "'filter':{}", "vault_list[1].filter: not an array"},
      {"'y'", "'" + std::string(4096, 'y') + "'",
       "vault_list[0].filter[0].result: longer than 4095 bytes"},
      {"'guid':'g'", "'guid':''", "vault_list[0].channel_guid_list: a channel has no \"guid\""},
  };
  const CommandVault vault;
  const std::string before = vault.content();
  for (const auto& [from, to, problem] : kRows) {
    vault.check({{"import -", 1, ":\n  " + problem, json(replaced(kDocument, from, to))}});
  }
  const std::string bad = replaced(replaced(kDocument, "true", "'yes'"), "'index':3", "'index':0");
  vault.check({{"import -", 1, "has a problem:\n  the document: not an object\n", "[]"},
               {"import -", 1,
                "devcfg: nothing was changed: standard input has 2 problems:\n"
                "  vault_list[0].enable: not true or false\n"
                "  vault_list[1].index: 0 is used twice\n",
                json(bad)}});
  EXPECT_EQ(vault.content(), before);
  vault.check({{"import -", 0, "2 added", json(kDocument)},
               {"import -", 1,
                "devcfg: nothing was changed: standard input has 3 problems:\n"
                "  vault_list[0].index: 0 is the index of the stored \"a\"\n"
                "  vault_list[1].vault_id: \"b\" is stored already\n"
                "  vault_list[1].index: 3 is the index of the stored \"b\"\n",
                json(replaced(kDocument, "'vault_id':'a'", "'vault_id':'c'"))}});
}

TEST(Import, ReproducesAnExportedVaultByteForByteDespiteOrphanedLists) {
  const std::string kValues[][2] = {
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
  for (const auto& [from, to] : kValues) {
    document = replaced(document, from, to);
  }
  const CommandVault first, second;
  first.check({{"import -", 0, "2 added", document}});
  const std::string exported = first.content();
  test::expect_part(exported, std::string(10'240, 'n'));
  test::expect_part(exported, "\x80\xff broken");
  const test::Outcome list = first.devcfg("list --json");
  test::expect_part(list.output, "\uFFFD\uFFFD broken");
  test::expect_part(list.errors, "U+FFFD");
  test::expect_part(second.content(), "\"vault_list\": [\n  ]");
  second.check({{"add x --type t --name n", 0, "x"}, {"remove x", 0, "removed"}});
  EXPECT_EQ(test::BareSqlite(second.database())
                .exec("INSERT INTO channel VALUES (9, 'a', 1, '', '');"  // without a data source
                      "INSERT INTO filter VALUES (9, 'a', 1, '', '', '')"),
            0);
  second.check({{"import -", 0, "2 added", exported}});
  EXPECT_EQ(second.content(), exported);
}
