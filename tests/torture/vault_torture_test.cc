#include <set>

#include "tests/platform/run_sql.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"
#include "tests/torture/torture.h"

namespace {

using test::Answer;
using test::Change;
using test::Record;

enum Kind { kAdd, kRemove, kRename, kChannels, kFilters, kKinds };

// A list of two channels, or of two filters.
std::string list_of(const std::string& value, const std::string& key) {
  const std::string text = "\"name\":\"\",\"" + key + "\":\"" + value;
  return "[{\"channel_index\":0," + text + "0\"},{\"channel_index\":1," + text + "1\"}]";
}

// A record is the name, the guids of the channels, the targets of the filters. The writers meet the
// limit of 128 data sources again and again.
class VaultStore : public test::Store {
 public:
  VaultStore() : Store(kKinds) {
    EXPECT_EQ(test::OpenVault().status, 0);
    test::run_sql(folder_.database(),
                  "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 118) "
                  "INSERT INTO data_source SELECT NULL, i, '', i, 1, i, '', 0 FROM n");
  }

  Answer make(const Change& change) override {
    int code = 0;
    do {
      code = result(change);
    } while (code == metadata_vault::kVaultIndexTaken);
    const bool full = code == kDevcfgVaultListFull || code == metadata_vault::kVaultFull;
    return code == 0 ? Answer::kDone : full ? Answer::kRefused : Answer::kFailed;
  }

  std::vector<Record> steps(const Record& before, const Change& change) const override {
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

  test::State read() override {
    test::State state;
    std::set<int> indexes;
    for (const auto& source : test::stored()) {
      Record record = {source.vault_name, "", ""};
      for (const auto& channel : source.channel_guid_list) {
        record[1] += channel.guid + ",";
      }
      for (const auto& filter : source.filter) {
        record[2] += filter.target + ",";
      }
      EXPECT_TRUE(indexes.insert(source.index).second &&
                  state.emplace(source.vault_id, record).second);
    }
    EXPECT_LE(state.size(), 128U);
    const std::string kStray =
        "SELECT count(*) FROM (SELECT vault_id FROM channel UNION ALL SELECT vault_id FROM filter) "
        "WHERE vault_id NOT IN (SELECT vault_id FROM data_source); PRAGMA integrity_check";
    EXPECT_EQ(test::run_sql(folder_.database(), kStray), "0ok");
    return state;
  }

 private:
  static int result(const Change& change) {
    auto [id, kind, value] = change;
    std::vector<int> indexes;
    switch (kind) {
      case kAdd:
        return test::add(id, value, list_of(value, "guid"));
      case kRemove:
        return devcfg_remove_device(id.data(), nullptr, nullptr);
      case kFilters:
        return devcfg_modify_filter(id.data(), test::Json(list_of(value, "target")));
      default:
        return test::modify(id,
                            {kind == kRename ? '"' + value + '"' : "", "", "",
                             kind == kChannels ? list_of(value, "guid") : ""},
                            indexes);
    }
  }

  const test::TempVault folder_;
};

TEST(Torture, VaultKeepsWhatItAcknowledged) {
  VaultStore store;
  test::torture(store);
}

}  // namespace
