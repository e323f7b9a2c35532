#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/config_files.h"

namespace {

using test::ConfigFiles;
using test::Tree;
using Lines = std::vector<std::string>;

constexpr char kList[] = "device/device_node_list";
const Lines kKeys = {"device_id", "qid",          "builtin", "type",   "brand",      "device_name",
                     "plugin",    "install_path", "db_name", "enable", "description"};

std::string numbered(std::string prefix, std::size_t number) {
  return prefix.append(std::to_string(number));
}

std::string name(int number, std::string before = "") {
  char text[32];
  std::snprintf(text, sizeof(text), "device_%03d", number);
  return before.append(text);
}

std::string joined(const Lines& names, const char* between = ",") {
  std::string text;
  for (const std::string& item : names) {
    text += (text.empty() ? "" : between) + item;
  }
  return text;
}

bool contains(const Lines& names, const std::string& item) {
  return std::find(names.begin(), names.end(), item) != names.end();
}

// Entries with these keys and, as their type, "of KEY".
void write_entries(const ConfigFiles& files, const Lines& keys) {
  std::string text = numbered("no=", keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::string entry = numbered(";builtin_", i);
    text += entry + "/qid=" + keys[i] + entry + "/type=of " + keys[i] + entry + "/builtin=true";
  }
  test::write_tree(files.builtin_list(), "device", text);
}

// The values of the nodes 0 to count - 1, in the order of kKeys.
std::map<std::string, Lines> nodes_of(const ConfigFiles& files, int count) {
  const Tree tree(files.device_tree());
  std::map<std::string, Lines> nodes;
  for (int number = 0; number < count; ++number) {
    for (const std::string& key : kKeys) {
      nodes[name(number)].push_back(
          test::value_at(tree.handle, name(number, "device/") + "/" + key));
    }
  }
  return nodes;
}

std::string list_of(const ConfigFiles& files) {
  return test::value_at(Tree(files.device_tree()).handle, kList);
}

void expect_second_run_changes_nothing(const ConfigFiles& files, int result = 0) {
  const std::string tree = test::read_file(files.device_tree());
  const std::string list = test::read_file(files.builtin_list());
  EXPECT_EQ(devcfg_check_builtin(), result);
  EXPECT_EQ(test::read_file(files.device_tree()), tree);
  EXPECT_EQ(test::read_file(files.builtin_list()), list);
}

// The log in one line, without the tag.
std::string log_line() {
  Lines log = test::take_product_log();
  for (std::string& line : log) {
    line.erase(0, line.find("] ") + 2);
  }
  return joined(log, "; ");
}

}  // namespace

TEST(CheckBuiltin, Table) {
  struct Row {
    Lines keys;
    std::string nodes;
    std::string list;
    std::string log;
  };
  const std::string b_at_1 = "device_001/builtin=true;device_001/qid=B";
  const std::string add = "builtin_0 need to add";
  const std::string remove = "device_001 need to remove";
  const Row kRows[] = {
      {{"A"}, "other=", "device_000", add},
      {{}, "other=", "NULL", ""},
      {{}, "device_node_list=", "", ""},
      {{}, "device_node_list=,,device_001,,device_002,", "device_001,device_002", ""},
      {{}, "device_node_list=device_000,device_001;" + b_at_1, "device_000", remove},
      {{"A"}, "device_node_list=device_001;" + b_at_1, "device_000", remove + "; " + add},
      {{"A", "C"},
       "device_node_list=device_000,device_002",
       "device_000,device_002,device_001,device_003",
       add + "; used device node = device_000; builtin_1 need to add; used device node = "
             "device_000; used device node = device_001; used device node = device_002"},
      {{"A", "B"}, "device_node_list=device_001;" + b_at_1, "device_001,device_000", add},
      {{"b"}, "device_node_list=device_001;" + b_at_1, "device_000", remove + "; " + add},
      {{"B"}, "device_node_list=device_001;device_001/qid=B", "device_001,device_000", add},
      {{"A"}, "device_node_list=NULL,device_001", "NULL,device_001,device_000", add},
      // Listed twice: the node goes with both its places.
      {{}, "device_node_list=device_001,device_000,device_001;" + b_at_1, "device_000", remove},
      {{}, "device_node_list=till;till/builtin=yes", "", "device_-01 need to remove"},
  };
  for (const Row& row : kRows) {
    const ConfigFiles files;
    write_entries(files, row.keys);
    test::write_tree(files.device_tree(), "device", row.nodes);
    test::take_log();
    EXPECT_EQ(devcfg_check_builtin(), 0);
    EXPECT_EQ(log_line(), row.log);
    EXPECT_EQ(list_of(files), row.list);
    expect_second_run_changes_nothing(files);
  }
}

