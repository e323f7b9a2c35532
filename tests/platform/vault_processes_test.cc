// Several processes on one vault database.
#include <chrono>
#include <set>
#include <thread>

#include "tests/platform/run_sql.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

// 0, or the code of the refusal; tries again while other processes take the index.
int add(const std::string& vault_id) {
  int code = 0;
  do {
    code = test::add(vault_id, vault_id);
  } while (code == metadata_vault::kVaultIndexTaken);
  return code;
}

int rename(const std::string& vault_id, const std::string& name) {
  std::vector<int> indexes;
  return test::modify(vault_id, {'"' + name + '"', "", "", ""}, indexes);
}

void expect_sound(const std::string& database, std::size_t size) {
  std::set<std::string> ids;
  std::set<int> indexes;
  for (const auto& record : test::stored()) {
    EXPECT_TRUE(ids.insert(record.vault_id).second && indexes.insert(record.index).second);
  }
  EXPECT_EQ(ids.size(), size);
  EXPECT_EQ(test::run_sql(database, "PRAGMA integrity_check"), "ok");
}

// Runs `work(number)` in six processes at once; each is to return 0.
void in_six_processes(const std::function<int(const std::string&)>& work) {
  const auto start = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
  std::vector<pid_t> children;
  for (int number = 0; number < 6; ++number) {
    children.push_back(test::start([&, number] {
      std::this_thread::sleep_until(start);
      return work(std::to_string(number));
    }));
  }
  for (const pid_t child : children) {
    EXPECT_EQ(test::wait_for(child), 0);
  }
}

}  // namespace

TEST(VaultProcesses, AddModifyAndListAtOnce) {
  const test::TempVault folder;
  in_six_processes([](const std::string& number) {
    for (int i = 0; i < 20; ++i) {
      const std::string id = number + "-" + std::to_string(i);
      if (add(id) != 0 || rename(id, id + "!") != 0 ||
          test::show().find('"' + id + "!\"") == std::string::npos) {
        return 1;
      }
    }
    return 0;
  });
  expect_sound(folder.database(), 120);
  for (const auto& record : test::stored()) {
    EXPECT_EQ(record.vault_name, record.vault_id + "!");
  }
  in_six_processes([](const std::string& number) {
    int code = 0;
    for (int i = 0; i < 20 && code == 0; ++i) {
      code = add("more" + number + "-" + std::to_string(i));
    }
    return code == kDevcfgVaultListFull || code == metadata_vault::kVaultFull ? 0 : 1;
  });
  expect_sound(folder.database(), 128);
}

TEST(VaultProcesses, BeginOnADatabaseThatDoesNotExist) {
  for (int round = 0; round < 15; ++round) {
    const test::TempVault folder;
    const std::string database = folder.file("new/vault.db");
    setenv("ORVANE_VAULT", database.c_str(), 1);
    in_six_processes(add);
    expect_sound(database, 6);
  }
}
