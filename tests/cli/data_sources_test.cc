#include "tests/cli/command.h"

namespace {

using test::CommandVault;

const std::string kName64(64, 'n');
const std::string kDescription512(512, 'd');
const std::string kAddTill = "add till --type pos-serial --name 'Till 1'";

}  // namespace

TEST(Command, DataSourcesFromAddToRemove) {
  CommandVault().check({
      {"list", 0, "no data sources"},
      {"channels", 0, "no channels"},
      {kAddTill + " --description '50% \"off\"' --channels channels-till-1.json", 0, "till\n"},
      // The rest of a --channel is its name; what looks like a command or a list stays a text.
      {"add list --type [a,b] --name remove --disabled --channel 7:g:a:b --channel 2:c:", 0,
       "list\n"},
      {"add - --type t --name " + kName64 + " --description " + kDescription512, 0, "-\n"},
      {"list", 0, "1     list remove "},
      {"show till", 0, "50% \"off\"\nIndex         0\nEnabled       yes\n"},
      {"channels list", 0, "list        2       c      \nlist        7       g      a:b"},
      // The library clears the description with the name; the command keeps it.
      {"modify till --name Front", 0, "Front"},
      {"show till", 0, "Front\nType          pos-serial\nDescription   50% \"off\"\n"},
      {"modify till --description '' --disable", 0, "(none)"},
      {"show till", 0, "Description   \nIndex         0\nEnabled       no\n"},
      {"modify till --name " + kName64, 1, "another data source has this name"},
      {"modify till --channels -", 0, "Channels    2      0", "[]"},
      {"add till --type t --name n", 1, "already exists"},
      {"remove till nobody", 1, "no data source \"nobody\""},
      {"remove [till]", 1, "in square brackets cannot be removed"},
      {"remove till list till", 0, "removed till (Front)\nremoved list ("},
      {"show till", 1, "devcfg: there is no data source \"till\"\n"},
      {"list", 0, "2     -  nnn"},
  });
}

TEST(Command, FiltersCamerasAndRefusalsThatChangeNothing) {
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content();
  const std::string set = "filters set till-1 -";
  const std::string modify = "modify till-1 --channels -";
  vault.check({
      {"add x --type t --name ''", 1, "a name must not be empty"},
      {"add x --type t --name n" + kName64, 1, "longer than 64 bytes"},
      {"modify till-1 --description d" + kDescription512, 1, "512 bytes"},
      {"camera removed ''", 1, "the guid of a camera must not be empty"},
      {"show $'a\\x1b[2J\\x7f\\xc2\\x9b'", 1, "\"a\\x1b[2J\\x7f\\xc2\\x9b\""},
      {modify, 1, "the document: the channel list is not a JSON array", "null"},
      {modify, 1, "of 0 or above", R"([{"guid":"a","channel_index":-1,"name":""}])"},
      {modify, 1, "entry 0.x: unknown key", R"([{"guid":"a","channel_index":0,"name":"","x":1}])"},
      {modify + " --channel 0:a:x", 1, "the same \"guid\"",
       R"([{"guid":"a","channel_index":1,"name":""}])"},
      {set, 1, "the document: not an array", "{}"},
      {set, 1, "entry 0.type: -1 stands for no type", R"([{"type":-1}])"},
      {set, 1,
       "2 problems:\n  entry 0.type: not an integer\n  entry 1.type: not between -2147483648",
       R"([{"type":"0"},{"type":2147483648}])"},
      {set, 1, "entry 0.result: holds a NUL character", R"([{"result":"a\u0000b"}])"},
      {set, 1, "entry 0.traget: unknown key", R"([{"traget":""}])"},
      {"filters set nobody -", 1, "no data source \"nobody\"", "[]"},
  });
  EXPECT_EQ(vault.content(), before);
  vault.check({
      {set, 0, "1 filter set", R"([{"target":"x"}])"},
      {"filters show till-1 --json", 0,
       "\"x\",\n    \"result\": \"\",\n    \"name\": \"\"\n  }\n]"},
      {set, 0, "0 filters", "[]"},
      {"filters show till-1", 0, "no filters"},
      {"camera renamed cam-entrance '50% \"main\"'", 0, "renamed 2 channels"},
      {"channels", 0, "till-2      1       cam-entrance 50% \"main\"\n"},
      {"camera removed cam-yard", 0, "removed 2 channels"},
      {"camera renamed cam-yard x", 0, "renamed 0 channels"},
  });
}

TEST(Command, WrongUsageIsStatus2AndHelpIsNot) {
  const CommandVault vault;
  vault.check({
      {"", 2, "devcfg: A subcommand is required"},
      {kAddTill + " --name ''", 2, "--name"},
      {"modify x", 2, "nothing to change is given"},
      {"modify x --channel 1:a", 2, "is not INDEX:GUID:NAME"},
      {"camera renamed g", 2, "NAME is required"},
      {"search like -x", 2, "a text that begins with a dash stands behind --: -- -x"},
      {"--version", 0, "devcfg 0."},
      {"--help", 0, "Exit status: 0 done"},
      {"camera renamed --help", 0, "Example:\n  devcfg camera"},
  });
  EXPECT_EQ(vault.devcfg("list --log").errors, vault.devcfg("--log list").errors);
  EXPECT_NE(vault.devcfg("show x --json --log").errors, "");
}

TEST(Command, AFullVaultIsToldInWords) {
  std::string sources;
  for (int i = 0; i < 128; ++i) {
    const std::string number = std::to_string(i);
    sources.append(i > 0 ? "," : "").append(R"({"vault_id":"s)").append(number);
    sources.append(R"(","vault_name":"","description":"","type":"","index":)").append(number);
    sources += R"(,"enable":true,"last_recv_time":0,"filter":[],"channel_guid_list":[]})";
  }
  CommandVault().check({
      {"import -", 0, "128 added", "{\"vault_list\":[" + sources + "]}"},
      {kAddTill, 1, "the vault list is full: 128 data sources are stored"},
      {"modify s5 --description x", 1, "has no name yet"},
      {"import shop.json", 1, "132 data sources, 128 of them stored already, are more than 128"},
      {"remove s5", 0, "removed s5 ()"},
      {kAddTill, 0, "till"},
      {"list", 0, "\n5     till "},
  });
}
