#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace {

using test::TempVault;

// The number in the first column of the last row; fails the test on an error.
int run_sql(const std::string& file, const char* statement, const std::string& text = "") {
  sqlite3* database = nullptr;
  sqlite3_stmt* prepared = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_prepare_v2(database, statement, -1, &prepared, nullptr), SQLITE_OK);
  sqlite3_bind_text(prepared, 1, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  int number = 0;
  int result = sqlite3_step(prepared);
  for (; result == SQLITE_ROW; result = sqlite3_step(prepared)) {
    number = sqlite3_column_int(prepared, 0);
  }
  EXPECT_EQ(result, SQLITE_DONE) << sqlite3_errmsg(database);
  sqlite3_finalize(prepared);
  sqlite3_close(database);
  return number;
}

void raise(const std::string& file, const std::string& event_id) {
  run_sql(file, "CREATE TABLE IF NOT EXISTS active_event (event_id TEXT PRIMARY KEY)");
  run_sql(file, "INSERT INTO active_event VALUES (?)", event_id);
}

int active_events(const std::string& file) {
  return run_sql(file, "SELECT count(*) FROM active_event");
}

TEST(EventService, RemovesTheEventOfExactlyThisId) {
  const TempVault vault;
  const std::string file = vault.file("events.db");
  const std::string kIds[] = {"e1",   "e",        "E1", "e1 ",         "",
                              "NULL", "a'b\";--", "%",  "caf\xC3\xA9", std::string("e1\0x", 4)};
  for (const std::string& id : kIds) {
    raise(file, id);
  }
  int left = static_cast<int>(std::size(kIds));
  for (const std::string& id : kIds) {
    EXPECT_NE(aevt_remove_event(id), 0) << id;
    EXPECT_EQ(active_events(file), --left) << id;
    EXPECT_EQ(aevt_remove_event(id), 0) << id;
  }
  EXPECT_TRUE(test::take_log().empty());
}

TEST(EventService, ADatabaseIsCreatedOnFirstUse) {
  const TempVault vault;
  const std::string folder = vault.file("new/folder");
  setenv("ORVANE_VAULT", (folder + "/vault.db").c_str(), 1);
  EXPECT_EQ(aevt_remove_event("e1"), 0);
  raise(folder + "/events.db", "e1");
  EXPECT_NE(aevt_remove_event("e1"), 0);
}

TEST(EventService, WhatIsNoEventDatabaseIsLeftAlone) {
  const TempVault vault;
  const std::string garbage(5'000, 'x');
  test::write_file(vault.file("events.db"), garbage);
  EXPECT_EQ(aevt_remove_event("e1"), 0);
  EXPECT_EQ(test::take_product_log().size(), 1U);
  EXPECT_EQ(test::read_file(vault.file("events.db")), garbage);

  setenv("ORVANE_VAULT", vault.file("events.db/vault.db").c_str(), 1);
  EXPECT_EQ(aevt_remove_event("e1"), 0);
  EXPECT_EQ(test::take_product_log().size(), 1U);
}

TEST(EventService, OneOfSeveralRemovesAnEvent) {
  const TempVault vault;
  const int kEvents = 20;
  for (int i = 0; i < kEvents; ++i) {
    raise(vault.file("events.db"), std::to_string(i));
  }
  std::vector<pid_t> removers;
  for (int i = 0; i < 3; ++i) {
    removers.push_back(test::start([] {
      int removed = 0;
      for (int event = 0; event < kEvents; ++event) {
        removed += aevt_remove_event(std::to_string(event)) != 0 ? 1 : 0;
      }
      return removed;
    }));
  }
  int removed = 0;
  for (const pid_t remover : removers) {
    removed += test::wait_for(remover);
  }
  EXPECT_EQ(removed, kEvents);
  EXPECT_EQ(active_events(vault.file("events.db")), 0);
}

}  // namespace
