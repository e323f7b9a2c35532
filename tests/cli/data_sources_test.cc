#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;

const std::string kName64(64, 'n');
const std::string kDescription512(512, 'd');
const test::Arguments kAddTill = {"add", "till", "--type", "pos-serial", "--name", "Till 1"};

test::Arguments operator+(test::Arguments first, const test::Arguments& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

TEST(Command, DataSourcesFromAddToRemove) {
  const CommandVault vault;
  test::check_steps(
      vault,
      {
          {{"list"}, "", 0, "no data sources", ""},
          {{"channels"}, "", 0, "no channels", ""},
          {kAddTill + test::Arguments{"--description", "50% \"off\"", "--channels",
                                      test::shop_path("channels-till-1.json")},
           "", 0, "till\n", ""},
          // The rest of a --channel is its name; options that look like commands or lists stay
          // texts.
          {{"add", "list", "--type", "[a,b]", "--name", "remove", "--disabled", "--channel",
            "7:g:a:b", "--channel", "2:cam-till-1:"},
           "",
           0,
           "list\n",
           ""},
          {{"add", "-", "--type", "t", "--name", kName64, "--description", kDescription512},
           "",
           0,
           "-\n",
           ""},
          {{"list"}, "", 0, "1     list remove ", ""},
          {{"list"}, "", 0, " no      2        0       \n", ""},
          {{"show", "till"}, "", 0, "50% \"off\"\nIndex         0\nEnabled       yes\n", ""},
          {{"show", "till", "--json"}, "", 0, "\"description\": \"50% \\\"off\\\"\"", ""},
          {{"channels", "list"},
           "",
           0,
           "list        2       cam-till-1 \nlist        7       g ",
           ""},
          {{"channels", "list", "--json"}, "", 0, "\"name\": \"a:b\"", ""},
          // The library clears the description with the name; the command keeps it.
          {{"modify", "till", "--name", "Front"}, "", 0, "Front", ""},
          {{"show", "till"}, "", 0, "50% \"off\"", ""},
          {{"modify", "till", "--description", "new"}, "", 0, "new", ""},
          {{"show", "till"}, "", 0, "Front\nType          pos-serial\nDescription   new\n", ""},
          {{"modify", "till", "--description", "", "--disable"}, "", 0, "(none)", ""},
          {{"show", "till"}, "", 0, "Description   \nIndex         0\nEnabled       no\n", ""},
          {{"modify", "till", "--name", kName64}, "", 1, "", "another data source has this name"},
          {{"modify", "till", "--name", "Front", "--enable"}, "", 0, "yes", ""},
          {{"modify", "till", "--channels", "-"}, "[]", 0, "Channels    2      0", ""},
          {{"channels", "till"}, "", 0, "no channels", ""},
          {{"add", "till", "--type", "t", "--name", "n"}, "", 1, "", "already exists"},
          {{"remove", "till", "nobody"}, "", 1, "", "no data source \"nobody\""},
          {{"remove", "[till]"}, "", 1, "", "in square brackets cannot be removed"},
          {{"remove", "till", "list", "till"}, "", 0, "removed till (Front)\nremoved list (", ""},
          {{"show", "till"}, "", 1, "", "devcfg: there is no data source \"till\"\n"},
          {{"list"}, "", 0, "2     -  nnn", ""},
      });
}

TEST(Command, FiltersAndCameras) {
  const CommandVault vault;
  const std::string filters = test::shop_file("filters-till-1.json");
  test::check_steps(
      vault,
      {
          {{"import", test::shop_path("shop.json")}, "", 0, "4 added", ""},
          {{"filters", "set", "till-2", "-"}, filters, 0, "3 filters set for till-2", ""},
          {{"filters", "show", "till-2"}, "", 0, "OPERATOR: Zo\u00eb", ""},
          {{"filters", "set", "till-2", "-"}, R"([{"target":"x"}])", 0, "1 filter set", ""},
          {{"filters", "show", "till-2", "--json"},
           "",
           0,
           R"("target": "x",
    "result": "",
    "name": ""
  }
])",
           ""},
          {{"filters", "set", "till-2", "-"}, "[]", 0, "0 filters", ""},
          {{"filters", "show", "till-2"}, "", 0, "no filters", ""},
          {{"camera", "renamed", "cam-entrance", "50% \"main\""}, "", 0, "renamed 2 channels", ""},
          {{"channels"}, "", 0, "till-2      1       cam-entrance 50% \"main\"\n", ""},
          {{"camera", "removed", "cam-yard"}, "", 0, "removed 2 channels", ""},
          {{"camera", "removed", "cam-yard"}, "", 0, "removed 0 channels", ""},
          {{"camera", "renamed", "cam-yard", "x"}, "", 0, "renamed 0 channels", ""},
      });
}

