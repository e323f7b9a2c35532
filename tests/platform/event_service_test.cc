#include "tests/support/library.h"
#include "tests/support/run_sql.h"

using test::run_sql;

static const std::string kTable =
    "CREATE TABLE IF NOT EXISTS active_event (event_id TEXT PRIMARY KEY);"
    "INSERT INTO active_event VALUES ('e1')";

TEST(EventService, RemovesTheEventWithExactlyThisIdAndCreatesTheDatabase) {
  const test::TempVault vault;
  setenv("ORVANE_VAULT", vault.file("new/directory/vault.db").c_str(), 1);
  EXPECT_EQ(aevt_remove_event("e1"), 0);
  const std::string file = vault.file("new/directory/events.db");
  run_sql(file, kTable +
                    ", ('e'), ('E1'), ('e1 '), (''), ('a''b\";--'), ('%'),"
                    "(CAST(x'65310078' AS TEXT))");
  int left = 8;
  using namespace std::literals;
  for (const std::string& id : {"e1"s, "e"s, "E1"s, "e1 "s, ""s, "a'b\";--"s, "%"s, "e1\0x"s}) {
    EXPECT_NE(aevt_remove_event(id), 0) << id;
    EXPECT_EQ(run_sql(file, "SELECT count(*) FROM active_event"), std::to_string(--left));
    EXPECT_EQ(aevt_remove_event(id), 0) << id;
  }
  EXPECT_TRUE(test::take_log().empty());
}

TEST(EventService, HasAnotherFileBesideAVaultOfItsNameAndDoesNotChangeAnythingButAnEventDatabase) {
  const test::TempVault vault;
  setenv("ORVANE_VAULT", vault.file("events.db").c_str(), 1);
  run_sql(vault.file("active_events.db"), kTable);
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