TEST(CheckBuiltin, CopiesTheNineValuesAndEnables) {
  const ConfigFiles files;
  Lines copied = {"I", "A", "Yes", "\r\n", " ", "<&>\"'", std::string(4000, 'p'), "", "db"};
  Lines absent(9, "NULL");
  std::string text = "no=2;builtin_0/description=not copied";
  for (std::size_t i = 0; i < copied.size(); ++i) {
    text += ";builtin_0/" + kKeys[i] + "=" + copied[i];
  }
  test::write_tree(files.builtin_list(), "device", text);
  test::write_file(files.device_tree(), "<?xml version=\"1.0\"?>");
  EXPECT_EQ(devcfg_check_builtin(), 0);
  copied[6].resize(1023);
  copied.insert(copied.end(), {"true", "(absent)"});
  absent.insert(absent.end(), {"true", "(absent)"});
  const std::map<std::string, Lines> expected = {{"device_000", copied}, {"device_001", absent}};
  EXPECT_EQ(nodes_of(files, 2), expected);
  xmlcfg_set_str(Tree(files.device_tree(), kCfgChange).handle, "false", "device", "device_000",
                 "enable", nullptr);
  expect_second_run_changes_nothing(files);
}

TEST(CheckBuiltin, AFileThatCannotBeOpenedStopsIt) {
  const ConfigFiles files;
  EXPECT_EQ(devcfg_check_builtin(), -1);
  EXPECT_EQ(test::take_product_log().back(), "[libdevcfg] Builtin XML file opened failed");
  write_entries(files, {"A"});
  EXPECT_EQ(devcfg_check_builtin(), -1);
  EXPECT_EQ(test::take_product_log().back(), "[libdevcfg] Zelip XML file opened failed");
  const Tree not_locked(files.builtin_list(), kCfgChange);
}

// So many nodes of the user and so many entries. The names take more than 1,024 bytes.
TEST(CheckBuiltin, Limits) {
  struct Row {
    int users;
    std::size_t entries;
    int stored;
    int result;
  };
  const Row kRows[] = {{0, 128, 128, 0},  {0, 200, 128, 0},  {127, 1, 128, 0},
                       {126, 5, 128, -1}, {128, 1, 128, -1}, {140, 2, 140, -1}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.users << " and " << row.entries);
    const ConfigFiles files;
    Lines keys;
    Lines names;
    for (std::size_t i = 0; i < row.entries; ++i) {
      keys.push_back(numbered("key ", i));
    }
    std::string text = "device_139/builtin=true";  // beyond what is looked at
    for (int i = 0; i < row.stored; ++i) {
      names.push_back(name(i));
      text += i < row.users ? name(i, ";") + "/qid=user's" : "";
    }
    const std::string listed = joined({names.begin(), names.begin() + row.users});
    write_entries(files, keys);
    test::write_tree(files.device_tree(), "device", text + ";device_node_list=" + listed);
    test::take_log();
    EXPECT_EQ(devcfg_check_builtin(), row.result);
    EXPECT_EQ(log_line().ends_with("reach max device number"), row.result != 0);
    EXPECT_EQ(list_of(files), joined(names));
    EXPECT_NE(nodes_of(files, 128).at("device_127")[1], "(absent)");
    expect_second_run_changes_nothing(files, row.result);
  }
}

