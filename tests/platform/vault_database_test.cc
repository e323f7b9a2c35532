#include <gtest/gtest.h>

#include <locale>
#include <thread>

#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

using namespace metadata_vault;
using test::data_source;

TEST(VaultDatabase, RefusesWithAStatusAndALogLineAndChangesNothing) {
  const test::TempVault folder;
  test::OpenVault vault;
  EXPECT_EQ(CDataSource().remove_data_source(data_source("a", 0)), kVaultNotOpen);
  EXPECT_EQ(vault->insert_data_source(data_source("a", 0)), 0);
  for (int i = 1; i < 127; ++i) {
    EXPECT_EQ(vault->insert_data_source(data_source(std::to_string(i), -1)), 0);
  }
  EXPECT_EQ(vault->insert_channel({"", "a", 1, "g", "n"}), 0);
  const std::string before = test::show();
  test::take_log();
  const std::pair<int, int> kRows[] = {
      {vault->insert_data_source(data_source("a", 5)), kVaultIdTaken},
      {vault->insert_data_source(data_source("d", 0)), kVaultIndexTaken},
      {vault->update_data_source(data_source("1", 0)), kVaultIndexTaken},
      {vault->update_data_source(data_source("A", 7)), kVaultNotFound},
      {vault->remove_data_source(data_source("d", 0)), kVaultNotFound},
      {vault->update_channel({"99", "a", 1, "g", "new"}), kVaultNotFound},
      {vault->update_channel({"1 ", "a", 1, "g", "new"}), kVaultNotFound},
  };
  const auto log = test::take_log();
  ASSERT_EQ(log.size(), std::size(kRows));
  for (std::size_t i = 0; i < log.size(); ++i) {
    EXPECT_EQ(kRows[i].first, kRows[i].second) << i;
    EXPECT_TRUE(log[i].starts_with("[vaultdb] ")) << log[i];
    EXPECT_NE(log[i].find(" failed with status " + std::to_string(kRows[i].second) + ": "),
              std::string::npos);
  }
  EXPECT_EQ(test::show(), before);
  EXPECT_EQ(vault->insert_data_source(data_source("128th", -1)), 0);
  EXPECT_EQ(vault->insert_data_source(data_source("more", -1)), kVaultFull);
}

TEST(VaultDatabase, ServesManyThreadsAndDoesNotMindTheLocaleOfTheProgram) {
  struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::locale::global(std::locale(std::locale(), new Grouping));
  const test::TempVault folder;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([id = std::to_string(number)] {
      int code = kVaultIndexTaken;
      while (code == kVaultIndexTaken) {
        code = test::add(id, id, "[]");
      }
      EXPECT_EQ(code, 0);
      std::vector<int> indexes;
      EXPECT_EQ(test::modify(id, {'"' + id + "!\"", "", "false", "[]"}, indexes), 0);
      EXPECT_NE(test::show().find('"' + id + "!\""), std::string::npos);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(test::stored().size(), 8U);
}
