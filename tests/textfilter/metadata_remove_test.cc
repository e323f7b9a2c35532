#include "textfilter/metadata_remove.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "platform/vault_status.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"
#include "textfilter/event_hooks.h"

namespace {

using Log = std::vector<std::string>;

// Without the lines of the vault database itself.
Log take_library_log() {
  Log log = test::take_product_log();
  std::erase_if(log, [](const std::string& line) { return line.starts_with("[vaultdb]"); });
  return log;
}

std::string padded(std::string text, std::size_t size) {
  text.resize(size);
  return text + '#';
}

}  // namespace

TEST(MetadataRemove, FillsBothBuffersWhateverHappens) {
  const test::TempVault vault;
  char key[] = "m1";
  metadata_remove(key, nullptr, nullptr, nullptr);  // creates the database
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(vault.database().c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "INSERT INTO metadata VALUES (1, 'm1', 'v', '')", nullptr,
                         nullptr, nullptr),
            SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
  const std::string failed = "[libzelip](metadata_remove:N) Remove data failed: ";
  const std::pair<char*, Log> kCalls[] = {
      {key, {}},  // it is there once
      {key, {failed + std::to_string(metadata_vault::kVaultNotFound)}},
      {nullptr, {failed + "-1"}},
  };
  take_library_log();
  for (const auto& [metadata_id, log] : kCalls) {
    std::string vault_id(kRemovedVaultIdBytes + 1, '#');
    std::string data_type(kRemovedDataTypeBytes + 1, '#');
    EXPECT_EQ(metadata_remove(metadata_id, nullptr, vault_id.data(), data_type.data()), 0);
    EXPECT_EQ(vault_id, padded("IDZELPROBUILDINVAULTBOOKMARKSERVICE", 256));
    EXPECT_EQ(data_type, padded("BOOKMARK", 128));
    EXPECT_EQ(take_library_log(), log);
  }
}

TEST(EventHooks, DoNothing) {
  char text[] = "unchanged";
  auto* object = reinterpret_cast<json_object*>(text);
  json_object* kept = object;
  test::take_log();
  EXPECT_EQ(evtcfg_recv_notify_mortals(text, 1.5, nullptr, object, nullptr), 0);
  EXPECT_EQ(
      evtcfg_recv_notify_access(text, text, &kept, text, text, text, text, text, object, text), 0);
  EXPECT_EQ(evtcfg_remove_event(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(kept, object);
  EXPECT_STREQ(text, "unchanged");
  EXPECT_EQ(test::take_log(), Log{});
}
