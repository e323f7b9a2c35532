#include <algorithm>
#include <map>
#include <random>
#include <regex>

#include "tests/support/config_files.h"
#include "tests/support/library.h"

namespace {

using test::ConfigFiles;
using Lines = std::vector<std::string>;

std::string name(int number, std::string before = "") {
  return before.append("device_").append(std::to_string(1000 + number), 1);
}

std::string joined(const Lines& names, const std::string& between = ",") {
  std::string text;
  for (const std::string& item : names) {
    text += (text.empty() ? "" : between) + item;
  }
  return text;
}

bool contains(const Lines& names, const std::string& item) {
  return std::count(names.begin(), names.end(), item) > 0;
}

// Entries with these keys and, as their type, "of KEY".
void write_entries(const ConfigFiles& files, const Lines& keys) {
  std::string text = "no=" + std::to_string(keys.size());
  for (const std::string& key : keys) {
    const std::string entry = ";builtin_" + std::to_string(&key - keys.data());
    text += entry + "/qid=" + key + entry + "/type=of " + key + entry + "/builtin=true";
  }
  test::write_tree(files.builtin_list(), "device", text);
}

std::string value_at(const ConfigFiles& files, const std::string& path) {
  return test::Tree(kCfgRead, files.device_tree()).value(split("device/" + path, '/'));
}

// The values of the nodes 0 to 15, with "|" behind each.
std::map<std::string, std::string> nodes_of(const ConfigFiles& files) {
  std::map<std::string, std::string> nodes;
  const test::Tree tree(kCfgRead, files.device_tree());
  for (int i = 0; i < 16; ++i) {
    for (const char* key : {"device_id", "qid", "builtin", "type", "brand", "device_name", "plugin",
                            "install_path", "db_name", "enable", "description"}) {
      nodes[name(i)] += tree.value({"device", name(i), key}) + "|";
    }
  }
  return nodes;
}

void expect_second_run_changes_nothing(const ConfigFiles& files, int result = 0) {
  const std::string tree = test::read_file(files.device_tree());
  EXPECT_EQ(devcfg_check_builtin(), result);
  EXPECT_EQ(test::read_file(files.device_tree()), tree);
}

// In one line, without the tags.
std::string log_line() {
  const std::string log = joined(test::take_product_log(), "; ");
  return std::regex_replace(log, std::regex("\\[libdevcfg\\] "), "");
}

}  // namespace

