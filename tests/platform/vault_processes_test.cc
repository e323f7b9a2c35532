// Several processes on one vault database, which does not exist when they begin.
#include <chrono>
#include <set>
#include <thread>

#include "tests/support/process.h"
#include "tests/support/run_sql.h"
#include "tests/support/vault_calls.h"

// Adds data sources until the vault is full, renames each one and finds it in the listing.
static int add_sources(const std::string& prefix, int count) {
  for (int i = 0; i < count; ++i) {
    const std::string id = prefix + "-" + std::to_string(i), name = '"' + id + "!\"";
    int code = metadata_vault::kVaultIndexTaken;
    while (code == metadata_vault::kVaultIndexTaken) {  // by another process
      code = test::add(id, id);
    }
    if (code == kDevcfgVaultListFull || code == metadata_vault::kVaultFull) {
      return 0;
    }
    std::vector<int> indexes;
    if (code != 0 || test::modify(id, {name, "", "", ""}, indexes) != 0 ||
        test::show().find(name) == std::string::npos) {
      return 1;
    }
  }
  return 0;
}

TEST(VaultProcesses, AddModifyAndListAtOnce) {
  for (int round = 0; round < 14; ++round) {
    const int count = round < 13 ? 1 : 30;
    const test::TempVault directory;
    const std::string database = directory.file("new/vault.db");
    setenv("ORVANE_VAULT", database.c_str(), 1);
    const auto begin = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
    std::vector<pid_t> children;
    for (int number = 0; number < 6; ++number) {
      children.push_back(test::start([&, number] {
        std::this_thread::sleep_until(begin);
        return add_sources(std::to_string(number), count);
      }));
    }
    for (const pid_t child : children) {
      EXPECT_EQ(test::wait_for(child), 0);
    }
    std::set<std::string> ids;
    std::set<int> indexes;
    for (const auto& record : test::stored()) {
      EXPECT_TRUE(ids.insert(record.vault_id).second && indexes.insert(record.index).second);
      EXPECT_EQ(record.vault_name, record.vault_id + "!");
    }
    EXPECT_EQ(indexes.size(), count == 1 ? 6U : 128U);
    EXPECT_EQ(test::run_sql(database, "PRAGMA integrity_check"), "ok");
  }
}
