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
  for (const auto& [id, index] : {std::pair("a", 0), std::pair("b", -1), std::pair("c", -1)}) {
    EXPECT_EQ(vault->insert_data_source(data_source(id, index)), 0);
  }
  EXPECT_EQ(vault->insert_channel({"", "a", 1, "g", "n"}), 0);
  const std::string before = test::show();
  CMetadata metadata;
  EXPECT_EQ(metadata.init(), 0);
  test::take_log();
  const int statuses[] = {vault->insert_data_source(data_source("a", 5)),
                          vault->insert_data_source(data_source("d", 0)),
                          vault->update_data_source(data_source("b", 0)),
                          vault->update_data_source(data_source("A", 7)),
                          vault->remove_data_source(data_source("d", 0)),
                          vault->update_channel({"", "a", 1, "g", "new"}),
                          vault->update_channel({"99", "a", 1, "g", "new"}),
                          vault->update_channel({"1 ", "a", 1, "g", "new"}),
                          metadata.remove_metadata("none")};
  const int expected[] = {kVaultIdTaken,  kVaultIndexTaken, kVaultIndexTaken,
                          kVaultNotFound, kVaultNotFound,   kVaultNotFound,
                          kVaultNotFound, kVaultNotFound,   kVaultNotFound};
  const auto log = test::take_log();
  ASSERT_EQ(log.size(), std::size(expected));
  for (std::size_t i = 0; i < log.size(); ++i) {
    EXPECT_EQ(statuses[i], expected[i]) << i;
    EXPECT_EQ(log[i].find("[vaultdb] "), 0U);
    EXPECT_NE(log[i].find(" failed with status " + std::to_string(expected[i]) + ": "),
              std::string::npos);
  }
  EXPECT_EQ(test::show(), before);
}

TEST(VaultDatabase, RefusesTheDataSourceAfterThe128th) {
  const test::TempVault folder;
  test::OpenVault vault;
  for (int i = 0; i < 128; ++i) {
    EXPECT_EQ(vault->insert_data_source(data_source(std::to_string(i), i % 2 == 0 ? i : -1)), 0);
  }
  EXPECT_EQ(vault->insert_data_source(data_source("more", -1)), kVaultFull);
  EXPECT_EQ(vault->remove_data_source(data_source("7", 0)), 0);
  EXPECT_EQ(vault->insert_data_source(data_source("more", -1)), 0);
}

TEST(VaultDatabase, NeedsAnOpenObjectAndServesSeveral) {
  const test::TempVault folder;
  CDataSource vault;
  CDataSource other;
  std::vector<DataSource> found;
  EXPECT_EQ(vault.query_data_source("", "", found), kVaultNotOpen);
  EXPECT_EQ(vault.init() + vault.init() + other.init(), 0);
  EXPECT_EQ(vault.insert_data_source(data_source("a", 1)), 0);
  EXPECT_EQ(other.insert_data_source(data_source("b", 2)), 0);
  EXPECT_EQ(vault.query_data_source_sort_by_index(found), 0);
  EXPECT_EQ(found.size(), 2U);
  EXPECT_EQ(vault.release() + vault.release() + other.release(), 0);
  EXPECT_EQ(vault.remove_data_source(data_source("a", 2)), kVaultNotOpen);
  EXPECT_EQ(vault.query_data_source("", "", found), kVaultNotOpen);
  EXPECT_EQ(found.size(), 2U);
}

TEST(VaultDatabase, RemovesTheListsOfTheDataSourceOnly) {
  const test::TempVault folder;
  test::OpenVault vault;
  for (const char* id : {"a", "b"}) {
    vault->insert_data_source(data_source(id, -1));
    vault->insert_channel({"", id, 1, "g", id});
    vault->insert_filter({"", id, 1, "t", "r", id});
  }
  EXPECT_EQ(vault->remove_data_source(data_source("a", 0)), 0);
  std::vector<Channel> channels;
  std::vector<Filter> filters;
  vault->query_channel("", "", channels);
  vault->query_filter("a", filters);
  vault->query_filter("b", filters);
  ASSERT_EQ(channels.size() + filters.size(), 2U);
  EXPECT_EQ(channels[0].vault_id + filters[0].vault_id, "bb");
}

TEST(VaultDatabase, DoesNotMindTheLocaleOfTheProgram) {
  struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::locale::global(std::locale(std::locale(), new Grouping));
  const test::TempVault folder;
  EXPECT_EQ(test::add("a"), 0);
  EXPECT_EQ(test::stored().size(), 1U);
}

TEST(VaultDatabase, ServesManyThreads) {
  const test::TempVault folder;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([id = std::to_string(number)] {
      int code = kVaultIndexTaken;
      while (code == kVaultIndexTaken) {
        code = test::add(id, id, "[]");
      }
      EXPECT_EQ(code, 0);
      for (int i = 0; i < 5; ++i) {
        std::vector<int> indexes;
        EXPECT_EQ(test::modify(id, {'"' + id + "!\"", "", "false", "[]"}, indexes), 0);
        EXPECT_NE(test::show().find('"' + id + "!\""), std::string::npos);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(test::stored().size(), 8U);
}