TEST(Command, RefusalsChangeNothing) {
  const CommandVault vault;
  ASSERT_EQ(vault.devcfg({"import", test::shop_path("shop.json")}).exit_status, 0);
  const std::string before = vault.content();
  const std::string long_text = "[{\"target\":\"" + std::string(4096, 'x') + "\"}]";
  const test::Arguments set = {"filters", "set", "till-1", "-"};
  const test::Arguments modify = {"modify", "till-1", "--channels", "-"};
  test::check_steps(
      vault,
      {
          {kAddTill + test::Arguments{"--name", ""}, "", 2, "", "--name"},
          {{"add", "x", "--type", "t", "--name", ""}, "", 1, "", "a name must not be empty"},
          {{"add", "", "--type", "t", "--name", "n"}, "", 1, "", "an identifier must not be empty"},
          {{"add", "x", "--type", "t", "--name", kName64 + "n"}, "", 1, "", "longer than 64 bytes"},
          {{"modify", "till-1", "--description", kDescription512 + "d"}, "", 1, "", "512 bytes"},
          {{"modify", "nobody", "--enable"}, "", 1, "", "no data source \"nobody\""},
          {{"modify", "till-1", "--name", ""}, "", 1, "", "a name must not be empty"},
          {{"remove", ""}, "", 1, "", "an identifier must not be empty"},
          {{"camera", "removed", ""}, "", 1, "", "the guid of a camera must not be empty"},
          {{"camera", "renamed", "", "x"}, "", 1, "", "the guid of a camera must not be empty"},
          {{"show", "a\x1b[2J\x7f\xc2\x9b"}, "", 1, "", "\"a\\x1b[2J\\x7f\\xc2\\x9b\""},
          // Channel lists
          {modify, "{}", 1, "", "the document: the channel list is not a JSON array"},
          {modify, "null", 1, "", "the document: the channel list is not a JSON array"},
          {modify, R"([{"guid":"a","channel_index":-1,"name":""}])", 1, "", "of 0 or above"},
          {modify, R"([{"guid":"a","channel_index":0,"name":"","x":1}])", 1, "",
           "entry 0.x: unknown key"},
          {modify + test::Arguments{"--channel", "0:a:x"},
           R"([{"guid":"a","channel_index":1,"name":""}])", 1, "", "the same \"guid\""},
          // Filter lists
          {set, "{}", 1, "", "the document: not an array"},
          {set, "[[]]", 1, "", "entry 0: not an object"},
          {set, R"([{"type":-1}])", 1, "", "entry 0.type: -1 stands for no type"},
          {set, R"([{"type":"0"},{"type":2147483648}])", 1, "",
           "2 problems:\n  entry 0.type: not an integer\n  entry 1.type: not between -2147483648"},
          {set, R"([{"target":1}])", 1, "", "entry 0.target: not a string"},
          {set, R"([{"result":"a\u0000b"}])", 1, "", "entry 0.result: holds a NUL character"},
          {set, R"([{"traget":""}])", 1, "", "entry 0.traget: unknown key"},
          {set, long_text, 1, "", "entry 0.target: longer than 4095 bytes"},
          {{"filters", "set", "nobody", "-"}, "[]", 1, "", "no data source \"nobody\""},
          {{"filters", "set", "", "-"}, "[]", 1, "", "an identifier must not be empty"},
      });
  EXPECT_EQ(vault.content(), before);
}

