#include "textfilter/metadata_remove.h"

#include <gtest/gtest.h>

#include "platform/vault_status.h"
#include "tests/support/bare_sqlite.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"

namespace {

std::string padded(std::string text, std::size_t size) { return (text.resize(size), text + '#'); }

}  // namespace

TEST(MetadataRemove, FillsBothBuffersWhateverHappens) {
  const test::TempVault vault;
  char key[] = "m1";
  metadata_remove(key, nullptr, nullptr, nullptr);  // creates the database
  const test::BareSqlite database(vault.database());
  ASSERT_EQ(database.exec("INSERT INTO metadata VALUES (1, 'm1', 'v', '')"), 0);
  const std::string failed = "[libzelip](metadata_remove:N) Remove data failed: ";
  const std::pair<char*, std::vector<std::string>> kCalls[] = {
      {key, {}},  // it is there once
      {key, {failed + std::to_string(metadata_vault::kVaultNotFound)}},
      {nullptr, {failed + "-1"}},
  };
  for (const auto& [metadata_id, expected] : kCalls) {
    test::take_log();
    std::string vault_id(kRemovedVaultIdBytes + 1, '#');
    std::string data_type(kRemovedDataTypeBytes + 1, '#');
    EXPECT_EQ(metadata_remove(metadata_id, nullptr, vault_id.data(), data_type.data()), 0);
    EXPECT_EQ(vault_id, padded("IDZELPROBUILDINVAULTBOOKMARKSERVICE", 256));
    EXPECT_EQ(data_type, padded("BOOKMARK", 128));
    auto log = test::take_product_log();
    std::erase_if(log, [](const std::string& line) { return line.starts_with("[vaultdb]"); });
    EXPECT_EQ(log, expected);
  }
}
