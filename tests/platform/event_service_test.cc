#include <atomic>
#include <thread>

#include "tests/platform/run_sql.h"
#include "tests/support/library.h"

namespace {

using test::run_sql;
using test::TempVault;

const std::string kTable = "CREATE TABLE IF NOT EXISTS active_event (event_id TEXT PRIMARY KEY);";

TEST(EventService, RemovesTheEventOfExactlyThisIdAndCreatesTheDatabase) {
  const TempVault vault;
  setenv("ORVANE_VAULT", vault.file("new/folder/vault.db").c_str(), 1);
  EXPECT_EQ(aevt_remove_event("e1"), 0);
  const std::string file = vault.file("new/folder/events.db");
  run_sql(file, kTable +
                    "INSERT INTO active_event VALUES ('e1'), ('e'), ('E1'), ('e1 '), (''),"
                    "('a''b\";--'), ('%'), (CAST(x'65310078' AS TEXT))");
  int left = 8;
  using namespace std::literals;
  for (const std::string& event_id :
       {"e1"s, "e"s, "E1"s, "e1 "s, ""s, "a'b\";--"s, "%"s, "e1\0x"s}) {
    EXPECT_NE(aevt_remove_event(event_id), 0) << event_id;
    EXPECT_EQ(run_sql(file, "SELECT count(*) FROM active_event"), std::to_string(--left));
    EXPECT_EQ(aevt_remove_event(event_id), 0) << event_id;
  }
  EXPECT_TRUE(test::take_log().empty());
}

TEST(EventService, KeepsItsEventsBesideAVaultThatHasTheirNameAndLeavesWhatIsNoEventDatabase) {
  const TempVault vault;
  setenv("ORVANE_VAULT", vault.file("events.db").c_str(), 1);
  run_sql(vault.file("active_events.db"), kTable + "INSERT INTO active_event VALUES ('e1')");
  EXPECT_NE(aevt_remove_event("e1"), 0);
  const std::string garbage(5'000, 'x');
  test::write_file(vault.file("events.db"), garbage);
  for (const char* path : {"vault.db", "events.db/vault.db"}) {
    setenv("ORVANE_VAULT", vault.file(path).c_str(), 1);
    EXPECT_EQ(aevt_remove_event("e1"), 0);
    EXPECT_EQ(test::take_product_log().size(), 1U);
  }
  EXPECT_EQ(test::read_file(vault.file("events.db")), garbage);
}

TEST(EventService, RemovesForManyThreadsAtOnceEachEventOnce) {
  const TempVault vault;
  run_sql(vault.file("events.db"),
          kTable +
              "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT 20) "
              "INSERT INTO active_event SELECT i FROM n");
  std::atomic<int> removed = 0;
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads) {
    thread = std::thread([&removed] {
      for (int i = 0; i < 20; ++i) {
        removed += aevt_remove_event(std::to_string(i));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(removed, 20);
}

}  // namespace