TEST(Command, WrongUsageIsStatus2AndHelpIsNot) {
  const CommandVault vault;
  test::check_steps(
      vault, {
                 {{}, "", 2, "", "devcfg: A subcommand is required"},
                 {{"nonsense"}, "", 2, "", "devcfg: "},
                 {{"list", "extra"}, "", 2, "", "extra"},
                 {{"add", "x", "--type", "t"}, "", 2, "", "--name is required"},
                 {{"modify", "x"}, "", 2, "", "nothing to change is given"},
                 {{"modify", "x", "--enable", "--disable"}, "", 2, "", "excludes"},
                 {{"modify", "x", "--channel", "1:a"}, "", 2, "", "is not INDEX:GUID:NAME"},
                 {{"modify", "x", "--channel", "x:a:b"}, "", 2, "", "is not INDEX:GUID:NAME"},
                 {{"modify", "x", "--channel", ":a:b"}, "", 2, "", "is not INDEX:GUID:NAME"},
                 {{"remove"}, "", 2, "", "ID is required"},
                 {{"filters"}, "", 2, "", "A subcommand is required"},
                 {{"camera", "renamed", "g"}, "", 2, "", "NAME is required"},
                 {{"import"}, "", 2, "", "FILE is required"},
                 {{"--version"}, "", 0, "devcfg 0.", ""},
                 {{"--help"}, "", 0, "Exit status: 0 done", ""},
                 {{"camera", "renamed", "--help"}, "", 0, "Example:\n  devcfg camera", ""},
             });
  EXPECT_EQ(vault.devcfg({"list", "--log"}).errors, vault.devcfg({"--log", "list"}).errors);
  EXPECT_NE(vault.devcfg({"show", "x", "--json", "--log"}).errors, "");
}

TEST(Command, NewIdentifiersAndParallelAdds) {
  constexpr int kProcesses = 12;
  const CommandVault vault;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(test::start([&vault] {
      const test::Outcome outcome =
          vault.devcfg({"add", "--type", "t", "--name", "same", "--json", "--channel", "0:g:n"});
      const std::regex answer("\\{\n  \"vault_id\": \"ID[0-9A-F]{32}\"\n\\}\n");
      return outcome.exit_status == 0 && std::regex_match(outcome.output, answer) ? 0 : 1;
    }));
  }
  for (const pid_t child : children) {
    EXPECT_EQ(test::wait_for(child), 0);
  }
  const std::string content = vault.content();
  for (int i = 0; i < kProcesses; ++i) {
    EXPECT_NE(content.find("\"index\": " + std::to_string(i) + ","), std::string::npos) << i;
  }
}

TEST(Command, AFullVaultIsToldInWords) {
  const CommandVault vault;
  std::ostringstream document;
  document << "{\"vault_list\": [";
  for (int i = 0; i < 128; ++i) {
    document << (i > 0 ? "," : "") << R"({"vault_id":"s)" << i
             << R"(","vault_name":"","description":"","type":"","index":)" << i
             << R"(,"enable":true,"last_recv_time":0,"filter":[],"channel_guid_list":[]})";
  }
  document << "]}";
  test::check_steps(
      vault, {
                 {{"import", "-"}, document.str(), 0, "128 added", ""},
                 {kAddTill, "", 1, "", "the vault list is full: 128 data sources are stored"},
                 {{"modify", "s5", "--description", "x"}, "", 1, "", "has no name yet"},
                 {{"import", "-"},
                  test::shop_file("shop.json"),
                  1,
                  "",
                  "vault_list: 132 data sources, 128 of them stored already, are more than 128"},
                 {{"remove", "s5"}, "", 0, "removed s5 ()", ""},
                 {kAddTill, "", 0, "till", ""},
                 {{"list"}, "", 0, "\n5     till ", ""},
             });
}
