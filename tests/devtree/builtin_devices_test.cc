#include <algorithm>
#include <random>
#include <set>

#include "tests/support/config_files.h"
#include "tests/support/library.h"

namespace {

using test::ConfigFiles;

// Returns the first names, joined by commas.
std::string names(int count) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    list.append(i > 0 ? ",device_" : "device_").append(std::to_string(1000 + i), 1);
  }
  return list;
}

// Writes a built-in list with an entry for each of the listed keys.
void write_entries(const ConfigFiles& files, const std::string& list) {
  const auto keys = split(list, ',');
  std::string text = "no=" + std::to_string(keys.size());
  for (const std::string& key : keys) {
    const std::string entry = ";builtin_" + std::to_string(&key - keys.data());
    text += entry + "/qid=" + key + entry + "/builtin=true";
  }
  test::write_tree(files.builtin_list(), "device", text);
}

std::string value_at(const ConfigFiles& files, const std::string& path) {
  return test::Tree(kCfgRead, files.device_tree()).value(split("device/" + path, '/'));
}

void expect_second_run_changes_nothing(const ConfigFiles& files, int result = 0) {
  const std::string tree = test::read_file(files.device_tree());
  EXPECT_EQ(devcfg_check_builtin(), result);
  EXPECT_EQ(test::read_file(files.device_tree()), tree);
}

// Returns the log in one line, without the tags.
std::string log_line() {
  std::string log;
  for (const std::string& line : test::take_product_log()) {
    log += (log.empty() ? "" : "; ") + line.substr(line.starts_with("[libdevcfg] ") ? 12 : 0);
  }
  return log;
}

}  // namespace

TEST(CheckBuiltin, Table) {
  const std::string b_at_1 = "device_001/builtin=true;device_001/qid=B";
  const std::string add = "builtin_0 need to add", remove = "device_001 need to remove";
  const std::string used = "; used device node = device_00";
  const std::tuple<std::string, std::string, std::string, std::string> kRows[] = {
      // the keys, the node list and other values, the node list afterwards, the messages
      {"A", "-", "device_000", add},
      {"", "-", "NULL", ""},
      {"", ",,device_001,,device_002,", "device_001,device_002", ""},
      {"A,C", "device_000,device_002", "device_000,device_002,device_001,device_003",
       add + used + "0; builtin_1 need to add" + used + "0" + used + "1" + used + "2"},
      {"b", "device_001;" + b_at_1, "device_000", remove + "; " + add},
      {"A", "NULL,device_001", "NULL,device_001,device_000", add},
      {"", "device_001,device_000,device_001;" + b_at_1, "device_000", remove},
      {"", "till;till/builtin=yes", "", "device_-01 need to remove"},
      {"B", "device_000;device_000/qid=B", "device_000,device_001", add + used + "0"},
      {"B", "device_001;" + b_at_1 + ";device_001/enable=false", "device_001", ""},
  };
  for (const auto& [keys, nodes, list, log] : kRows) {
    const ConfigFiles files;
    write_entries(files, keys);
    const std::string values = nodes == "-" ? "other=" : "device_node_list=" + nodes;
    test::write_tree(files.device_tree(), "device", values);
    EXPECT_EQ(devcfg_check_builtin(), 0);
    EXPECT_EQ(log_line(), log);
    EXPECT_EQ(value_at(files, "device_node_list"), list);
    EXPECT_EQ(value_at(files, "device_001/enable") == "false", nodes.ends_with("enable=false"));
    expect_second_run_changes_nothing(files);
    test::take_log();
  }
}

TEST(CheckBuiltin, CopiesTheNineValuesAndEnables) {
  const ConfigFiles files;
  const std::string b(1020, 'b'), p(1021, 'p');
  test::write_tree(files.builtin_list(), "device/builtin_0",
                   "description=not copied;device_id=I;qid=A;builtin=Yes;type=\r\n;"
                   "device_name= <&>\"';install_path=;brand=" +
                       b + "€€;plugin=" + p + "€€");
  test::Tree(kCfgChange, files.builtin_list()).store({"device", "no"}, "1");
  test::write_file(files.device_tree(), "<?xml version=\"1.0\"?>");
  EXPECT_EQ(devcfg_check_builtin(), 0);
  std::string copied;
  for (const char* key : {"device_id", "qid", "builtin", "type", "brand", "device_name", "plugin",
                          "install_path", "db_name", "enable", "description"}) {
    copied += value_at(files, std::string("device_000/") + key) + "|";
  }
  EXPECT_EQ(copied, "I|A|Yes|\r\n|" + b + "€| <&>\"'|" + p + "||NULL|true|(none)|");
}

