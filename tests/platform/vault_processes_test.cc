// Several processes on one vault database, and processes that are killed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <thread>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

using Sqlite = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

Sqlite open_raw(const std::string& file) {
  sqlite3* handle = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &handle), SQLITE_OK);
  return {handle, sqlite3_close};
}

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

void expect_sound(const std::string& database) {
  std::set<std::string> ids;
  std::set<int> indexes;
  for (const auto& record : test::stored()) {
    EXPECT_TRUE(ids.insert(record.vault_id).second && indexes.insert(record.index).second);
  }
  EXPECT_LE(ids.size(), 128U);
  std::string answer;
  sqlite3_exec(
      open_raw(database).get(), "PRAGMA integrity_check",
      [](void* text, int, char** columns, char**) {
        *static_cast<std::string*>(text) += columns[0];
        return 0;
      },
      &answer, nullptr);
  EXPECT_EQ(answer, "ok");
}

// Runs `work(number)` in six processes at once; each is to return 0.
void in_six_processes(const std::function<int(int)>& work) {
  int gate[2];
  ASSERT_EQ(pipe(gate), 0);
  std::vector<pid_t> children;
  for (int number = 0; number < 6; ++number) {
    children.push_back(test::start([&, number] {
      close(gate[1]);
      char byte = 0;
      return read(gate[0], &byte, 1) == 0 ? work(number) : 99;
    }));
  }
  close(gate[0]);
  close(gate[1]);
  for (const pid_t child : children) {
    EXPECT_EQ(test::wait_for(child), 0);
  }
}

// Adds and renames data sources until it is killed; tells each change that was acknowledged.
int change_until_killed(int round, int pipe_end) {
  const auto tell = [&](const std::string& id, const std::string& name) {
    const std::string line = id + '=' + name + '\n';
    return write(pipe_end, line.data(), line.size()) > 0;
  };
  for (int number = 1000;; ++number) {
    const std::string id = std::to_string(round) + '-' + std::to_string(number % 3);
    const std::string name = id + '/' + std::to_string(number);
    const bool added = number >= 1003 || (add(id) == 0 && tell(id, id));
    if (!added || rename(id, name) != 0 || !tell(id, name)) {
      return 1;
    }
  }
}

}  // namespace

TEST(VaultProcesses, AddModifyAndListAtOnce) {
  const test::TempVault folder;
  in_six_processes([](int number) {
    for (int i = 0; i < 20; ++i) {
      const std::string id = std::to_string(number) + "-" + std::to_string(i);
      if (add(id) != 0 || rename(id, id + "!") != 0 ||
          test::show().find('"' + id + "!\"") == std::string::npos) {
        return 1;
      }
    }
    return 0;
  });
  const auto all = test::stored();
  EXPECT_EQ(all.size(), 120U);
  for (const auto& record : all) {
    EXPECT_EQ(record.vault_name, record.vault_id + "!");
  }
  in_six_processes([](int number) {
    int code = 0;
    for (int i = 0; i < 20 && code == 0; ++i) {
      code = add("more" + std::to_string(number) + "-" + std::to_string(i));
    }
    return code == kDevcfgVaultListFull || code == metadata_vault::kVaultFull ? 0 : code;
  });
  EXPECT_EQ(test::stored().size(), 128U);
  expect_sound(folder.database());
}

TEST(VaultProcesses, BeginOnADatabaseThatDoesNotExist) {
  for (int round = 0; round < 15; ++round) {
    const test::TempVault folder;
    const std::string database = folder.file("new/vault.db");
    setenv("ORVANE_VAULT", database.c_str(), 1);
    in_six_processes([](int number) { return add(std::to_string(number)); });
    EXPECT_EQ(test::stored().size(), 6U);
    expect_sound(database);
  }
}

TEST(VaultProcesses, KilledAtAnyMomentLoseNothingAcknowledged) {
  const test::TempVault folder;
  std::mt19937 random(20260118);
  std::map<std::string, std::string> acknowledged;
  for (int round = 0; round < 40; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = test::start([&] { return change_until_killed(round, ends[1]); });
    close(ends[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(5'000 + random() % 150'000));
    kill(child, SIGKILL);
    EXPECT_EQ(test::wait_for(child), -SIGKILL);
    std::string told;
    char bytes[4096];
    for (ssize_t size = 0; (size = read(ends[0], bytes, sizeof(bytes))) > 0;) {
      told.append(bytes, static_cast<std::size_t>(size));
    }
    close(ends[0]);
    for (const std::string& line : split(told, '\n')) {
      acknowledged[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
    }
    std::map<std::string, std::string> names;
    for (const auto& record : test::stored()) {
      names[record.vault_id] = record.vault_name;
    }
    for (const auto& [id, name] : acknowledged) {
      // The change after it may have been stored before it could be acknowledged.
      const bool may_be_newer = id.starts_with(std::to_string(round) + "-");
      EXPECT_TRUE(names[id] == name || (may_be_newer && names[id] > name)) << id << names[id];
    }
    acknowledged = names;  // what was there stays there
    expect_sound(folder.database());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(add("next"), 0);
    char next[] = "next";
    EXPECT_EQ(devcfg_remove_device(next, nullptr, nullptr), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  }
  EXPECT_GT(acknowledged.size(), 40U);
}

TEST(VaultProcesses, WaitForAWriterButReadMeanwhile) {
  const test::TempVault folder;
  EXPECT_EQ(test::add("a"), 0);
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = test::start([&] {
    const Sqlite handle = open_raw(folder.database());
    const int begun = sqlite3_exec(handle.get(), "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    const bool told = write(ready[1], "x", 1) == 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    return told && begun == SQLITE_OK ? 0 : 1;
  });
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(test::stored().size(), 1U);
  const auto listed = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(test::add("b"), 0);
  EXPECT_GT(std::chrono::steady_clock::now() - start, 2 * listed);
  EXPECT_EQ(test::wait_for(child), 0);
  EXPECT_EQ(test::stored().size(), 2U);
}
