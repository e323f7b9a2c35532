#include "tests/torture/torture.h"

#include <filesystem>
#include <set>

#include "tests/support/config_tree.h"
#include "tests/support/run_sql.h"
#include "tests/support/temp_directory.h"
#include "tests/support/vault_calls.h"

namespace {

using namespace test;

// A record is the name and the guids of the channels.
class VaultStore {
 public:
  enum Kind { kAdd, kRemove, kRename, kChannels, kKinds };

  VaultStore() {
    EXPECT_EQ(add("first"), 0);
    EXPECT_EQ(devcfg_remove_device(std::string("first").data(), nullptr, nullptr), 0);
  }

  bool make(const Change& change) const {
    auto [id, kind, value] = change;
    const std::string list = R"([{"name":"","channel_index":0,"guid":")" + value +
                             R"(0"},{"name":"","channel_index":1,"guid":")" + value + "1\"}]";
    const Edits edits = {kind == kRename ? '"' + value + '"' : "", "", "",
                         kind == kChannels ? list : ""};
    std::vector<int> indexes;
    const int code = kind == kAdd      ? add(id, value, list)
                     : kind == kRemove ? devcfg_remove_device(id.data(), nullptr, nullptr)
                                       : modify(id, edits, indexes);
    return code == metadata_vault::kVaultIndexTaken ? make(change) : code == 0;
  }

  std::vector<Record> steps(const Record& before, const Change& change) const {
    const auto& [id, kind, value] = change;
    if (kind == kRemove || kind == kRename) {
      return {kind == kRemove ? Record() : Record{value, before[1]}};
    }
    const std::string name = kind == kAdd ? value : before[0], first = value + "0,";
    return {{name, ""}, {name, first}, {name, first + value + "1,"}};
  }

  State read() const {
    State state;
    std::set<int> indexes;
    for (const auto& source : stored()) {
      Record& record = state[source.vault_id] = {source.vault_name, ""};
      for (const auto& channel : source.channel_guid_list) {
        record[1] += channel.guid + ",";
      }
      EXPECT_TRUE(indexes.insert(source.index).second && indexes.size() == state.size());
    }
    EXPECT_EQ(run_sql(directory_.database(), "PRAGMA integrity_check"), "ok");
    EXPECT_EQ(run_sql(directory_.database(),
                      "SELECT count(*) FROM channel WHERE vault_id NOT IN "
                      "(SELECT vault_id FROM data_source)"),
              "0");
    return state;
  }

 private:
  const TempVault directory_;
};

// A record is two values of a node. What is between them makes the file large enough to be
// caught half-written.
class TreeStore {
 public:
  enum Kind { kAdd, kRemove, kChange, kKinds };

  TreeStore() { write_file(file_, ""); }

  bool make(const Change& change) const {
    Tree tree(kCfgChange, file_);
    const Path node = {"device", "n" + change.id};
    const auto store = [&](const char* name, const std::string& value) {
      return tree.store({node[0], node[1], name}, value);
    };
    return (change.kind == kRemove
                ? tree.remove(node)
                : store("first", change.value) && store("notes", std::string(6'000, '&')) &&
                      store("last", change.value)) &&
           tree.close();
  }

  std::vector<Record> steps(const Record&, const Change& change) const {
    return {change.kind == kRemove ? Record() : Record{change.value, change.value}};
  }

  State read() const {
    const Tree tree(kCfgRead, file_);
    EXPECT_TRUE(tree.is_open());
    State state;
    for (int number = 0; number < 13; ++number) {
      const std::string id = std::to_string(number);
      const Record record = {tree.value({"device", "n" + id, "first"}),
                             tree.value({"device", "n" + id, "last"})};
      record[0] != "(none)" ? void(state[id] = record) : void();
    }
    for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
      EXPECT_TRUE(entry.path() == file_ || entry.path() == file_ + ".lock") << entry.path();
    }
    return state;
  }

 private:
  const TempDirectory directory_;
  const std::string file_ = directory_.file("tree.xml");
};

TEST(Torture, TreeKeepsWhatItAcknowledged) { torture(TreeStore()); }

TEST(Torture, VaultKeepsWhatItAcknowledged) { torture(VaultStore()); }

}  // namespace
