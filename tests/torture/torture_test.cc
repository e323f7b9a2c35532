#include "tests/torture/torture.h"

#include <filesystem>
#include <set>

#include "tests/platform/run_sql.h"
#include "tests/support/config_tree.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

using namespace test;

// A list of two channels, or of two filters.
std::string list_of(const std::string& value, const std::string& key) {
  const std::string text = R"("name":"",")" + key + "\":\"" + value;
  return R"([{"channel_index":0,)" + text + R"(0"},{"channel_index":1,)" + text + "1\"}]";
}

// A record is the name, the guids of the channels, the targets of the filters. The writers meet the
// limit of 128 data sources again and again.
class VaultStore {
 public:
  enum Kind { kAdd, kRemove, kRename, kChannels, kFilters, kKinds };

  VaultStore() {
    const OpenVault created;
    run_sql(folder_.database(),
            "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 118) "
            "INSERT INTO data_source SELECT NULL, 'other' || i, '', i, 1, i, '', 0 FROM n");
  }

  Answer make(const Change& change) const {
    auto [id, kind, value] = change;
    const std::string list = list_of(value, kind == kFilters ? "target" : "guid");
    std::vector<int> indexes;
    const int code = kind == kAdd        ? add(id, value, list)
                     : kind == kRemove   ? devcfg_remove_device(id.data(), nullptr, nullptr)
                     : kind == kRename   ? modify(id, {'"' + value + '"', "", "", ""}, indexes)
                     : kind == kChannels ? modify(id, {"", "", "", list}, indexes)
                                         : devcfg_modify_filter(id.data(), Json(list));
    if (code == metadata_vault::kVaultIndexTaken) {
      return make(change);
    }
    const bool full = code == kDevcfgVaultListFull || code == metadata_vault::kVaultFull;
    return code == 0 ? kDone : full ? kFull : kFailed;
  }

  std::vector<Record> steps(const Record& before, const Change& change) const {
    const auto& [id, kind, value] = change;
    if (kind == kRemove || kind == kRename) {
      return {kind == kRemove ? Record() : Record{value, before[1], before[2]}};
    }
    std::vector<Record> seen(3, kind == kAdd ? Record{value, "", ""} : before);
    const std::size_t place = kind == kFilters ? 2 : 1;
    seen[0][place] = "";
    seen[1][place] = value + "0,";
    seen[2][place] = value + "0," + value + "1,";
    return seen;
  }

  State read() const {
    State state;
    std::set<int> indexes;
    for (const auto& source : stored()) {
      Record& record = state[source.vault_id] = {source.vault_name, "", ""};
      for (const auto& channel : source.channel_guid_list) {
        record[1] += channel.guid + ",";
      }
      for (const auto& filter : source.filter) {
        record[2] += filter.target + ",";
      }
      EXPECT_TRUE(indexes.insert(source.index).second && indexes.size() == state.size());
    }
    EXPECT_LE(state.size(), 128U);
    const std::string lists = "(SELECT vault_id FROM channel UNION SELECT vault_id FROM filter) ";
    EXPECT_EQ(
        run_sql(folder_.database(), "PRAGMA integrity_check; SELECT vault_id FROM " + lists +
                                        "WHERE vault_id NOT IN (SELECT vault_id FROM data_source)"),
        "ok");
    return state;
  }

 private:
  const TempVault folder_;
};

const Path kList = {"device", "device_node_list"};

std::string node_of(const std::string& id) { return "device_0" + ("0" + id).substr(id.size() - 1); }

// A record is a node's description. The notes make the file large enough to be caught half-written.
class TreeStore {
 public:
  enum Kind { kAdd, kRemove, kChange, kKinds };

  TreeStore() { write_file(file_, ""); }

  Answer make(const Change& change) const {
    Tree tree(kCfgChange, file_);
    const std::string node = node_of(change.id);
    char top[] = "device";
    bool done = false;
    if (change.kind == kRemove) {
      std::string list = tree.value(kList) + ",";
      list.erase(list.find(node), node.size() + 1);
      done = tree.remove({top, node}) && tree.store(kList, list.substr(0, list.rfind(',')));
    } else {
      done = tree.store({top, node, "device_id"}, change.id) &&
             tree.store({top, node, "description"}, change.value) &&
             tree.store({top, node, "notes"}, std::string(6'000, '&')) &&
             (change.kind != kAdd || add_device_node(tree.handle(), std::stoi(change.id), top));
    }
    return done && tree.close() ? kDone : kFailed;
  }

  std::vector<Record> steps(const Record&, const Change& change) const {
    return {change.kind == kRemove ? Record() : Record{change.value}};
  }

  State read() const {
    const Tree tree(kCfgRead, file_);
    EXPECT_TRUE(tree.is_open());
    std::string list = tree.value(kList) + ",";
    State state;
    for (int number = 0; number < 13; ++number) {
      TDeviceInfo info;
      if (get_device(tree.handle(), number, &info)) {
        state[info.device_id] = {info.description};
        const std::size_t place = list.find(node_of(info.device_id) + ",");
        EXPECT_NE(place, std::string::npos);
        list.erase(place, 11);
      }
    }
    EXPECT_TRUE(list.empty() || list == "," || list == "(none),") << list;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      EXPECT_TRUE(entry.path() == file_ || entry.path() == file_ + ".lock") << entry.path();
    }
    return state;
  }

 private:
  const TempFolder folder_;
  const std::string file_ = folder_.file("tree.xml");
};

TEST(Torture, TreeKeepsWhatItAcknowledged) { torture(TreeStore()); }

TEST(Torture, VaultKeepsWhatItAcknowledged) { torture(VaultStore()); }

}  // namespace