TEST(CheckBuiltin, Table) {
  const std::string b_at_1 = "device_001/builtin=true;device_001/qid=B";
  const std::string add = "builtin_0 need to add";
  const std::string remove = "device_001 need to remove";
  const std::tuple<Lines, std::string, std::string, std::string> kRows[] = {
      {{"A"}, "other=", "device_000", add},
      {{}, "other=", "NULL", ""},
      {{}, "device_node_list=,,device_001,,device_002,", "device_001,device_002", ""},
      {{"A", "C"},
       "device_node_list=device_000,device_002",
       "device_000,device_002,device_001,device_003",
       add + "; used device node = device_000; builtin_1 need to add; used device node = "
             "device_000; used device node = device_001; used device node = device_002"},
      {{"b"}, "device_node_list=device_001;" + b_at_1, "device_000", remove + "; " + add},
      {{"A"}, "device_node_list=NULL,device_001", "NULL,device_001,device_000", add},
      {{}, "device_node_list=device_001,device_000,device_001;" + b_at_1, "device_000", remove},
      {{}, "device_node_list=till;till/builtin=yes", "", "device_-01 need to remove"},
  };
  for (const auto& [keys, nodes, list, log] : kRows) {
    const ConfigFiles files;
    write_entries(files, keys);
    test::write_tree(files.device_tree(), "device", nodes);
    EXPECT_EQ(devcfg_check_builtin(), 0);
    EXPECT_EQ(log_line(), log);
    EXPECT_EQ(value_at(files, "device_node_list"), list);
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
  EXPECT_EQ(nodes_of(files)["device_000"],
            "I|A|Yes|\r\n|" + b + "€| <&>\"'|" + p + "||NULL|true|(none)|");
}

TEST(CheckBuiltin, AFileThatCannotBeOpenedOrTakesNoNodesStopsIt) {
  const ConfigFiles files;
  EXPECT_EQ(devcfg_check_builtin(), -1);
  EXPECT_TRUE(log_line().ends_with("; Builtin XML file opened failed"));
  write_entries(files, {"A"});
  EXPECT_EQ(devcfg_check_builtin(), -1);
  EXPECT_TRUE(log_line().ends_with("; Zelip XML file opened failed"));
  for (const Lines& keys : {Lines{"A"}, Lines{}}) {
    write_entries(files, keys);
    test::write_file(files.device_tree(), "<other><x/></other>");
    expect_second_run_changes_nothing(files, -1);
    EXPECT_TRUE(log_line().ends_with("does not take the nodes, nothing is changed"));
  }
}

// So many nodes of the user, after this item, and so many entries. The list outgrows 1,024 bytes.
TEST(CheckBuiltin, Limits) {
  using Row = std::tuple<std::string, int, int, int, int>;
  const auto first = [](int count) {
    Lines names;
    for (int i = 0; i < count; ++i) {
      names.push_back(name(i));
    }
    return names;
  };
  for (const auto& [item, users, entries, stored, result] :
       {Row("", 0, 200, 128, 0), Row("", 127, 1, 128, 0), Row("NULL,", 127, 1, 128, 0),
        Row("", 126, 5, 128, -1), Row("", 140, 2, 140, -1)}) {
    const ConfigFiles files;
    write_entries(files, first(entries));
    const std::string beyond = "device_139/builtin=true;device_127/qid=user's;device_node_list=";
    test::write_tree(files.device_tree(), "device", beyond + item + joined(first(users)));
    test::take_log();
    EXPECT_EQ(devcfg_check_builtin(), result);
    EXPECT_EQ(log_line().ends_with("reach max device number"), result != 0) << users;
    EXPECT_EQ(value_at(files, "device_node_list"), item + joined(first(stored)));
    EXPECT_EQ(value_at(files, "device_127/enable"), users < 128 ? "true" : "(none)");
    expect_second_run_changes_nothing(files, result);
    BuiltinChanges changes;
    EXPECT_EQ(devcfg_preview_builtin(changes), result);
    EXPECT_TRUE(changes.removed.empty() && changes.added.empty());
  }
}

// A random pair of files with entries and nodes as they should be, and what is to come of it.
TEST(CheckBuiltin, GeneratedPairsFollowTheModel) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const ConfigFiles files;
    Lines missing = {"0", "1", "2", "3", "4", "5"};
    missing.resize(random() % 7);
    write_entries(files, missing);
    const Lines keys = missing;
    Lines names, removed;
    std::string list = "device_node_list=", values;
    for (const int number : {7, 3, 0, 1, 4, 2, 9}) {
      const bool builtin = random() % 2 == 0;
      const std::string key = std::to_string(random() % 9);
      if (random() % 3 != 0) {
        list += (random() % 4 == 0 ? ",," : ",") + name(number);
        const std::string node = name(number, ";");
        values += node + "/qid=" + key + node + "/builtin=" + (builtin ? "YES" : "no") + node +
                  "/enable=false" + node + "/description=words";
        (builtin && !contains(keys, key) ? removed : names).push_back(name(number));
        std::erase(missing, builtin ? key : "");
      }
    }
    test::write_tree(files.device_tree(), "device", list + values);
    auto nodes = nodes_of(files);
    for (const std::string& node : removed) {
      nodes[node] = nodes["device_015"];  // which is never there
    }
    const std::string untouched = test::read_file(files.device_tree());
    BuiltinChanges preview;
    EXPECT_EQ(devcfg_preview_builtin(preview), 0);
    EXPECT_EQ(preview.removed, removed);
    EXPECT_EQ(preview.added.size(), missing.size());
    EXPECT_EQ(test::read_file(files.device_tree()), untouched);
    for (const std::string& key : missing) {
      int number = 0;
      while (contains(names, name(number))) {
        ++number;
      }
      names.push_back(name(number));
      nodes[names.back()] =
          "NULL|" + key + "|true|of " + key + "|NULL|NULL|NULL|NULL|NULL|true|(none)|";
    }
    EXPECT_EQ(devcfg_check_builtin(), 0);
    EXPECT_EQ(value_at(files, "device_node_list"), joined(names));
    EXPECT_EQ(nodes_of(files), nodes);
    expect_second_run_changes_nothing(files);
  }
}