namespace {

// Writes a random pair of files with entries and nodes as they should be, and says what is to come
// of it: the names in the list, those that go, and the keys of the new ones.
struct GeneratedPair {
  GeneratedPair(unsigned seed, const ConfigFiles& files) {
    std::mt19937 random(seed);
    Lines missing;
    for (auto count = random() % 7; missing.size() < count;) {
      missing.push_back(std::to_string(missing.size()));
    }
    const Lines keys = missing;
    std::string text = "other=x";
    std::string list;
    for (const int number : {7, 3, 0, 1, 4, 2, 9}) {
      const bool builtin = random() % 2 == 0;
      const std::string key = std::to_string(random() % 9);
      const std::string node = name(number, ";");
      if (random() % 3 != 0) {
        list += (random() % 4 == 0 ? ",," : ",") + name(number);
        text += node + "/qid=" + key + node + "/builtin=" + (builtin ? "YES" : "no") + node +
                "/description=words";
        (builtin && !contains(keys, key) ? removed : names).push_back(name(number));
        std::erase(missing, builtin ? key : "");
      }
    }
    write_entries(files, keys);
    test::write_tree(files.device_tree(), "device", text + ";device_node_list=" + list);
    for (const std::string& key : missing) {
      int number = 0;
      while (contains(names, name(number))) {
        ++number;
      }
      names.push_back(name(number));
      added[names.back()] = key;
    }
  }

  Lines names;
  Lines removed;
  std::map<std::string, std::string> added;
};

}  // namespace

TEST(CheckBuiltin, GeneratedPairsFollowTheModel) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    const ConfigFiles files;
    const GeneratedPair pair(seed, files);
    auto expected = nodes_of(files, 16);
    for (const std::string& node : pair.removed) {
      expected[node] = Lines(kKeys.size(), "(absent)");
    }
    for (const auto& [node, key] : pair.added) {
      expected[node] = {"NULL", key,    "true", "of " + key, "NULL",    "NULL",
                        "NULL", "NULL", "NULL", "true",      "(absent)"};
    }
    const std::string untouched = test::read_file(files.device_tree());
    BuiltinChanges preview;
    EXPECT_EQ(devcfg_preview_builtin(preview), 0);
    EXPECT_EQ(preview.removed, pair.removed);
    EXPECT_EQ(preview.added.size(), pair.added.size());
    EXPECT_EQ(test::read_file(files.device_tree()), untouched);

    EXPECT_EQ(devcfg_check_builtin(), 0);
    EXPECT_EQ(list_of(files), joined(pair.names));
    EXPECT_EQ(nodes_of(files, 16), expected);
    expect_second_run_changes_nothing(files);
  }
}

// Entries that share keys, have none or no mark, and nodes like them: no model but what must hold.
TEST(CheckBuiltin, DisorderlyPairsSettleAfterOneRun) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto pick = [&](const Lines& texts) { return texts[random() % texts.size()]; };
    std::string entries = pick({"no=1", "no=4", "no=-1", "no=none"});
    std::string nodes =
        "device_node_list=" + pick({"device_000,,device_001", "NULL", "device_001,device_000,NULL",
                                    ",device_002,device_002,device_001,"});
    for (const int i : {0, 1, 2, 3}) {
      const std::string entry = numbered(";builtin_", static_cast<std::size_t>(i));
      const std::string node = name(i, ";");
      entries += pick({"", entry + "/qid=A", entry + "/qid=B"}) +
                 pick({"", entry + "/builtin=On", entry + "/builtin=no", entry + "/builtin=NULL"});
      nodes += pick({"", node + "/qid=A", node + "/qid=B", node + "/qid=NULL"}) +
               pick({"", node + "/builtin=1", node + "/builtin=no", node + "/builtin=NULL"});
    }
    const ConfigFiles files;
    test::write_tree(files.builtin_list(), "device", entries);
    test::write_tree(files.device_tree(), "device", nodes);
    EXPECT_EQ(devcfg_check_builtin(), 0);
    expect_second_run_changes_nothing(files);
  }
}