TEST(CheckBuiltin, FailsWhenAFileCannotBeOpenedOrStored) {
  const ConfigFiles files;
  EXPECT_EQ(devcfg_check_builtin(), -1);
  EXPECT_TRUE(log_line().ends_with("; Builtin XML file opened failed"));
  write_entries(files, {"A"});
  EXPECT_EQ(devcfg_check_builtin(), -1);
  EXPECT_TRUE(log_line().ends_with("; Zelip XML file opened failed"));
  for (const char* keys : {"A", ""}) {
    write_entries(files, keys);
    test::write_file(files.device_tree(), "<other><x/></other>");
    expect_second_run_changes_nothing(files, -1);
    EXPECT_TRUE(log_line().ends_with("does not take the nodes, nothing is changed"));
  }
}

// The first item, the user's nodes, the entries, the nodes afterwards, the result. The list exceeds
// 1,024 bytes.
TEST(CheckBuiltin, Limits) {
  using Row = std::tuple<std::string, int, int, int, int>;
  for (const auto& [item, users, entries, stored, result] :
       {Row("", 0, 200, 128, 0), Row("", 127, 1, 128, 0), Row("NULL,", 127, 1, 128, 0),
        Row("", 126, 5, 128, -1), Row("", 140, 2, 140, -1)}) {
    const ConfigFiles files;
    write_entries(files, names(entries));
    test::write_tree(
        files.device_tree(), "device",
        "device_139/builtin=true;device_127/qid=user's;device_node_list=" + item + names(users));
    test::take_log();
    EXPECT_EQ(devcfg_check_builtin(), result);
    EXPECT_EQ(log_line().ends_with("reach max device number"), result != 0) << users;
    EXPECT_EQ(value_at(files, "device_node_list"), item + names(stored));
    EXPECT_EQ(value_at(files, "device_127/enable"), users < 128 ? "true" : "(none)");
    expect_second_run_changes_nothing(files, result);
    BuiltinChanges changes;
    EXPECT_EQ(devcfg_preview_builtin(changes), result);
    EXPECT_TRUE(changes.removed.empty() && changes.added.empty());
  }
}

TEST(CheckBuiltin, KeepsTheUsersNodesOfGeneratedPairs) {
  std::mt19937 random(41);
  for (int round = 0; round < 300; ++round) {
    const ConfigFiles files;
    write_entries(files, std::string("0,1,2,3,4,5").substr(random() % 6 * 2UL));
    std::string list = "device_node_list=x", values;
    std::set<std::string> users = {"x"};
    for (const int number : {7, 3, 0, 1, 4, 2, 9}) {
      const std::string node = "device_00" + std::to_string(number);
      const bool is_users = random() % 2 == 0;
      if (random() % 3 != 0) {
        list += (random() % 4 == 0 ? ",," : ",") + node;
        values += ";" + node + "/qid=" + std::to_string(random() % 9) + ";" + node +
                  "/enable=false;" + node + "/builtin=" + (is_users ? "no" : "YES");
        users.insert(is_users ? node : "x");
      }
    }
    test::write_tree(files.device_tree(), "device", list + values);
    const auto read_users = [&] {
      std::string read;
      for (const std::string& node : users) {
        for (const char* key : {"/qid", "/enable", "/builtin", "/brand"}) {
          read += value_at(files, node + key) + "|";
        }
      }
      return read;
    };
    const std::string before = read_users();
    EXPECT_EQ(devcfg_check_builtin(), 0);
    EXPECT_EQ(read_users(), before);
    const auto listed = split(value_at(files, "device_node_list"), ',');
    EXPECT_TRUE(std::all_of(users.begin(), users.end(), [&](const std::string& node) {
      return std::count(listed.begin(), listed.end(), node) == 1;
    })) << list;
    expect_second_run_changes_nothing(files);
  }
}
